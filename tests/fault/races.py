"""Two runs at once, and runs that are cancelled and started again.

A second run ends at once and touches nothing while the first one is under way. Whenever a run is
asked to stop, it ends soon, leaves every original whole, and the next one can be started.
"""

from __future__ import annotations

import functools
import os
import random
import signal
import time

from cases import Case, Site, Surroundings, site
from faults import SETTINGS, Setting, Undisturbed, study
from intruders import STEPS_OF_A_RUN, STOP, run_interrupted, wait_until_stopped
from kills import KILL, Kill
from plants import long
from programs import Failure, outcome_of, require_no_crash
from tracing import Injection, options_for, path_options, tracer
from trees import LOCK, Tree, below, differences, lost_originals, run_files_left

REFUSED = 3
LEFT_OVER = 4
STOP_SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
CANCELLED_RUNS = 200

# Before the lock's file is looked at for the first time.
TAKING_A_LOCK = Injection("openat", 1, STOP)


def check_second_run(surroundings: Surroundings, setting: Setting, undisturbed: Tree, injection: Injection) -> None:
    with site(surroundings, setting.plant) as place:
        complaints = []

        def start_second() -> None:
            standing = place.tree()
            if LOCK not in standing:  # not begun yet, or over
                return
            second = place.program.run(setting.arguments(place))
            if second.code != REFUSED:
                complaints.append(f"the second run ended with exit code {second.code}")
            if changed := differences(standing, place.tree()):
                complaints.append(f"the second run changed: {'; '.join(changed[:4])}")
            if os.uname().nodename not in second.told():
                complaints.append(f"the second run does not say who holds the lock: {second.told()[-300:]}")
        first = run_interrupted(place, setting, injection, start_second)
        if complaints:
            raise Failure("; ".join(complaints))
        if first is None:
            raise Failure("the run never came to the call")
        if changed := differences(undisturbed, place.tree()):
            raise Failure(f"the first run left: {'; '.join(changed[:4])}")


def check_heir(surroundings: Surroundings, setting: Setting, injection: Injection) -> None:
    """The first run is killed while the second one takes the lock: nobody has recovered the project."""
    with site(surroundings, setting.plant) as place:
        first_log, second_log = place.folder / "first", place.folder / "second"
        first = place.program.start(setting.arguments(place), tracer(first_log, injection.options()))
        standing = wait_until_stopped(first, first_log)
        second = place.program.start(setting.arguments(place), tracer(
            second_log, TAKING_A_LOCK.options() + path_options(place.project, [LOCK])))
        heir = wait_until_stopped(second, second_log)
        if standing is None or heir is None:
            raise Failure("a run never came to its call")
        os.kill(standing, signal.SIGKILL)
        outcome_of(first)
        os.kill(heir, signal.SIGCONT)
        outcome = outcome_of(second)
        if lost := lost_originals(place.before, place.tree()):
            raise Failure(f"originals lost, exit code {outcome.code}: {', '.join(lost)}")
        if outcome.code != LEFT_OVER:
            raise Failure(f"the second run ended with exit code {outcome.code}")


def two_runs(surroundings: Surroundings) -> list[Case]:
    cases = []
    for setting in SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        points = [Injection(call, number, STOP) for call in STEPS_OF_A_RUN
                  for number in range(1, undisturbed.calls.counts.get(call, 0) + 1)]
        for injection in surroundings.thinned(points):
            check = functools.partial(check_second_run, surroundings, setting, undisturbed.tree, injection)
            cases.append(Case(f"{setting.name}: at {injection.call} {injection.number}", check))
    setting = SETTINGS[0]
    moves = study(surroundings, setting).calls.counts["renameat2"]
    # The last one copies back: all originals lie in the backup.
    check = functools.partial(check_heir, surroundings, setting, Injection("renameat2", moves, STOP))
    cases.append(Case(f"{setting.name}: the first one is killed at renameat2 {moves}", check))
    return cases


def was_ended_by(code: int, number: int) -> bool:
    """By the program's own doing, or before it could take the signal."""
    return code in (128 + number, -number)


def duration_of(place: Site) -> float:
    begin = time.monotonic()
    place.program.run(place.update())
    return time.monotonic() - begin


def check_cancelled_runs(surroundings: Surroundings, number: int, moments: list[float]) -> None:
    with site(surroundings, long) as place:
        longest = duration_of(place)
        for run, moment in enumerate(moments):
            before = place.tree()
            process = place.program.start(place.update())
            time.sleep(moment * longest)
            os.kill(process.pid, number)
            outcome = outcome_of(process)
            after = place.tree()
            require_no_crash(outcome)
            if outcome.code != 0 and not was_ended_by(outcome.code, number):
                raise Failure(f"run {run}: exit code {outcome.code}: {outcome.told()[-300:]}")
            if lost := lost_originals(before, after):
                raise Failure(f"run {run}: originals lost: {', '.join(lost)}")
            if left := run_files_left(after):
                raise Failure(f"run {run}: left {', '.join(left)}")


def check_stopped_recovery(surroundings: Surroundings, undisturbed: Undisturbed, stop: Injection) -> None:
    """A run that was killed while it converted is performed anew, and that is stopped in turn. Where it was
    stopped before the run began, it can be repeated."""
    with site(surroundings, SETTINGS[0].plant) as place:
        finish = ["recover", "--project", str(place.project), "--finish"]
        Kill(Injection("mkdirat", 1, KILL), undisturbed.calls).of(place, SETTINGS[0].arguments(place))
        options = stop.options() + options_for(stop.call, place.project, undisturbed.calls.paths)
        outcome = place.program.run(finish, tracer(place.folder / "trace", options))
        after = place.tree()
        require_no_crash(outcome)
        left = run_files_left(after)
        is_stopped = was_ended_by(outcome.code, signal.SIGINT)
        is_killed = outcome.code == -signal.SIGINT  # before it could take the signal
        if left and not is_killed and not (is_stopped and left == [".vantrel.run"]):
            raise Failure(f"exit code {outcome.code}: left {', '.join(left)}")
        if is_stopped:
            changed = differences(below(place.before, "scr"), below(after, "scr"))
            if left and not changed:
                outcome = place.program.run(finish)
                changed = differences(undisturbed.tree, place.tree())
        else:
            changed = differences(undisturbed.tree, after)
        if changed:
            raise Failure(f"exit code {outcome.code}: {'; '.join(changed[:4])}")


def moments_of_runs(number: int) -> list[float]:
    """Parts of a run's duration, anywhere between its begin and its end; for each signal others."""
    chance = random.Random(number)
    return [chance.random() for _ in range(CANCELLED_RUNS)]


def cancelled_runs(surroundings: Surroundings) -> list[Case]:
    cases = [Case(f"{number.name}", functools.partial(check_cancelled_runs, surroundings, number,
                                                      surroundings.thinned(moments_of_runs(number))))
             for number in STOP_SIGNALS]
    undisturbed = study(surroundings, SETTINGS[0])
    for number in range(1, undisturbed.calls.counts["write"] + 1):
        stop = Injection("write", number, "signal=SIGINT")
        cases.append(Case(f"recover --finish, {stop}",
                          functools.partial(check_stopped_recovery, surroundings, undisturbed, stop)))
    return cases
