#!/usr/bin/env python3
"""Measures runs over large projects, each in the same rounds as what it is compared with.

Prints a table of figures and targets. Every round of every contender begins with a fresh copy
of its project, made outside of the measured time; a run that did not do its work ends the
benchmark. What the measures are and what they need is told in docs/performance.md.
"""

from __future__ import annotations

import argparse
import json
import os
import pathlib
import sys

import machine
import processes
import report
from experiments import Experiment, Programs, Readings, RunFailed, experiments
from generate import Settings
from trees import Trees

ROOT = pathlib.Path(__file__).resolve().parent.parent
QUICK_SCALE = 500
# Of a memory file system and of the disk; "/tmp" may be either.
DEFAULT_PLACES = "/dev/shm,/var/tmp"


def parse(arguments: list[str]) -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--measures", default="A,B,C,D,E,F,G,H,I,J,M", help="which, as letters with commas")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--quick", action="store_true", help="tiny projects, to try the benchmark itself")
    parser.add_argument("--folders", default=DEFAULT_PLACES, help="where to measure, with commas")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/release", help="what to measure")
    parser.add_argument("--program", type=pathlib.Path, help="another vantrel-cli than that of the build")
    parser.add_argument("--json", type=pathlib.Path, metavar="FILE", help="write everything that was read")
    parser.add_argument("--markdown", type=pathlib.Path, metavar="FILE", help="write the tables")
    return parser.parse_args(arguments)


def programs_of(options: argparse.Namespace, home: pathlib.Path) -> Programs:
    """The user's own settings and log are left alone."""
    environment = {
        **os.environ, "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen", "HOME": str(home),
        "XDG_CONFIG_HOME": str(home / "config"), "XDG_STATE_HOME": str(home / "state"),
        "XDG_RUNTIME_DIR": str(home / "runtime"),
    }
    update = options.program or options.build / "tools/VantrelCli/vantrel-cli"
    return Programs(update.resolve(), (options.build / "bench").resolve(), environment)


def measure(experiment: Experiment, rounds: int, programs: Programs, trees: Trees) -> Readings:
    """Round by round through all contenders, so that a slow minute of the machine meets all."""
    readings: Readings = {contender.name: [] for contender in experiment.contenders}
    for number in range(rounds):
        print(f"{experiment.title}, round {number + 1} of {rounds}", file=sys.stderr)
        for contender in experiment.contenders:
            project = trees.fresh(contender.settings)
            readings[contender.name].append(contender.perform(programs, project))
    return readings


def measure_place(place: pathlib.Path, options: argparse.Namespace) -> list[report.Result]:
    wanted = set(options.measures.split(","))
    results = []
    # In small letters: icons are looked for in folders without capitals.
    with Trees(place / f"vantrel-bench-{os.getpid()}") as trees:
        programs = programs_of(options, trees.root / "home")
        for experiment in experiments(QUICK_SCALE if options.quick else 1):
            if not experiment.answers(wanted):
                continue
            readings = measure(experiment, options.rounds, programs, trees)
            results.append(report.Result(place, experiment, readings))
            for contender in experiment.contenders:
                trees.forget(contender.settings)
    return results


def measure_operations(place: pathlib.Path, options: argparse.Namespace) -> list[tuple[str, ...]]:
    """Bytes a second of the single operations of a conversion, where their program was built."""
    if "M" not in options.measures.split(","):
        return []
    with Trees(place / f"vantrel-bench-{os.getpid()}") as trees:
        programs = programs_of(options, trees.root / "home")
        program = programs.helpers / "operations"
        if not program.exists():
            return []
        project = trees.fresh(Settings(files=64, objects=18, icons=2))
        seconds = "0.01" if options.quick else "1"
        command = [str(program), "--benchmark_format=json", f"--benchmark_min_time={seconds}", str(project.folder)]
        cost = processes.run(command, project.folder, programs.environment)
    output = cost.output[cost.output.index("{"):]
    return [(row["name"], f"{row['bytes_per_second'] / 1e6:.0f}") for row in json.loads(output)["benchmarks"]]


def main() -> int:
    options = parse(sys.argv[1:])
    places = [pathlib.Path(place) for place in options.folders.split(",")]
    description = machine.describe(places, options.build)
    try:
        results = [result for place in places for result in measure_place(place, options)]
        operations = measure_operations(places[0], options)
    except RunFailed as failure:
        print(f"The benchmark was ended: {failure}", file=sys.stderr)
        return 1
    print(report.text(results, operations))
    if options.json:
        options.json.write_text(json.dumps(report.as_json(results, description, operations), indent=1) + "\n")
    if options.markdown:
        options.markdown.write_text(report.markdown(results, description, operations))
    return 0


if __name__ == "__main__":
    sys.exit(main())
