#!/usr/bin/env python3
"""Runs the program under faults and looks what is left of a project, byte by byte.

    run.py --program build/dev/tools/VantrelCli/vantrel-cli [--extent sample|whole|all] [ROW ...]
    run.py --program ... --only "by renaming: getdents64 13" failing-calls

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

import cases
import disks
import faults
import intruders
import kills
import links
import names
import permissions
import races
from programs import Failure, work_folder

ROWS = {
    "failing-calls": faults.failing_calls,
    "killed-runs": kills.killed_runs,
    "killed-recoveries": kills.killed_recoveries,
    "full-disks": disks.full_disks,
    "limited-files": disks.limited_files,
    "missing-permissions": permissions.missing_permissions,
    "links": links.links,
    "odd-names": names.odd_names,
    "intruders": intruders.intruders,
    "two-runs": races.two_runs,
    "cancelled-runs": races.cancelled_runs,
}

# These mount file systems and are run in a namespace of their own.
ROWS_WITH_MOUNTS = {"full-disks"}

# How many points of each sweep are tried.
EXTENTS = {"sample": 25, "whole": 600, "all": None}


def run_row_in_namespace(name: str) -> bool:
    """Runs this script once more, as the root of a namespace in which it may mount."""
    others = [argument for argument in sys.argv[1:] if argument not in ROWS]
    command = ["unshare", "-Urm", "--", sys.executable, "-B", __file__, "--inside", *others, name]
    return subprocess.run(command, check=False).returncode == 0


def run_row(name: str, surroundings: cases.Surroundings, workers: int, only: str) -> bool:
    begin = time.monotonic()
    try:
        row = [case for case in ROWS[name](surroundings) if case.name.startswith(only)]
        complaints = cases.run_cases(row, workers)
        count = len(row)
    except Failure as failure:
        complaints, count = [str(failure)], 0
    seconds = time.monotonic() - begin
    print(f"{name}: {count} cases, {len(complaints)} failed, {seconds:.0f} s", *complaints, sep="\n  ", flush=True)
    return count > 0 and not complaints


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--window")
    parser.add_argument("--extent", choices=EXTENTS, default="sample")
    parser.add_argument("--only", default="", metavar="TEXT", help="only cases whose name begins like this")
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("rows", nargs="*", choices=[[], *ROWS], metavar="ROW")
    arguments = parser.parse_args()

    work = work_folder()
    try:
        surroundings = cases.Surroundings(str(pathlib.Path(arguments.program).resolve()), arguments.window, work,
                                          None if arguments.only else EXTENTS[arguments.extent])
        rows = arguments.rows or list(ROWS)
        held = [run_row_in_namespace(name) if name in ROWS_WITH_MOUNTS and not arguments.inside
                else run_row(name, surroundings, arguments.workers, arguments.only) for name in rows]
    finally:
        cases.make_removable(work)
        shutil.rmtree(work)
    return 0 if all(held) else 1


if __name__ == "__main__":
    sys.exit(main())
