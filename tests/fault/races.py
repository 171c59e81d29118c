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
from faults import SETTINGS, Setting, study
from intruders import STEPS_OF_A_RUN, STOP, run_interrupted
from plants import long
from programs import Failure, outcome_of, require_no_crash
from tracing import Injection
from trees import LOCK, RUN_FILES, Tree, differences, lost_originals

REFUSED = 3
STOP_SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
CANCELLED_RUNS = 200


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


def two_runs(surroundings: Surroundings) -> list[Case]:
    cases = []
    for setting in SETTINGS[:2]:
        undisturbed = study(surroundings, setting)
        points = [Injection(call, number, STOP) for call in STEPS_OF_A_RUN
                  for number in range(1, undisturbed.calls.counts.get(call, 0) + 1)]
        for injection in surroundings.thinned(points):
            check = functools.partial(check_second_run, surroundings, setting, undisturbed.tree, injection)
            cases.append(Case(f"{setting.name}: at {injection.call} {injection.number}", check))
    return cases


def was_ended_by(code: int, number: int) -> bool:
    """By the program's own doing, or before it could take the signal."""
    return code in (128 + number, -number)


def duration_of(place: Site) -> float:
    begin = time.monotonic()
    place.program.run(place.update())
    return time.monotonic() - begin


def check_cancelled_runs(surroundings: Surroundings, number: int, runs: int) -> None:
    chance = random.Random(number)
    with site(surroundings, long) as place:
        longest = duration_of(place)
        for run in range(runs):
            before = place.tree()
            process = place.program.start(place.update())
            time.sleep(chance.uniform(0, longest))
            os.kill(process.pid, number)
            outcome = outcome_of(process)
            after = place.tree()
            require_no_crash(outcome)
            if outcome.code != 0 and not was_ended_by(outcome.code, number):
                raise Failure(f"run {run}: exit code {outcome.code}: {outcome.told()[-300:]}")
            if lost := lost_originals(before, after):
                raise Failure(f"run {run}: originals lost: {', '.join(lost)}")
            if left := [name for name in RUN_FILES if name in after]:
                raise Failure(f"run {run}: left {', '.join(left)}")


def cancelled_runs(surroundings: Surroundings) -> list[Case]:
    runs = CANCELLED_RUNS if surroundings.points is None else min(CANCELLED_RUNS, surroundings.points)
    return [Case(f"{number.name}", functools.partial(check_cancelled_runs, surroundings, number, runs))
            for number in STOP_SIGNALS]
