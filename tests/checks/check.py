#!/usr/bin/env python3
"""The stages of scripts/test and of scripts/check.

    check.py test                                      builds, and passes the tests
    check.py check [--only STAGE,...] [--seed HASH]    all stages, of the long ones a share that the commit tells
    check.py check --whole                             with nothing left out
    check.py check --list                              prints the names of the stages

A seed is the beginning of a commit's hash: what the stages of that commit were, they are again.
"""

from __future__ import annotations

import argparse
import pathlib
import sys
from dataclasses import dataclass

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests/mutation"))
sys.dont_write_bytecode = True

import history  # noqa: E402  (after the order not to leave compiled files)
from mutations import MUTATIONS  # noqa: E402
from shares import at_most, parse_seed, share_for  # noqa: E402
from stages import Command, Stage, run_stages, say  # noqa: E402

CLI = "tools/VantrelCli/vantrel-cli"
DEV_CLI = f"build/dev/{CLI}"

FAULT_SHARES = 8
PROJECTS, PROJECT_SHARES = 2000, 10
ATTACK_SHARES = 16
LIMIT_SHARES = 4
TIDY_SHARES = 10
WALKS = 200
LONGEST_WALKS = 1200  # seconds; many times as long as on an idle machine
MUTATIONS_OF_A_RUN = 2
MUTATIONS_OF_THE_WHOLE = 12


@dataclass(frozen=True)
class Extent:
    """How much a run takes."""
    seed: str
    whole: bool


def python(script: str, *arguments: str) -> Command:
    return ["python3", "-B", script, *arguments]


def tests_of(preset: str) -> Command:
    return ["ctest", "--preset", preset, "--output-junit", str(ROOT / results_of(preset))]


def results_of(preset: str) -> str:
    return f"build/{preset}/tests.xml"


def faults(extent: Extent) -> list[Command]:
    share = [] if extent.whole else ["--share", str(share_for(extent.seed, FAULT_SHARES))]
    return [["scripts/build", "dev"],
            ["tests/fault/run.py", "--extent", "whole", *share, "--program", DEV_CLI]]


def attacks(extent: Extent) -> list[Command]:
    share = [] if extent.whole else ["--share", str(share_for(extent.seed, ATTACK_SHARES))]
    return [["scripts/build", "dev", "vantrel-cli", "vantrel_intruder"],
            ["tests/attack/run.py", "--extent", "whole", *share, "--program", DEV_CLI]]


def second_implementation(extent: Extent) -> list[Command]:
    count = PROJECTS if extent.whole else PROJECTS // PROJECT_SHARES
    first = 0 if extent.whole else share_for(extent.seed, PROJECT_SHARES).number * count
    return [["scripts/build", "dev", "vantrel-cli"],
            python("tests/differential/compare.py", "--program", DEV_CLI, "--projects", str(count),
                   "--first", str(first))]


def limits(extent: Extent) -> list[Command]:
    """With the bounds of memory, or under the sanitizers, which need memory of their own: by turns."""
    share = share_for(extent.seed, 2 * LIMIT_SHARES)
    part = [] if extent.whole else ["--share", f"{share.number // 2}/{LIMIT_SHARES}"]
    plain = [["scripts/build", "dev", "vantrel-cli"],
             python("tests/limits/limits.py", "--program", DEV_CLI, "--large", *part)]
    sanitized = [["scripts/build", "asan", "vantrel-cli"],
                 python("tests/limits/limits.py", "--program", f"build/asan/{CLI}", "--large", "--no-memory", *part)]
    if extent.whole:
        return plain + sanitized
    return plain if share.number % 2 == 0 else sanitized


def mutations(extent: Extent) -> list[Command]:
    """Of what changed of late, since there a test is most likely missing."""
    changed = history.recently_changed(ROOT)
    rows = range(len(MUTATIONS))
    recent = [number for number in rows if MUTATIONS[number][0] in changed]
    most = MUTATIONS_OF_THE_WHOLE if extent.whole else MUTATIONS_OF_A_RUN
    numbers = at_most(recent if recent and not extent.whole else list(rows), most, extent.seed)
    return [["tests/mutation/run", "--trust", *map(str, numbers)]]


def tidy(extent: Extent) -> list[Command]:
    share = [] if extent.whole else ["--share", str(share_for(extent.seed, TIDY_SHARES))]
    return [["scripts/tidy", *share]]


