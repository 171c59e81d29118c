"""Calls that fail: the n-th of each kind, once and from then on, for every n.

A run that met a fault ends with another exit code than 0, or leaves the tree of an undisturbed
run. Whatever it met, every original screen is whole, nothing outside of "scr", "scr_temp" and
"scr_bak" has changed, and no half-written screen has come into "scr".
"""

from __future__ import annotations

import collections
import functools
import itertools
import re
from dataclasses import dataclass

from cases import Case, Site, Surroundings, site
from plants import Plant, linked, mixed, sound, without
from programs import Failure, Outcome, require_no_crash
from tracing import Calls, Injection, fast_tracer, options_for, record, require_injected
from trees import LOCKS, Tree, differences, lost_files, lost_originals, screens

WRITING = {"openat", "write", "sendfile", "copy_file_range", "linkat", "linkat", "mkdir", "mkdirat",
           "rename", "renameat", "renameat2", "fsync", "fdatasync", "ftruncate", "fallocate"}
ERRORS = ("EIO",)
ERRORS_OF_WRITING = ("EIO", "ENOSPC", "EDQUOT")
INTERRUPTED = "EINTR"  # by a signal; once, since what is interrupted is called again

# Files that a run may leave out without a change of what a correct screen holds: each failure of
# them is reported for every object that is concerned.
LIBRARY_FILES = ("mac/pump.plb", "mac/vlo/valve.plb", "bmp/lamps/lamp.bmp")

FOLDERS_OF_A_RUN = ("scr", "scr_temp", "scr_bak")

# What the log says before something is removed that the history should have kept.
NOT_KEPT = ("The history cannot be written", "and is removed")


@dataclass(frozen=True)
class Setting:
    """What the faults are injected into."""
    name: str
    plant: Plant
    surveyed: bool  # whether the run obeys its survey and takes the shapes from it
    hard_links: int = 0

    def arguments(self, place: Site) -> list[str]:
        return place.update_all() if self.surveyed else place.update()


SETTINGS = (
    Setting("by renaming", sound, surveyed=False),
    Setting("by copying", linked, surveyed=False, hard_links=1),
    Setting("with errors", mixed, surveyed=False),
    Setting("surveyed", sound, surveyed=True),
)


@dataclass(frozen=True)
class Undisturbed:
    """A setting's run without a fault, and what it may leave with one."""
    outcome: Outcome
    tree: Tree
    calls: Calls
    possible: dict[str, set[bytes]]  # by screen: every content that is no half-written one


studied: dict[str, Undisturbed] = {}


def study(surroundings: Surroundings, setting: Setting) -> Undisturbed:
    """Once for each setting, whatever rows ask for it."""
    if setting.name not in studied:
        studied[setting.name] = look_into(surroundings, setting)
    return studied[setting.name]


def look_into(surroundings: Surroundings, setting: Setting) -> Undisturbed:
    with site(surroundings, setting.plant) as place:
        outcome = place.program.run(setting.arguments(place))
        tree = place.tree()
        calls = record(place.program, place.build, setting.arguments(place))
        contents: dict[str, set[bytes]] = collections.defaultdict(set)
        for path, content in screens(place.before).items():
            contents[path].add(content)
    for path, content in degraded_screens(surroundings, setting):
        contents[path].add(content)
    return Undisturbed(outcome, tree, calls, contents)


def degraded_screens(surroundings: Surroundings, setting: Setting) -> list[tuple[str, bytes]]:
    """What the screens become where some of the library is missing."""
    found = []
    for count in range(len(LIBRARY_FILES) + 1):
        for missing in itertools.combinations(LIBRARY_FILES, count):
            with site(surroundings, without(setting.plant, *missing)) as place:
                place.program.run(place.update())
                found += screens(place.tree()).items()
    return found


