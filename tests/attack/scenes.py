"""A project, the world around it, and what is done to both in one case.

The world is what a user has beside a project: files and folders with the names that a run uses, a home, a folder
for the program's state and one for temporary files. A command may write its log there, and nothing else.
"""

from __future__ import annotations

import os
import pathlib
import re
import shutil
from dataclasses import dataclass, field

from cases import Site
from names import printable
from plants import LIBRARY, SCREENS, Plant, plain_screen, screen, write_files
from programs import Failure, Outcome
from trees import Tree, below, differences, is_screen, tree_of

# So that a link may lie above the folder of a screen, and not in its place alone.
DEEP_SCREENS = {"scr/area/deep/pit.psc": screen(["pump.plb", "valve.plb"]),
                "scr/area/deep/tank.psc": plain_screen("Tank")}
ALL_SCREENS = SCREENS | DEEP_SCREENS

# Where links lead to: what a command does in a project by a name could be done there.
OUTSIDE_SCREENS = {f"{folder}/{name.removeprefix('scr/')}": plain_screen(f"Outside, {folder}, {name}")
                   for folder in ("outside", "outside/scr", "outside/scr_bak", "outside/scr_temp")
                   for name in ALL_SCREENS}
WORLD = OUTSIDE_SCREENS | {f"outside/{name}": content for name, content in LIBRARY.items()} | {
    "outside/2026-01-02_03-04-05/scr/units.psc": plain_screen("Kept outside"),
    "outside/2026-01-02_03-04-05/scr_bak/area/notes.psc": plain_screen("Kept outside"),
    "outside/run.json": b'{"format": 1, "kind": "run"}',
    "outside/profile": b"# settings of a shell\n",
    "home/.profile": b"# settings of a shell\n",
    "home/state/notes.txt": b"notes\n",
    "plant.psc": plain_screen("Beside"),
    "plant_scr/legend.psc": plain_screen("Beside"),
    "tmp/notes.txt": b"notes\n",
}
PRIVATE = ("outside/profile", "outside/units.psc", "outside/scr/area/notes.psc")

# What a case makes for itself.
OWN = ("plant/", "taken/", "intruder/", "shapes", "trace")

OWN_LOG = re.compile(r"home/state/QEL(/Vantrel(/Vantrel\.log)?)?")

STAGE_FILE = ".vantrel.run"

# What no intruder does, because it does not hold yet: a kind of deed or all, a place, and a function or any.
SPARED = (
    # What a link leads to that takes the place of "scr" while screens are copied back is taken for originals that
    # are not backed up, and replaces those in the backup.
    ("link", "scr", ""),
    # The lock is looked at and then opened by a library that waits for a pipe.
    ("pipe", ".vantrel.lock", ""),
    ("pipe", ".vantrel.lock.rmlock", ""),
)

# How the program ends that is killed on purpose.
KILLED = -9


def surrounded(plant: Plant) -> Plant:
    """The same in a world."""
    def build(root: pathlib.Path) -> None:
        plant(root)
        write_files(root, DEEP_SCREENS)
        write_files(root.parent, WORLD)
        for name in PRIVATE:
            (root.parent / name).chmod(0o600)
        (root.parent / "outside/area").chmod(0o700)
        (root.parent / "outside/link.psc").symlink_to("legend.psc")
        for name in ("taken", "intruder"):
            (root.parent / name).mkdir()
    return build


@dataclass(frozen=True)
class Deed:
    """What is done in front of a call of the program. A kind is what the intruder knows."""
    call: int
    kind: str
    place: str = ""
    target: str = ""

    def __str__(self) -> str:
        target = f" to {self.target}" if self.target else ""
        return f"in front of call {self.call}: {self.kind} {self.place}{target}"


class Impossible(Exception):
    """A step finds no place for what it prepares, and is none then."""


