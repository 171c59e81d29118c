"""Stages of a check: what each runs, how long that takes, and what is said where one fails."""

from __future__ import annotations

import pathlib
import shlex
import subprocess
import sys
import time
import xml.etree.ElementTree
from dataclasses import dataclass
from typing import Callable

Command = list[str]

SLOWEST = 5


@dataclass(frozen=True)
class Stage:
    """Commands that run one after the other; the first that fails ends all."""
    name: str
    title: str
    commands: list[Command]
    results: str = ""  # where its tests leave their times


@dataclass(frozen=True)
class Failed(Exception):
    """A stage that failed, and how."""
    stage: Stage
    code: int


def say(text: str) -> None:
    """At once, so that it stands before what the next command prints."""
    print(text, flush=True)


def clock(seconds: float) -> str:
    """75.2  ->  "1:15"."""
    minutes, rest = divmod(round(seconds), 60)
    return f"{minutes}:{rest:02}"


def run_command(command: Command, root: pathlib.Path) -> int:
    """The exit code; for a command that a signal ended, as a shell tells it."""
    say(f"$ {shlex.join(command)}")
    code = subprocess.run(command, cwd=root, stdin=subprocess.DEVNULL, check=False).returncode
    return code if code >= 0 else 128 - code


def slowest_tests(results: pathlib.Path) -> list[tuple[float, str]]:
    """Seconds and names, of a file as ctest writes it."""
    cases = xml.etree.ElementTree.parse(results).getroot().iter("testcase")
    times = [(float(case.get("time", "0")), case.get("name", "")) for case in cases]
    return sorted(times, reverse=True)[:SLOWEST]


def show_slowest(results: pathlib.Path) -> None:
    if results.is_file():
        slowest = [f"{name} {seconds:.1f} s" for seconds, name in slowest_tests(results)]
        say(f"The slowest tests: {', '.join(slowest)}")


def run_stage(stage: Stage, root: pathlib.Path) -> None:
    results = root / stage.results
    if stage.results:
        results.unlink(missing_ok=True)  # the times of another run would mislead
    try:
        for command in stage.commands:
            if (code := run_command(command, root)) != 0:
                raise Failed(stage, code)
    finally:
        if stage.results:
            show_slowest(results)


def table(times: list[tuple[str, float]]) -> str:
    rows = [*times, ("all", sum(seconds for _, seconds in times))]
    width = max(len(name) for name, _ in rows)
    return "\n".join(f"{name:{width}}  {clock(seconds):>7}" for name, seconds in rows)


def run_stages(stages: list[Stage], root: pathlib.Path, repetition: Callable[[Stage], str]) -> int:
    """The exit code of the first stage that fails, of which the way to repeat it is told; else 0."""
    times: list[tuple[str, float]] = []
    code = 0
    for stage in stages:
        say(f"== {stage.title}")
        begin = time.monotonic()
        try:
            run_stage(stage, root)
        except Failed as failed:
            code = failed.code
        times.append((stage.name, time.monotonic() - begin))
        say(f"== {stage.name}: {clock(times[-1][1])}")
        if code != 0:
            break
    say(table(times))
    if code != 0:
        print(f"The stage \"{stage.name}\" failed with exit code {code}; this repeats it:  {repetition(stage)}",
              file=sys.stderr, flush=True)
    return code
