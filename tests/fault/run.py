#!/usr/bin/env python3
"""Runs the program under faults and looks what is left of a project, byte by byte.

    run.py --program build/dev/tools/VantrelCli/vantrel-cli [--extent sample|whole|all] [--share K/N] [ROW ...]
    run.py --program ... --only "by renaming: getdents64 13" failing-calls

Needs strace, and user namespaces with mounts. What cannot be injected is a failure, not a skip.
"""

from __future__ import annotations

import sys

import rows  # the first: it says where what all checks share lies
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
from rows import Row

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

if __name__ == "__main__":
    sys.exit(rows.run_rows(ROWS))
