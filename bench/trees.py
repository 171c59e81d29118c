"""The projects that are measured: made once, copied for each round."""

from __future__ import annotations

import dataclasses
import json
import pathlib
import shutil
import subprocess
import sys

from generate import Settings

GENERATOR = pathlib.Path(__file__).with_name("generate.py")

# What is written later does not disturb below this. A sync also waits for what others wrote.
WORTH_SYNCING = 10 * 2**20


@dataclasses.dataclass(frozen=True)
class Project:
    """A fresh copy of a project, and what the generator tells of it."""

    folder: pathlib.Path
    facts: dict[str, int]


class Trees:
    """Projects below one folder, which goes away with them."""

    def __init__(self, place: pathlib.Path) -> None:
        self.root = place
        self.root.mkdir(parents=True)
        self._facts: dict[Settings, dict[str, int]] = {}

    def __enter__(self) -> Trees:
        return self

    def __exit__(self, *_: object) -> None:
        shutil.rmtree(self.root)

    def fresh(self, settings: Settings) -> Project:
        """A new copy, in place of the one before; what would still wait to be written is written."""
        original = self._original(settings)
        folder = self.root / "project"
        subprocess.run(["rm", "-rf", folder], check=True)
        subprocess.run(["cp", "-r", original, folder], check=True)
        facts = self._facts[settings]
        if facts["bytes"] >= WORTH_SYNCING:
            subprocess.run(["sync", "-f", folder], check=True)
        return Project(folder, facts)

    def forget(self, settings: Settings) -> None:
        """Makes room: the project is made anew when it is asked for again."""
        if self._facts.pop(settings, None) is not None:
            shutil.rmtree(self._place_of(settings))

    def _original(self, settings: Settings) -> pathlib.Path:
        if settings not in self._facts:
            self._facts[settings] = generate(self._place_of(settings), settings)
        return self._place_of(settings)

    def _place_of(self, settings: Settings) -> pathlib.Path:
        return self.root / f"original-{hash(settings):x}"


def generate(folder: pathlib.Path, settings: Settings) -> dict[str, int]:
    """In a process of its own: what this one has used counts as used by the programs it measures."""
    options = [f"--{name.replace('_', '-')}={value}" for name, value in dataclasses.asdict(settings).items()]
    made = subprocess.run(
        [sys.executable, "-B", GENERATOR, *options, folder], check=True, stdout=subprocess.PIPE)
    return json.loads(made.stdout)
