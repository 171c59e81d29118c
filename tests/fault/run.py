#!/usr/bin/env python3
"""Runs the program under faults and looks what is left of a project, byte by byte.

    run.py --program build/dev/tools/VantrelCli/vantrel-cli [--extent sample|whole|all] [--share K/N] [ROW ...]
    run.py --program ... --only "by renaming: getdents64 13" failing-calls

With a share, only every N-th point of each sweep is tried, beginning at the K-th, but never fewer than in a sample.
Needs strace, and user namespaces with mounts. What cannot be injected is a failure, not a skip.
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
import disks
import faults
import intruders
import kills
import links
import logs
import names
import permissions
import races
import simple
import walks
from programs import Failure, work_folder
from shares import parse_share

@dataclass(frozen=True)
class Row:
    """A kind of fault, and how many points of each of its sweeps are tried."""
    cases: Callable[[cases.Surroundings], list[cases.Case]]
    sample: int
    whole: int
    mounts: bool = False  # file systems, and so needs a namespace of its own


ROWS = {
    "failing-calls": Row(faults.failing_calls, sample=12, whole=600),
    "killed-runs": Row(kills.killed_runs, sample=5, whole=150),
    "killed-recoveries": Row(kills.killed_recoveries, sample=6, whole=120),
    "killed-undoings": Row(kills.killed_undoings, sample=3, whole=60),
    "failing-undoings": Row(kills.failing_undoings, sample=6, whole=150),
    "failing-recoveries": Row(kills.failing_recoveries, sample=6, whole=150),
    "full-disks": Row(disks.full_disks, sample=6, whole=100, mounts=True),
    "room-of-earlier-runs": Row(disks.room_of_earlier_runs, sample=10, whole=10, mounts=True),
    "full-disk-recoveries": Row(disks.full_disk_recoveries, sample=6, whole=100, mounts=True),
    "full-disk-undoings": Row(disks.full_disk_undoings, sample=6, whole=100, mounts=True),
    "without-proc": Row(disks.without_proc, sample=10, whole=10, mounts=True),
    "simple-files": Row(simple.simple_files, sample=3, whole=50),
    "limited-files": Row(disks.limited_files, sample=6, whole=100),
    "missing-permissions": Row(permissions.missing_permissions, sample=100, whole=100),
    "links": Row(links.links, sample=100, whole=100),
    "change-logs": Row(logs.change_logs, sample=100, whole=100),
    "odd-names": Row(names.odd_names, sample=100, whole=100),
    "intruders": Row(intruders.intruders, sample=3, whole=50),
    "two-runs": Row(races.two_runs, sample=3, whole=50),
    "cancelled-runs": Row(races.cancelled_runs, sample=10, whole=200),
    "random-walks": Row(walks.random_walks, sample=4, whole=500),
}


def points_of(row: Row, extent: str, only: str) -> int | None:
    """How many of each sweep; nothing for all."""
    if only or extent == "all":
        return None
    return row.sample if extent == "sample" else row.whole


def run_row_in_namespace(name: str) -> bool:
    """Runs this script once more, as the root of a namespace in which it may mount."""
    others = [argument for argument in sys.argv[1:] if argument not in ROWS]
    command = ["unshare", "-Urm", "--", sys.executable, "-B", __file__, "--inside", *others, name]
    return subprocess.run(command, check=False).returncode == 0


def run_row(name: str, surroundings: cases.Surroundings, workers: int, only: str) -> bool:
    begin = time.monotonic()
    try:
        chosen = [case for case in ROWS[name].cases(surroundings) if case.name.startswith(only)]
        complaints = cases.run_cases(chosen, workers)
        count = len(chosen)
    except Failure as failure:
        complaints, count = [str(failure)], 0
    seconds = time.monotonic() - begin
    print(f"{name}: {count} cases, {len(complaints)} failed, {seconds:.0f} s", *complaints, sep="\n  ", flush=True)
    return count > 0 and not complaints


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--extent", choices=["sample", "whole", "all"], default="sample")
    parser.add_argument("--share", type=parse_share, metavar="K/N", help="of the points of each sweep")
    parser.add_argument("--only", default="", metavar="TEXT", help="only cases whose name begins like this")
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("rows", nargs="*", choices=[[], *ROWS], metavar="ROW")
    arguments = parser.parse_args()

    work = work_folder()

    def hold(name: str) -> bool:
        if ROWS[name].mounts and not arguments.inside:
            return run_row_in_namespace(name)
        row = ROWS[name]
        points = points_of(row, arguments.extent, arguments.only)
        share = None if arguments.only else arguments.share
        program = str(pathlib.Path(arguments.program).resolve())
        surroundings = cases.Surroundings(program, work, points, share, row.sample)
        return run_row(name, surroundings, arguments.workers, arguments.only)
    try:
        held = [hold(name) for name in arguments.rows or ROWS]
    finally:
        cases.make_removable(work)
        shutil.rmtree(work)
    return 0 if all(held) else 1


if __name__ == "__main__":
    sys.exit(main())