def stages_of_test() -> list[Stage]:
    return [Stage("build", "Build", [["scripts/build", "dev"]]),
            Stage("tests", "Tests", [tests_of("dev")], results_of("dev"))]


def stages_of_check(extent: Extent) -> list[Stage]:
    stages = [
        Stage("format", "Formatting", [["scripts/format", "--check"], ["tests/mutation/run", "--check"]]),
        Stage("translations", "Translations", [["scripts/translations", "--check"]]),
        Stage("tidy", "Static analysis", tidy(extent)),
        Stage("faults", "Faults, call by call", faults(extent)),
        Stage("attacks", "Attacks on projects, and the world beside them", attacks(extent)),
        Stage("second-implementation", "The second implementation", second_implementation(extent)),
        Stage("x-server", "The window in a real X server",
              [["scripts/build", "dev", "vantrel", "dragsource"], ["tests/ui/x11/run", "build/dev"]]),
        Stage("walks", "Random walks over the window",
              [["scripts/build", "dev", "tests_ui"],
               ["env", f"VANTREL_WALK_SEEDS={WALKS}", f"QTEST_FUNCTION_TIMEOUT={1000 * LONGEST_WALKS}",
                "ctest", "--preset", "dev", "--timeout", str(LONGEST_WALKS), "-R", "tst_windowwalk"]]),
        Stage("consumer", "As a part of another project",
              [["cmake", "-S", "tests/consumer", "-B", "build/consumer", "-G", "Ninja"],
               ["cmake", "--build", "build/consumer", "--parallel", "2", "--target", "consumer"],
               ["build/consumer/consumer"]]),
        Stage("threads", "Threads under the thread sanitizer",
              [["scripts/build", "tsan"],
               ["setarch", "-R", "ctest", "--test-dir", "build/tsan", "--output-on-failure", "--no-tests=error",
                "-R", "tst_threads"]]),
        Stage("mutations", "Whether the tests notice a broken engine", mutations(extent)),
        Stage("sanitizers", "Tests under the address and undefined-behaviour sanitizers",
              [["scripts/build", "asan"], tests_of("asan")], results_of("asan")),
        Stage("limits", "What is huge, within its memory or under the sanitizers", limits(extent)),
        Stage("fuzz", "Inputs of all kinds, and how the work grows with them",
              [["scripts/fuzz", "10" if extent.whole else "5"],
               ["ctest", "--test-dir", "build/fuzz", "--output-on-failure", "--no-tests=error", "-R", "tst_growth"]]),
    ]
    if extent.whole:
        stages.append(Stage("coverage", "Lines that the tests reach", [["scripts/coverage"]]))
    return stages


def seed_of_tree() -> str:
    commit = history.commit(ROOT)
    if commit is None:
        say("There is no history of commits here: each stage takes its share 0")
        return "0"
    return parse_seed(commit)


def wanted(stages: list[Stage], only: str, parser: argparse.ArgumentParser) -> list[Stage]:
    names = [name for name in only.split(",") if name]
    if unknown := set(names) - {stage.name for stage in stages}:
        parser.error(f"no stage of this run is named {', '.join(sorted(unknown))}")
    return [stage for stage in stages if stage.name in names] if names else stages


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/check")
    parser.add_argument("kind", choices=["test", "check"])
    parser.add_argument("--whole", action="store_true")
    parser.add_argument("--only", default="", metavar="STAGE,...")
    parser.add_argument("--seed", type=parse_seed)
    parser.add_argument("--list", action="store_true")
    arguments = parser.parse_args()

    if arguments.kind == "test":
        return run_stages(stages_of_test(), ROOT, lambda stage: "scripts/test")
    extent = Extent(arguments.seed or seed_of_tree(), arguments.whole)
    stages = wanted(stages_of_check(extent), arguments.only, parser)
    if arguments.list:
        print(*(stage.name for stage in stages), sep="\n")
        return 0
    options = f"--seed {extent.seed}{' --whole' if extent.whole else ''}"
    say(f"To repeat this run: scripts/check {options}; one stage of it: scripts/check {options} --only STAGE")
    return run_stages(stages, ROOT, lambda stage: f"scripts/check {options} --only {stage.name}")


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