@dataclass
class Scene:
    """What the steps of a case have prepared, and the commands that run on it."""
    place: Site
    intruder: str  # a library; empty where nobody intrudes
    lines: list[str] = field(default_factory=list)  # of the stage file
    damages: list[tuple[int, int]] = field(default_factory=list)  # of its bytes
    deeds: list[Deed] = field(default_factory=list)  # during the next command
    outcomes: list[str] = field(default_factory=list)
    required: Tree = field(default_factory=dict)  # what no command may lose
    keeps_backup: bool = True  # whether the stage file lets the last one go into the history

    def path(self, name: str) -> pathlib.Path:
        return self.place.project / name

    def target(self, name: str) -> str:
        """Links say it as a whole path: they work wherever they are moved to then."""
        return str(self.place.folder / name)

    def set_aside(self, name: str) -> pathlib.Path:
        """Makes room for something else, without a loss, and never behind a link. Returns the path."""
        path = self.path(name)
        above = [folder for folder in path.parents if folder.is_relative_to(self.place.project)]
        if any(os.path.lexists(folder) and (folder.is_symlink() or not folder.is_dir()) for folder in above):
            raise Impossible
        if os.path.lexists(path):
            taken = self.place.folder / "taken"
            path.rename(taken / f"prepared.{len(os.listdir(taken))}")
        path.parent.mkdir(parents=True, exist_ok=True)
        return path

    def write(self, name: str, content: bytes) -> None:
        self.set_aside(name).write_bytes(content)

    def move(self, name: str, target: str) -> None:
        place = self.set_aside(target)
        if not self.path(name).is_file():
            raise Impossible
        self.path(name).rename(place)

    def run(self, words: list[str]) -> None:
        """Runs a command and holds the world against what it was before."""
        self._write_stage_file()
        prefix = ["env", f"TMPDIR={self.place.folder / 'tmp'}", *self._intruding()]
        is_killed = any(deed.kind == "kill" for deed in self.deeds)
        before = self._world()
        self._require_screens(("scr", "scr_bak") if words[0] == "recover" and self.keeps_backup else ("scr",))
        outcome = self.place.program.run([words[0], "--project", str(self.place.project), *words[1:]], prefix)
        self.outcomes.append(f"{words[0]}: exit code {outcome.code}")
        self._require_harmless(before, outcome, is_killed)
        self.deeds = []
        if not is_killed:
            self.required = {}

    def _require_screens(self, folders: tuple[str, ...]) -> None:
        """Those before a command, and after a killed run what it had to keep."""
        tree = self.place.tree()
        self.required |= {path: entry for folder in folders for path, entry in below(tree, folder).items()
                          if entry.kind == "file" and is_screen(path.replace("scr_bak/", "scr/", 1))}

    def _write_stage_file(self) -> None:
        if not self.lines:
            return
        text = bytearray(("\n".join(["vantrel run 1", *self.lines, "end"]) + "\n").encode(errors="surrogateescape"))
        for place, byte in self.damages:
            text[place % len(text)] = byte
        self.write(STAGE_FILE, bytes(text))
        self.lines, self.damages = [], []
        # Without a history a run removes the last backup for good.
        self.keeps_backup = b"\nkept runs: 0" not in text and b"\nhistory: " in text

    def _intruding(self) -> list[str]:
        if not self.intruder:
            return []
        folder = self.place.folder / "intruder"
        shutil.rmtree(folder)
        folder.mkdir()
        lines = [str(self.place.project), *("\t".join(["0", *spared]) for spared in SPARED)]
        lines += [f"{deed.call}\t{deed.kind}\t{deed.place}\t{self.target(deed.target)}" for deed in self.deeds]
        (folder / "plan").write_text("\n".join(lines) + "\n")
        return [f"LD_PRELOAD={self.intruder}", f"VANTREL_INTRUDER={folder}"]

    def calls(self) -> int:
        """How many the last command has made."""
        return int.from_bytes((self.place.folder / "intruder/count").read_bytes(), "little")

    def _world(self) -> Tree:
        return {path: entry for path, entry in tree_of(self.place.folder).items() if not path.startswith(OWN)}

    def _require_harmless(self, before: Tree, outcome: Outcome, is_killed: bool) -> None:
        if outcome.code < 0 and not (is_killed and outcome.code == KILLED):
            raise Failure(f"ended by signal {-outcome.code}: {outcome.told()[-300:]}")
        after = {path: entry for path, entry in self._world().items()
                 if path in before or OWN_LOG.fullmatch(path) is None or entry.kind not in ("file", "folder")}
        log = {path for path in before if OWN_LOG.fullmatch(path)}
        expected = {path: entry for path, entry in before.items() if path not in log}
        found = {path: entry for path, entry in after.items() if path not in log or entry.kind != before[path].kind}
        if changed := differences(expected, found):
            raise Failure(f"changed outside, exit code {outcome.code}: {printable('; '.join(changed[:4]))}")
        if lost := self._lost_screens():
            raise Failure(f"screens lost, exit code {outcome.code}: {', '.join(lost)}: {outcome.told()[-300:]}")

    def _lost_screens(self) -> list[str]:
        """Those whose bytes are nowhere any more, wherever somebody has moved them."""
        held = {entry.content for folder in (self.place.project, self.place.folder / "taken")
                for entry in tree_of(folder).values() if entry.kind == "file"}
        return [path for path, entry in self.required.items() if entry.content not in held]
