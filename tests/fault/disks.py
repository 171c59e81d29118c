"""Disks without room: too few bytes, too few inodes, files that may not grow.

The sizes go up page by page from that of the plant itself, so that the room ends at every stage
of a run. Needs a namespace in which small file systems can be mounted.
"""

from __future__ import annotations

import contextlib
import functools
import os
import subprocess
from typing import Iterator

import kills
from cases import Case, Site, Surroundings, site
from faults import SETTINGS, Setting, Undisturbed, require_no_silence, require_nothing_lost, require_safety, study, without_lock
from plants import stopped
from programs import Failure, Outcome, require_no_crash
from trees import Tree, differences

PAGE = 4096
PAGES_OF_A_PLANT = 12
FILLER = "filler"


@contextlib.contextmanager
def small_disk(place: Site, options: str) -> Iterator[None]:
    """A file system of its own below the project; the plant is made on it."""
    subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", str(place.project)], check=True)
    try:
        place.plant(place.project)
        place.before = place.tree()
        yield
    finally:
        # Lazily: what has just ended may not have let go of it yet.
        subprocess.run(["umount", "--lazy", str(place.project)], check=True)


def empty(root: object) -> None:
    """The plant is made later, on its own disk."""


def require_reason(outcome: Outcome, reason: str) -> None:
    was_foreseen = any(finding["check"] == "no-room" for finding in outcome.of_kind("finding"))
    if outcome.code != 0 and not was_foreseen and reason not in outcome.told():
        raise Failure(f"exit code {outcome.code} without the reason \"{reason}\": {outcome.told()[-600:]}")


def require_told(place: Site, outcome: Outcome, after: Tree, undisturbed: Undisturbed, reason: str) -> None:
    require_no_crash(outcome)
    require_safety(place.before, after, undisturbed)
    require_nothing_lost(place.before, after, outcome)
    require_no_silence(outcome, after, undisturbed)
    if differences(undisturbed.tree, after):
        require_reason(outcome, reason)


def check_disk(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, options: str) -> None:
    with site(surroundings, empty) as place:
        place.plant = setting.plant
        with small_disk(place, options):
            outcome = place.program.run(setting.arguments(place))
            after = place.tree()
        require_told(place, outcome, after, undisturbed, "No space left on device")


def check_limit(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, size: int) -> None:
    with site(surroundings, setting.plant) as place:
        outcome = place.program.run(setting.arguments(place), ["prlimit", f"--fsize={size}"])
        require_told(place, outcome, place.tree(), undisturbed, "File too large")


def check_limited_dry_run(surroundings: Surroundings, size: int) -> None:
    """It works on a copy of "scr_temp", which may not fit either. Nothing of it stays."""
    with site(surroundings, stopped) as place:
        temporary = place.folder / "temporary"
        temporary.mkdir()
        outcome = place.program.run(place.update("--dry-run"),
                                    ["prlimit", f"--fsize={size}", "env", f"TMPDIR={temporary}"])
        require_no_crash(outcome)
        require_reason(outcome, "File too large")
        if changed := differences(place.before, place.tree()):
            raise Failure(f"a dry run changed {'; '.join(changed[:4])}")
        if left := list(temporary.iterdir()):
            raise Failure(f"a dry run left {left}")


