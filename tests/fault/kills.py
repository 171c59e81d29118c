"""Programs that are killed at every file-system call, and projects that are recovered afterwards.

Whenever a run is killed, every original screen is whole. Rolling back gives the screens as they
were, finishing gives the tree of an undisturbed run; and when recovering is killed itself,
repeating it does so.

The first thread surveys the project before the worker begins, and calls are counted for each
thread. So the calls that only a run makes, on what only a run has, are counted once more on
their own. Between two of them nothing changes on the disk, and what is left after any other
call is what is left before the next one of them.
"""

from __future__ import annotations

import functools
import signal
from dataclasses import dataclass
from typing import Callable

from cases import Case, Site, Surroundings, evenly, site
from faults import (Setting, Undisturbed, injections, require_nothing_lost, require_safety, study,
                    without_lock)
from plants import linked, mixed, sound, stopped
from programs import Failure, Outcome, require_no_crash
from tracing import ONLY_ON_PROJECT, Calls, Injection, fast_tracer, options_for, record, require_injected, tracer
from trees import HISTORY, RUN_FILES, Entry, Tree, below, differences, place_in_backup

SETTINGS = (
    Setting("by renaming", sound, surveyed=False),
    Setting("by copying", linked, surveyed=False, hard_links=1),
    Setting("with errors", mixed, surveyed=False),
    Setting("after a stopped run", stopped, surveyed=False),
)

KILL = "signal=SIGKILL"

NO_FILE = Entry("file", 0)

# From how many interrupted runs of each setting recovering is interrupted as well.
INTERRUPTED_RUNS = 12

# How many runs are killed for one that is looked at further: many are not under way yet.
TRIES = 3


@dataclass(frozen=True)
class Kill:
    """A call at which a run is killed, among the calls on some paths."""
    injection: Injection
    calls: Calls

    def of(self, place: Site, arguments: list[str]) -> None:
        options = self.injection.options() + options_for(self.injection.call, place.project, self.calls.paths)
        outcome = place.program.run(arguments, tracer(place.folder / "trace", options))
        if outcome.code != -signal.SIGKILL:
            raise Failure(f"{self.injection} did not kill it: exit code {outcome.code}")


@dataclass(frozen=True)
class Fault:
    """A call of a recovery that fails, among the calls on some paths."""
    injection: Injection
    calls: Calls


@dataclass(frozen=True)
class Promise:
    """How a project is recovered, and what it holds then."""
    option: str
    require: Callable[[Tree, Tree, Undisturbed, bool], None]


def is_made_by_run(path: str) -> bool:
    return path.startswith(("scr_temp", "scr_bak", ".vantrel."))


def kills_of(calls: Calls) -> list[Kill]:
    return [Kill(Injection(call, number, KILL), calls)
            for call, count in sorted(calls.counts.items()) for number in range(1, count + 1)]


def kills_of_run(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed) -> list[Kill]:
    with site(surroundings, setting.plant) as place:
        own = record(place.program, place.build, setting.arguments(place), is_made_by_run)
    return kills_of(undisturbed.calls) + kills_of(own)


# --- What a project holds afterwards ---


def without_run_files(tree: Tree) -> Tree:
    return {path: entry for path, entry in tree.items() if path not in RUN_FILES}


def require_rolled_back(before: Tree, after: Tree, undisturbed: Undisturbed, ended: bool) -> None:
    """The screens as before, and all that lay beside them; the backup of the run before, too."""
    if ended:
        require_unchanged_or_done(before, after, undisturbed)
        return
    require_as_before(before, after)


def require_as_before(before: Tree, after: Tree) -> None:
    for folder in ("scr", "scr_bak"):
        if changed := differences(below(before, folder), below(after, folder)):
            raise Failure(f"not rolled back: {'; '.join(changed[:4])}")


def require_finished(before: Tree, after: Tree, undisturbed: Undisturbed, ended: bool) -> None:
    if ended:
        require_unchanged_or_done(before, after, undisturbed)
    elif changed := differences(undisturbed.tree, {**kept_backups(after, undisturbed.tree), **after}):
        raise Failure(f"not finished: {'; '.join(changed[:4])}")


