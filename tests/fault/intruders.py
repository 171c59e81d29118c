"""A project that somebody else changes while a run is under way.

A run is stopped at a call, the project is changed, and the run goes on. It comes to an end, the
change is reported, and no original is lost that was there when it went on.
"""

from __future__ import annotations

import contextlib
import functools
import os
import pathlib
import shutil
import signal
import subprocess
import time
from dataclasses import dataclass
from typing import Callable

from cases import Case, Site, Surroundings, site
from faults import SETTINGS, Setting, study
from plants import placed_object, sound
from programs import PATIENCE, Failure, Outcome, outcome_of, require_no_crash
from tracing import Injection, tracer
from trees import Tree, below, differences, screens

Change = Callable[[pathlib.Path], None]

# The first of them comes between the listing of the screens and the reading of the first one.
FIRST_OF_A_RUN = "mkdirat"
STEPS_OF_A_RUN = ("mkdir", "mkdirat", "renameat", "renameat2", "linkat", "rmdir", "unlinkat", "sendfile")

STOP = "signal=SIGSTOP"

# A process that ends while it is looked at is missing in one of two ways: its folder is gone, or the
# kernel finds nobody behind a folder that is still there.
GONE = (FileNotFoundError, ProcessLookupError)


def child_of(process: subprocess.Popen) -> int | None:
    """The program that a tracer runs."""
    try:
        children = pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text().split()
    except GONE:
        return None
    return int(children[0]) if children else None


def is_stopped(program: int, log: pathlib.Path) -> bool:
    """Whether every thread stands still, and not only for the tracer's sake."""
    stopped = log.read_text(errors="surrogateescape").count("--- stopped by SIGSTOP ---") if log.exists() else 0
    try:
        # The tracer tries out what it can do on children of its own, which come and go.
        return 0 < len(os.listdir(f"/proc/{program}/task")) <= stopped
    except GONE:
        return False


def wait_until_stopped(process: subprocess.Popen, log: pathlib.Path) -> int | None:
    """The stopped program, or nothing where it ended without coming to the call."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline and process.poll() is None:
        program = child_of(process)
        if program is not None and is_stopped(program, log):
            return program
        time.sleep(0.001)
    return None


def go_on(process: subprocess.Popen, program: int) -> None:
    """Wakes a stopped program until it ends: each of its threads stops at its own call."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline and process.poll() is None:
        with contextlib.suppress(ProcessLookupError):
            os.kill(program, signal.SIGCONT)
        time.sleep(0.001)


def run_interrupted(place: Site, setting: Setting, injection: Injection, change: Callable[[], None]) -> Outcome | None:
    """Changes the project while a run stands at a call; nothing where no run came to it."""
    log = place.folder / "trace"
    process = place.program.start(setting.arguments(place), tracer(log, injection.options()))
    program = wait_until_stopped(process, log)
    if program is not None:
        change()
        go_on(process, program)
    outcome = outcome_of(process)
    return outcome if program is not None else None


# --- Files that change between the listing and the reading ---


def vanish(path: pathlib.Path) -> None:
    path.unlink()


def grow(path: pathlib.Path) -> None:
    with path.open("ab") as file:
        file.write(placed_object(77, "pump.plb").encode("latin-1"))


def change_bytes(path: pathlib.Path) -> None:
    path.write_bytes(path.read_bytes().replace(b"Plant/", b"Works/"))


def shrink(path: pathlib.Path) -> None:
    lines = path.read_bytes().splitlines(keepends=True)
    path.write_bytes(b"".join(lines[: len(lines) // 6 * 3]))


def become_folder(path: pathlib.Path) -> None:
    path.unlink()
    path.mkdir()



@dataclass(frozen=True)
class FileChange:
    name: str
    apply: Change
    is_reported: bool  # what remains can be converted, otherwise


FILE_CHANGES = (
    FileChange("vanishes", vanish, is_reported=True),
    FileChange("grows", grow, is_reported=False),
    FileChange("changes", change_bytes, is_reported=False),
    FileChange("shrinks", shrink, is_reported=False),
    FileChange("becomes a folder", become_folder, is_reported=True),
)


def originals_in(tree: Tree, kept: dict[str, bytes]) -> set[str]:
    """Which of the kept screens a tree holds whole, wherever they lie."""
    places = ("scr", "scr_bak", "elsewhere")

    def is_whole(path: str, content: bytes) -> bool:
        rest = path[len("scr"):]
        return any(place + rest in tree and tree[place + rest].content == content for place in places)
    return {path for path, content in kept.items() if is_whole(path, content)}


def check_file_change(surroundings: Surroundings, setting: Setting, file_change: FileChange, name: str,
                      injection: Injection) -> None:
    with site(surroundings, setting.plant) as place:
        kept: dict[str, bytes] = {}

        def change() -> None:
            file_change.apply(place.project / name)
            kept.update(screens(place.tree()))
        outcome = run_interrupted(place, setting, injection, change)
        if outcome is None:
            raise Failure("the run never came to the call")
        require_no_crash(outcome)
        after = place.tree()
        if lost := kept.keys() - originals_in(after, kept):
            raise Failure(f"lost, exit code {outcome.code}: {', '.join(sorted(lost))}")
        if file_change.is_reported and (outcome.code == 0 or name not in outcome.told()):
            raise Failure(f"not reported, exit code {outcome.code}")
        others = [path for path in kept if path != name and path not in after]
        if others:
            raise Failure(f"the run did not go on: {', '.join(others)}")


# --- "scr" itself goes away ---


def rename_away(project: pathlib.Path) -> None:
    if (project / "scr").exists():
        (project / "scr").rename(project / "elsewhere")


def remove(project: pathlib.Path) -> None:
    shutil.rmtree(project / "scr", ignore_errors=True)


FOLDER_CHANGES = (rename_away, remove)


def check_folder_change(surroundings: Surroundings, setting: Setting, change_folder: Change, undisturbed: Tree,
                        injection: Injection) -> None:
    with site(surroundings, setting.plant) as place:
        originals = screens(place.before)
        there: set[str] = set()

        def change() -> None:
            change_folder(place.project)
            there.update(originals_in(place.tree(), originals))
        outcome = run_interrupted(place, setting, injection, change)
        if outcome is None:
            raise Failure("the run never came to the call")
        require_no_crash(outcome)
        after = place.tree()
        if lost := there - originals_in(after, originals):
            raise Failure(f"lost, exit code {outcome.code}: {', '.join(sorted(lost))}")
        changed = differences(below(undisturbed, "scr"), below(after, "scr"))
        if outcome.code == 0 and changed:
            raise Failure(f"not reported, exit code 0: {'; '.join(changed[:4])}")


def intruders(surroundings: Surroundings) -> list[Case]:
    cases = []
    for setting in SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        counts = undisturbed.calls.counts
        cases += [Case(f"{setting.name}: {name} {file_change.name}",
                       functools.partial(check_file_change, surroundings, setting, file_change, name,
                                         Injection(FIRST_OF_A_RUN, 1, STOP)))
                  for file_change in FILE_CHANGES for name in ("scr/area/dosing.psc", "scr/units.psc", "scr/legend.psc")]
        points = [Injection(call, number, STOP) for call in STEPS_OF_A_RUN
                  for number in range(1, counts.get(call, 0) + 1)]
        for injection in surroundings.thinned(points):
            cases += [Case(f"{setting.name}: {change.__name__} at {injection.call} {injection.number}",
                           functools.partial(check_folder_change, surroundings, setting, change, undisturbed.tree,
                                             injection)) for change in FOLDER_CHANGES]
    return cases