def pages_of(sizes: list[int]) -> int:
    return sum(-(-size // PAGE) for size in sizes)


def disk_options(undisturbed: Undisturbed, setting: Setting, surroundings: Surroundings) -> list[str]:
    """From a disk that the plant fills to one with room for two copies of the screens."""
    with site(surroundings, setting.plant) as place:
        sizes = {path: len(entry.content) for path, entry in place.before.items() if entry.kind == "file"}
        entries = len(place.before)  # each name of a file counts
    if setting.hard_links:
        sizes.pop("archive/units.psc")
    first = pages_of(list(sizes.values()))
    screens_ = pages_of([len(entry.content) for path, entry in undisturbed.tree.items() if path.startswith("scr/")])
    room = [f"size={(first + pages) * PAGE},nr_inodes=10000" for pages in range(2 * screens_ + 4)]
    inodes = [f"size=100m,nr_inodes={entries + 1 + count}" for count in range(2 * len(undisturbed.tree))]
    return room + inodes


def full_disks(surroundings: Surroundings) -> list[Case]:
    cases = []
    for setting in SETTINGS:
        undisturbed = study(surroundings, setting)
        for options in surroundings.thinned(disk_options(undisturbed, setting, surroundings)):
            check = functools.partial(check_disk, surroundings, setting, undisturbed, options)
            cases.append(Case(f"{setting.name}: {options}", check))
    return cases


# --- With earlier runs that take the room of a new one ---

OLDER_RUN = ".vantrel.history/2001-02-03_04-05-06"


def check_room(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed) -> None:
    """The oldest run goes, and no other; the new one does all, and tells it."""
    with site(surroundings, empty) as place:
        place.plant = setting.plant
        with small_disk(place, "size=2m,nr_inodes=1000"):
            older = place.project / OLDER_RUN
            newer = place.project / OLDER_RUN.replace("2001", "2002")
            for folder in (older, newer):
                folder.mkdir()
                (folder / "run.json").write_text('{"format": 1, "kind": "run"}')
            free = os.statvfs(place.project)
            (older / FILLER).write_bytes(bytes((free.f_bfree - 2) * PAGE))
            outcome = place.program.run(setting.arguments(place))
            after = place.tree()
            left = older.exists(), newer.exists()
        require_no_crash(outcome)
        if left != (False, True):
            raise Failure(f"left of the older runs: {left}")
        if changed := differences(undisturbed.tree, after):
            raise Failure(f"another tree: {'; '.join(changed[:4])}")
        if not any("no room for this run" in message for message in outcome.messages()):
            raise Failure(f"not told: {outcome.messages()}")


def room_of_earlier_runs(surroundings: Surroundings) -> list[Case]:
    return [Case(setting.name, functools.partial(check_room, surroundings, setting, study(surroundings, setting)))
            for setting in SETTINGS]


# --- Without the list of open files, over which a whole copy gets its name ---

WITHOUT_PROC = ["unshare", "-m", "sh", "-c", 'mount -t tmpfs tmpfs /proc && exec "$@"', "sh"]


def check_without_proc(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed) -> None:
    with site(surroundings, setting.plant) as place:
        outcome = place.program.run(setting.arguments(place), WITHOUT_PROC)
        require_no_crash(outcome)
        if changed := differences(undisturbed.tree, place.tree()):
            raise Failure(f"another tree: {'; '.join(changed[:4])}")


def without_proc(surroundings: Surroundings) -> list[Case]:
    return [Case(setting.name, functools.partial(check_without_proc, surroundings, setting,
                                                 study(surroundings, setting))) for setting in SETTINGS]


# --- Recovering on a full disk ---

SCREENS_MISSING = 4


def fill(place: Site, pages: int) -> None:
    """Leaves that many pages on the disk."""
    free = os.statvfs(place.project)
    with (place.project / FILLER).open("wb") as filler:
        filler.write(bytes(max(free.f_bfree - pages, 0) * PAGE))


def check_recovery(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, kill: kills.Kill,
                   promise: kills.Promise, pages: int) -> None:
    with site(surroundings, empty) as place:
        place.plant = setting.plant
        with small_disk(place, "size=2m,nr_inodes=1000"):
            kill.of(place, setting.arguments(place))
            fill(place, pages)
            outcome = place.program.run(["recover", "--project", str(place.project), promise.option, "--json"])
            (place.project / FILLER).unlink()
            halfway = place.tree()
            is_open = kills.is_under_way(halfway)
            # A run that is performed anew ends with reports, as any run does on such a disk; what
            # completes it then names the screens.
            is_reported = promise.option == "--finish" and bool(outcome.error_reports())
            if is_open:
                kills.recover(place, promise, undisturbed, *([SCREENS_MISSING] if is_reported else []))
            after = without_lock(place.tree())
        require_no_crash(outcome)
        require_safety(place.before, halfway, undisturbed)
        require_nothing_lost(place.before, after, outcome)
        require_reason(outcome, "No space left on device")
        if outcome.code == 0 and is_open:
            raise Failure("said that all is done, but left the file that tells of the run")
        if not is_reported and (outcome.code == 0 or is_open or promise.option == "--roll-back"):
            promise.require(place.before, after, undisturbed, False)


def full_disk_recoveries(surroundings: Surroundings) -> list[Case]:
    kills.require_recover(surroundings)
    cases = []
    for setting in kills.SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        points = [(kill, promise, pages) for kill in kills.interrupted(surroundings, setting, undisturbed, 6)
                  for promise in kills.PROMISES for pages in range(2 * PAGES_OF_A_PLANT)]
        for kill, promise, pages in surroundings.thinned(points):
            check = functools.partial(check_recovery, surroundings, setting, undisturbed, kill, promise, pages)
            cases.append(Case(f"{setting.name}: {kill.injection}, recover {promise.option}, {pages} pages", check))
    return cases


def check_undoing(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, pages: int) -> None:
    with site(surroundings, empty) as place:
        place.plant = setting.plant
        with small_disk(place, "size=2m,nr_inodes=1000"):
            kills.complete(place, setting)
            fill(place, pages)
            outcome = place.program.run([*kills.undoing(place), "--json"])
            (place.project / FILLER).unlink()
            kills.require_undoable(place, undisturbed, outcome)
        require_reason(outcome, "No space left on device")


def full_disk_undoings(surroundings: Surroundings) -> list[Case]:
    kills.require_recover(surroundings)
    cases = []
    for setting in kills.SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        for pages in surroundings.thinned(list(range(2 * PAGES_OF_A_PLANT))):
            check = functools.partial(check_undoing, surroundings, setting, undisturbed, pages)
            cases.append(Case(f"{setting.name}: {pages} pages", check))
    return cases


def limits(tree: Tree) -> list[int]:
    """Around the size of every file, and around every page."""
    sizes = {len(entry.content) for entry in tree.values() if entry.kind == "file"}
    edges = sizes | set(range(0, max(sizes), PAGE))
    return sorted({edge + step for edge in edges for step in (-1, 0, 1) if edge + step >= 0})


def limited_files(surroundings: Surroundings) -> list[Case]:
    cases = []
    for setting in SETTINGS:
        undisturbed = study(surroundings, setting)
        for size in surroundings.thinned(limits(undisturbed.tree)):
            check = functools.partial(check_limit, surroundings, setting, undisturbed, size)
            cases.append(Case(f"{setting.name}: at most {size} bytes", check))
    with site(surroundings, stopped) as place:
        sizes = limits(place.before)
    return cases + [Case(f"dry run, at most {size} bytes", functools.partial(check_limited_dry_run, surroundings, size))
                    for size in surroundings.thinned(sizes)]
