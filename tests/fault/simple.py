"""File systems that know less: without the kinds of entries in listings, and without files that have no name yet.

There a copy grows under its name. Runs are undisturbed all the same, and where one is killed within
a copy, recovering takes the run back or completes it.
"""

from __future__ import annotations

import dataclasses
import functools
import os
import pathlib

from cases import Case, Surroundings, site
from faults import Setting, Undisturbed, study
from kills import PROMISES, SETTINGS, check_recovery, kills_of
from plants import sound
from programs import Failure, built_beside, require_no_crash
from tracing import ONLY_ON_PROJECT, fast_tracer, record
from trees import differences

COPYING = {"write", *ONLY_ON_PROJECT}


def strange(root: pathlib.Path) -> None:
    """Every kind of entry."""
    sound(root)
    (root / "scr/area/linked").symlink_to("..")
    (root / "scr/second.psc").symlink_to("units.psc")
    os.mkfifo(root / "scr/pipe")


def on_simple_files(surroundings: Surroundings) -> Surroundings:
    """The same with the library that the build has put beside the tests."""
    library = built_beside(surroundings.program, "tests/fault/libvantrel_simple_files.so")
    return dataclasses.replace(surroundings, preload=library)


def require_simple(log: pathlib.Path) -> None:
    """That the program met such a file system at all."""
    calls = log.read_text(errors="surrogateescape")
    if "linkat(" in calls or "openat2(" in calls or ', "area", ' not in calls:
        raise Failure("files without names, kinds of entries or the one call for a path were there")


def check_run(surroundings: Surroundings, setting: Setting, undisturbed: Undisturbed) -> None:
    with site(surroundings, setting.plant) as place:
        log = place.folder / "trace"
        outcome = place.program.run(setting.arguments(place), fast_tracer(log, ["-e", "trace=linkat,newfstatat,openat2"]))
        require_no_crash(outcome)
        require_simple(log)
        if outcome.code != undisturbed.outcome.code:
            raise Failure(f"exit code {outcome.code}")
        if changed := differences(undisturbed.tree, place.tree()):
            raise Failure(f"another tree: {'; '.join(changed[:4])}")


def simple_files(surroundings: Surroundings) -> list[Case]:
    simple = on_simple_files(surroundings)
    cases = []
    for setting in (*SETTINGS, Setting("with every kind of entry", strange, surveyed=False)):
        undisturbed = study(surroundings, setting)
        cases.append(Case(setting.name, functools.partial(check_run, simple, setting, undisturbed)))
    for setting in SETTINGS:
        undisturbed = study(surroundings, setting)
        with site(simple, setting.plant) as place:
            calls = record(place.program, place.build, setting.arguments(place))
        counts = {call: count for call, count in calls.counts.items() if call in COPYING}
        for kill in simple.thinned(kills_of(dataclasses.replace(calls, counts=counts))):
            cases += [Case(f"{setting.name}: {kill.injection}, recover {promise.option}",
                           functools.partial(check_recovery, simple, setting, undisturbed, kill, promise))
                      for promise in PROMISES]
    return cases
