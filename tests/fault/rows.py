"""Tables of rows: the kinds of faults that a program runs, and its command line.

With a share, only every N-th point of each sweep is tried, beginning at the K-th, but never fewer than in a sample.
"""

from __future__ import annotations

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import time
from dataclasses import dataclass
from typing import Callable

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "checks"))

import cases
from programs import Failure, work_folder
from shares import parse_share


@dataclass(frozen=True)
class Row:
    """A kind of fault, and how many points of each of its sweeps are tried."""
    cases: Callable[[cases.Surroundings], list[cases.Case]]
    sample: int
    whole: int
    mounts: bool = False  # file systems, and so needs a namespace of its own


Rows = dict[str, Row]


def points_of(row: Row, arguments: argparse.Namespace) -> int | None:
    """How many of each sweep; nothing for all."""
    if arguments.only or arguments.extent == "all":
        return None
    return row.sample if arguments.extent == "sample" else row.whole


def run_row_in_namespace(name: str, rows: Rows) -> bool:
    """Runs the program once more, as the root of a namespace in which it may mount."""
    others = [argument for argument in sys.argv[1:] if argument not in rows]
    command = ["unshare", "-Urm", "--", sys.executable, "-B", sys.argv[0], "--inside", *others, name]
    return subprocess.run(command, check=False).returncode == 0


def run_row(name: str, row: Row, surroundings: cases.Surroundings, workers: int, only: str) -> bool:
    begin = time.monotonic()
    try:
        chosen = [case for case in row.cases(surroundings) if case.name.startswith(only)]
        complaints = cases.run_cases(chosen, workers)
        count = len(chosen)
    except Failure as failure:
        complaints, count = [str(failure)], 0
    seconds = time.monotonic() - begin
    print(f"{name}: {count} cases, {len(complaints)} failed, {seconds:.0f} s", *complaints, sep="\n  ", flush=True)
    return count > 0 and not complaints


def parse_steps(text: str) -> tuple[int, ...]:
    try:
        return tuple(int(number) for number in text.split(",") if number)
    except ValueError:
        raise argparse.ArgumentTypeError(f'"{text}" is no list of steps; one is written like "2,5"') from None


def parse_arguments(rows: Rows) -> argparse.Namespace:
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--extent", choices=["sample", "whole", "all"], default="sample")
    parser.add_argument("--share", type=parse_share, metavar="K/N", help="of the points of each sweep")
    parser.add_argument("--seeds", type=int, default=cases.USUAL_SEEDS, metavar="N",
                        help="how many there are where cases are made by chance")
    parser.add_argument("--only", default="", metavar="TEXT", help="only cases whose name begins like this")
    parser.add_argument("--steps", type=parse_steps, metavar="N,N...", help="only these of a sequence that failed")
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("rows", nargs="*", choices=[[], *rows], metavar="ROW")
    return parser.parse_args()


def run_rows(rows: Rows) -> int:
    """What the command line asks for. Returns the exit code."""
    arguments = parse_arguments(rows)
    work = work_folder()

    def hold(name: str) -> bool:
        row = rows[name]
        if row.mounts and not arguments.inside:
            return run_row_in_namespace(name, rows)
        surroundings = cases.Surroundings(
            program=str(pathlib.Path(arguments.program).resolve()), work=work, points=points_of(row, arguments),
            share=None if arguments.only else arguments.share, least=row.sample, seeds=arguments.seeds,
            steps=arguments.steps)
        return run_row(name, row, surroundings, arguments.workers, arguments.only)
    try:
        held = [hold(name) for name in arguments.rows or rows]
    finally:
        cases.make_removable(work)
        shutil.rmtree(work)
    return 0 if all(held) else 1