def kept_backups(tree: Tree, expected: Tree) -> Tree:
    """Screens that could not be copied to the backup lie in the history, as they were."""
    kept = {path.split("/", 2)[2]: entry for path, entry in below(tree, HISTORY).items() if path.count("/") > 2}
    return {place_in_backup(path): entry for path, entry in kept.items()
            if path.startswith("scr/") and place_in_backup(path) in expected}


def require_unchanged_or_done(before: Tree, after: Tree, undisturbed: Undisturbed) -> None:
    """Where the run had not begun, or had ended, there is nothing to recover."""
    if differences(before, without_run_files(after)) and differences(undisturbed.tree, without_run_files(after)):
        changed = differences(before, without_run_files(after))
        raise Failure(f"neither begun nor ended, but changed: {'; '.join(changed[:4])}")


PROMISES = (Promise("--roll-back", require_rolled_back), Promise("--finish", require_finished))


# --- Killing a run ---


def is_under_way(tree: Tree) -> bool:
    return ".vantrel.run" in tree


def recover(place: Site, promise: Promise, undisturbed: Undisturbed, *other_codes: int) -> None:
    """A run that is finished reports what it would have reported undisturbed."""
    outcome = place.program.run(["recover", "--project", str(place.project), promise.option])
    if outcome.code not in (0, undisturbed.outcome.code, *other_codes):
        raise Failure(f"recover {promise.option}: exit code {outcome.code}: {outcome.told()[-400:]}")


def check_kill(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, kill: Kill) -> None:
    with site(surroundings, setting.plant) as place:
        kill.of(place, setting.arguments(place))
        require_safety(place.before, place.tree(), undisturbed)
        require_nothing_lost(place.before, place.tree())


def check_recovery(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, kill: Kill,
                   promise: Promise) -> None:
    with site(surroundings, setting.plant) as place:
        kill.of(place, setting.arguments(place))
        ended = not is_under_way(place.tree())
        if not ended:
            recover(place, promise, undisturbed)
        promise.require(place.before, place.tree(), undisturbed, ended)
        require_nothing_lost(place.before, place.tree())


def killed_runs(surroundings: Surroundings) -> list[Case]:
    with site(surroundings, sound) as place:
        has_recover = place.program.has_command("recover")
    cases = []
    for setting in SETTINGS:
        undisturbed = study(surroundings, setting)
        for kill in surroundings.thinned(kills_of_run(surroundings, setting, undisturbed)):
            name = f"{setting.name}: {kill.injection}"
            cases.append(Case(name, functools.partial(check_kill, surroundings, setting, undisturbed, kill)))
            cases += [Case(f"{name}, recover {promise.option}",
                           functools.partial(check_recovery, surroundings, setting, undisturbed, kill, promise))
                      for promise in PROMISES if has_recover]
    return cases


# --- Killing the recovery ---


def check_repetition(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, kill: Kill,
                     promise: Promise, second: Kill) -> None:
    with site(surroundings, setting.plant) as place:
        kill.of(place, setting.arguments(place))
        arguments = ["recover", "--project", str(place.project), promise.option]
        second.of(place, arguments)
        require_safety(place.before, place.tree(), undisturbed)
        require_nothing_lost(place.before, place.tree())
        if is_under_way(place.tree()):
            recover(place, promise, undisturbed)
            after = place.tree()
        else:  # killed when all was done
            after = without_run_files(place.tree())
        promise.require(place.before, after, undisturbed, ended=False)


def interrupted(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, wanted: int) -> list[Kill]:
    """Runs that were killed under way, each with another outcome."""
    found: dict[tuple, Kill] = {}
    changing = [kill for kill in kills_of_run(surroundings, setting, undisturbed)
                if kill.injection.call in ONLY_ON_PROJECT]
    for kill in evenly(changing, TRIES * wanted):
        with site(surroundings, setting.plant) as place:
            kill.of(place, setting.arguments(place))
            tree = place.tree()
            if is_under_way(tree):
                found.setdefault(tuple(sorted(tree)), kill)
    return evenly(list(found.values()), wanted)