def require_safety(before: Tree, after: Tree, undisturbed: Undisturbed) -> None:
    """What holds whatever a run met."""
    if lost := lost_originals(before, after):
        raise Failure(f"originals lost: {', '.join(lost)}")

    def outside(tree: Tree) -> Tree:
        return {path: entry for path, entry in tree.items()
                if path.split("/")[0] not in FOLDERS_OF_A_RUN and not path.startswith(".vantrel.")}
    if changed := differences(outside(before), outside(after)):
        raise Failure(f"changed outside of the screens: {'; '.join(changed)}")
    half = [path for path, content in screens(after).items() if content not in undisturbed.possible[path]]
    if half:
        raise Failure(f"not whole in \"scr\": {', '.join(half)}")


def require_nothing_lost(before: Tree, after: Tree, outcome: Outcome | None = None) -> None:
    """Every file is somewhere, unless the program has told that it could not be kept."""
    lost = lost_files(before, after)
    if lost and not (outcome and any(words in outcome.told() for words in NOT_KEPT)):
        raise Failure(f"lost without a word: {', '.join(lost[:4])}")


def errors_told(outcome: Outcome) -> collections.Counter:
    """What log, reports, findings and the last line say of errors, wherever the project lay."""
    def somewhere(text: str) -> str:
        return re.sub(r"\S*/case\d+/", "", text)
    reports = [f"{report['imageFile']} {report['error']}" for report in outcome.error_reports()]
    findings = [f"{finding['path']} {finding['text']}" for finding in outcome.of_kind("finding")]
    endings = [end["message"] for end in outcome.of_kind("end") if end["message"]]
    return collections.Counter(somewhere(text) for text in outcome.messages() + reports + findings + endings)


def has_told_more(outcome: Outcome, undisturbed: Outcome) -> bool:
    """Where the undisturbed run reports errors as well, a fault must add others."""
    return outcome.code != undisturbed.code or bool(errors_told(outcome) - errors_told(undisturbed))


def without_lock(tree: Tree) -> Tree:
    """A lock whose process has ended keeps nobody away, and the next process removes it."""
    return {path: entry for path, entry in tree.items() if path not in LOCKS}


def require_no_silence(outcome: Outcome, after: Tree, undisturbed: Undisturbed) -> None:
    changed = differences(undisturbed.tree, without_lock(after))
    told = outcome.code != 0 and has_told_more(outcome, undisturbed.outcome)
    if changed and not told:
        raise Failure(f"silent, exit code {outcome.code}: {'; '.join(changed[:4])}")


def check_fault(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed,
                injection: Injection) -> None:
    with site(surroundings, setting.plant) as place:
        options = injection.options() + options_for(injection.call, place.project, undisturbed.calls.paths)
        log = place.folder / "trace"
        outcome = place.program.run(setting.arguments(place), fast_tracer(log, options))
        after = place.tree()
        require_injected(log, injection)
        require_no_crash(outcome)
        require_safety(place.before, after, undisturbed)
        require_nothing_lost(place.before, after, outcome)
        require_no_silence(outcome, after, undisturbed)


def effects_on(call: str) -> list[tuple[str, bool]]:
    """How a call fails, and whether from then on."""
    errors = ERRORS_OF_WRITING if call in WRITING else ERRORS
    return [(INTERRUPTED, False), *itertools.product(errors, (False, True))]


def injections(calls: Calls) -> list[Injection]:
    return [Injection(call, number, f"error={error}", from_then_on)
            for call, count in sorted(calls.counts.items())
            for number in range(1, count + 1)
            for error, from_then_on in effects_on(call)]


def failing_calls(surroundings: Surroundings) -> list[Case]:
    cases = []
    for setting in SETTINGS:
        undisturbed = study(surroundings, setting)
        if (undisturbed.outcome.code == 0) != (setting.plant is not mixed):
            raise Failure(f"undisturbed run {setting.name}: exit code {undisturbed.outcome.code}")
        for injection in surroundings.thinned(injections(undisturbed.calls)):
            check = functools.partial(check_fault, surroundings, setting, undisturbed, injection)
            cases.append(Case(f"{setting.name}: {injection}", check))
    return cases
