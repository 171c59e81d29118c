"""Runs a program and tells what it cost."""

from __future__ import annotations

import dataclasses
import os
import pathlib
import subprocess
import tempfile
import time


@dataclasses.dataclass(frozen=True)
class Cost:
    """Wall and processor time in seconds, the highest memory in bytes, and what was printed."""

    seconds: float
    user: float
    system: float
    peak_bytes: int
    exit_code: int
    output: str


def run(command: list[str], folder: pathlib.Path, environment: dict[str, str]) -> Cost:
    """Runs a program in a folder. Its output goes to a file: some programs do less work when
    nobody reads, and a pipe that nobody empties would stop it."""
    with tempfile.TemporaryFile() as output:
        start = time.perf_counter()
        process = subprocess.Popen(
            command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
        # Not process.wait(): only this tells what a single child has used. The peak is never less
        # than that of this process when it started the child, so the caller should stay small.
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        text = output.read().decode(errors="replace")
    return Cost(
        seconds=seconds,
        user=usage.ru_utime,
        system=usage.ru_stime,
        peak_bytes=usage.ru_maxrss * 1024,
        exit_code=process.returncode,
        output=text,
    )
