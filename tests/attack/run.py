#!/usr/bin/env python3
"""Attacks projects in all ways that chance finds, and looks byte by byte what has changed beside them.

    run.py --program build/dev/tools/VantrelCli/vantrel-cli [--extent sample|whole|all] [--share K/N] [ROW ...]
    run.py --program ... --extent all --seeds 100000                       hours, as many as are wanted
    run.py --program ... --only "seed 000017" [--steps 2,5] intruders      one of them once more

Each case is a sequence of steps that its seed tells. One that fails is tried again without some of its
steps, and the shortest that still fails is printed.
"""

from __future__ import annotations

import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "fault"))

import rows
import intrusions
import stages
from rows import Row

ROWS = {
    "stage-files": Row(stages.stage_files, sample=40, whole=2000),
    "intruders": Row(intrusions.intruders, sample=40, whole=2000),
    "intruded-calls": Row(intrusions.intruded_calls, sample=5, whole=400),
}

if __name__ == "__main__":
    sys.exit(rows.run_rows(ROWS))