def require_recover(surroundings: Surroundings) -> None:
    with site(surroundings, sound) as place:
        if not place.program.has_command("recover"):
            raise Failure("the program has no command that recovers")


def killed_recoveries(surroundings: Surroundings) -> list[Case]:
    require_recover(surroundings)
    # Few where few points are wanted, since preparing them takes its time too.
    wanted = INTERRUPTED_RUNS if surroundings.points is None else min(INTERRUPTED_RUNS, -(-surroundings.points // 8))
    cases = []
    for setting in SETTINGS:
        undisturbed = study(surroundings, setting)
        points = []
        for kill in interrupted(surroundings, setting, undisturbed, wanted):
            points += recovery_points(surroundings, setting, kill)
        for kill, promise, second in surroundings.thinned(points):
            check = functools.partial(check_repetition, surroundings, setting, undisturbed, kill, promise, second)
            cases.append(Case(f"{setting.name}: {kill.injection}, recover {promise.option} {second.injection}", check))
    return cases


# --- Killing the undoing of a completed run ---


def complete(place: Site, setting: Setting) -> None:
    outcome = place.program.run(setting.arguments(place))
    if outcome.code != 0:
        raise Failure(f"undisturbed run: exit code {outcome.code}")


def undoing(place: Site) -> list[str]:
    return ["recover", "--project", str(place.project), "--undo"]


def set_aside(tree: Tree) -> list[Tree]:
    """What each undoing has put into the history, named as it lay in the project; it may not know whether a place is free."""
    entries = {path.split("/")[1] for path in below(tree, HISTORY)}
    undoings = [entry for entry in entries if b'"undo"' in tree.get(f"{HISTORY}/{entry}/run.json", NO_FILE).content]
    return [{path.removeprefix(f"{HISTORY}/{entry}/").replace("scr.2/", "scr/", 1): found
             for path, found in below(tree, f"{HISTORY}/{entry}").items()}
            for entry in undoings]


def require_undone(place: Site, undisturbed: Undisturbed) -> None:
    """Perhaps by repeating it: what was begun is ended, and what was not is done anew."""
    after = place.tree()
    if is_under_way(after) or not differences(undisturbed.tree, without_run_files(after)):
        outcome = place.program.run(undoing(place))
        if outcome.code != 0:
            raise Failure(f"recover --undo: exit code {outcome.code}: {outcome.told()[-400:]}")
        after = place.tree()
    require_as_before(place.before, after)
    kept = [differences(below(undisturbed.tree, "scr"), below(tree, "scr")) for tree in set_aside(after)]
    if not any(changed == [] for changed in kept):
        raise Failure(f"not kept: {'; '.join(min(kept, key=len, default=['nothing at all'])[:4])}")


def check_undoing(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, kill: Kill) -> None:
    with site(surroundings, setting.plant) as place:
        complete(place, setting)
        kill.of(place, undoing(place))
        require_safety(place.before, place.tree(), undisturbed)
        require_nothing_lost(place.before, place.tree())
        require_undone(place, undisturbed)


def calls_of_undoing(surroundings: Surroundings, setting: Setting) -> Calls:
    with site(surroundings, setting.plant) as place:
        def prepare() -> object:
            project = place.build()
            complete(place, setting)
            return project
        return record(place.program, prepare, undoing(place))


def killed_undoings(surroundings: Surroundings) -> list[Case]:
    require_recover(surroundings)
    cases = []
    for setting in SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        for kill in surroundings.thinned(kills_of(calls_of_undoing(surroundings, setting))):
            check = functools.partial(check_undoing, surroundings, setting, undisturbed, kill)
            cases.append(Case(f"{setting.name}: {kill.injection}", check))
    return cases


# --- Calls of the undoing that fail ---


def require_undoable(place: Site, undisturbed: Undisturbed, outcome: Outcome) -> None:
    """After an undoing that met a fault: nothing is lost, it does not claim to be done, and can be repeated."""
    require_no_crash(outcome)
    after = place.tree()
    require_safety(place.before, after, undisturbed)
    if outcome.code == 0 and is_under_way(after):
        raise Failure("said that all is undone, but left the file that tells of the run")
    if outcome.code == 0 and not set_aside(after):
        raise Failure("said that all is undone, but did nothing")
    require_undone(place, undisturbed)


def check_failing_undoing(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed,
                          fault: Fault) -> None:
    with site(surroundings, setting.plant) as place:
        complete(place, setting)
        injection = fault.injection
        options = injection.options() + options_for(injection.call, place.project, fault.calls.paths)
        log = place.folder / "trace"
        outcome = place.program.run(undoing(place), fast_tracer(log, options))
        require_injected(log, injection)
        require_undoable(place, undisturbed, outcome)


def failing_undoings(surroundings: Surroundings) -> list[Case]:
    require_recover(surroundings)
    cases = []
    for setting in SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        calls = calls_of_undoing(surroundings, setting)
        for injection in surroundings.thinned(injections(calls)):
            check = functools.partial(check_failing_undoing, surroundings, setting, undisturbed, Fault(injection, calls))
            cases.append(Case(f"{setting.name}: {injection}", check))
    return cases


# --- Calls of the recovery that fail ---


def check_failing_recovery(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed, kill: Kill,
                           promise: Promise, fault: Fault) -> None:
    with site(surroundings, setting.plant) as place:
        kill.of(place, setting.arguments(place))
        injection = fault.injection
        options = injection.options() + options_for(injection.call, place.project, fault.calls.paths)
        log = place.folder / "trace"
        outcome = place.program.run(["recover", "--project", str(place.project), promise.option],
                                    fast_tracer(log, options))
        after = place.tree()
        require_injected(log, injection)
        require_no_crash(outcome)
        require_safety(place.before, after, undisturbed)
        require_nothing_lost(place.before, after, outcome)
        if is_under_way(after):
            recover(place, promise, undisturbed)
        if outcome.code == 0 and is_under_way(after):
            raise Failure("said that all is done, but left the file that tells of the run")
        if outcome.code == 0 or is_under_way(after):
            promise.require(place.before, without_lock(place.tree()), undisturbed, False)
        elif promise.option == "--roll-back":
            raise Failure(f"cannot be repeated, exit code {outcome.code}: {outcome.told()[-400:]}")


def failing_recoveries(surroundings: Surroundings) -> list[Case]:
    require_recover(surroundings)
    wanted = INTERRUPTED_RUNS if surroundings.points is None else min(INTERRUPTED_RUNS, -(-surroundings.points // 8))
    cases = []
    for setting in SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        points = []
        for kill in interrupted(surroundings, setting, undisturbed, wanted):
            for promise, calls in recovery_calls(surroundings, setting, kill):
                points += [(kill, promise, Fault(injection, calls)) for injection in injections(calls)]
        for kill, promise, fault in surroundings.thinned(points):
            check = functools.partial(check_failing_recovery, surroundings, setting, undisturbed, kill, promise, fault)
            cases.append(Case(f"{setting.name}: {kill.injection}, recover {promise.option} {fault.injection}", check))
    return cases


def recovery_points(surroundings: Surroundings, setting: Setting, kill: Kill) -> list[tuple]:
    """Every call of every way to recover from an interrupted run."""
    return [(kill, promise, second) for promise, calls in recovery_calls(surroundings, setting, kill)
            for second in kills_of(calls)]


def recovery_calls(surroundings: Surroundings, setting: Setting, kill: Kill) -> list[tuple[Promise, Calls]]:
    found = []
    with site(surroundings, setting.plant) as place:
        def interrupt() -> object:
            project = place.build()
            kill.of(place, setting.arguments(place))
            return project
        for promise in PROMISES:
            calls = record(place.program, interrupt, ["recover", "--project", str(place.project), promise.option])
            found.append((promise, calls))
    return found
