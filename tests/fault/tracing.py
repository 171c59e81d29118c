"""Counting the file-system calls of a run, and making one of them fail.

The tracer counts calls for each thread on its own. So the n-th call of the program's first
thread, which surveys a project, and the n-th of its worker, which converts it, fail in one run.
"""

from __future__ import annotations

import collections
import pathlib
import re
from dataclasses import dataclass
from typing import Callable

from programs import Failure, Program

TRACED = "%file,%desc"

# Waiting and waking are no file-system calls, and mapping a file is how libraries are loaded.
NOT_OF_FILES = {"poll", "ppoll", "select", "epoll_wait", "epoll_ctl", "eventfd2", "pipe2", "mmap", "execve",
                "dup", "dup2", "dup3"}

# Of these, strace numbers a family with one call each; those of a run's own are all on the project.
ONLY_ON_PROJECT = {"fdatasync", "fsync", "linkat", "sendfile", "copy_file_range", "fchmod", "chmod",
                   "renameat2", "renameat", "rename", "unlinkat", "unlink", "rmdir", "mkdir", "mkdirat", "ftruncate"}

CALL = re.compile(r"^(\d+) +(\w+)\(")
PLACE = re.compile(r'[<"](/[^>"]*)[>"]')
NAME_IN_FOLDER = re.compile(r'<(/[^>]*)>, "([^"/][^"]*)"')


@dataclass(frozen=True)
class Injection:
    """Which call is hit, and how: "error=EIO", "signal=SIGKILL"."""
    call: str
    number: int
    effect: str
    from_then_on: bool = False

    def options(self) -> list[str]:
        when = f"{self.number}{'+' if self.from_then_on else ''}"
        return ["-e", f"trace={self.call}", "-e", f"inject={self.call}:{self.effect}:when={when}"]

    def __str__(self) -> str:
        return f"{self.call} {self.number}{' and later' if self.from_then_on else ''} {self.effect}"


@dataclass(frozen=True)
class Calls:
    """What a run does to a project: its paths there, and how often a thread makes each call on them."""
    paths: list[str]  # below the project
    counts: dict[str, int]


def tracer(log: pathlib.Path, options: list[str]) -> list[str]:
    return ["strace", "-f", "-qq", "-o", str(log), *options]


def fast_tracer(log: pathlib.Path, options: list[str]) -> list[str]:
    """Stops at the traced calls only. Injects errors, but no signals behind the first call."""
    return ["strace", "-f", "--seccomp-bpf", "-qq", "-o", str(log), *options]


def require_injected(log: pathlib.Path, injection: Injection) -> None:
    """A fault that never came proves nothing."""
    if "(INJECTED)" not in log.read_text(errors="surrogateescape"):
        raise Failure(f"{injection} was not injected")


def path_options(project: pathlib.Path, paths: list[str]) -> list[str]:
    """Restricts the tracer to a project. Only absolute paths match what does not exist yet."""
    options = []
    for path in paths:
        options += ["-P", str(project / path)]
    return options


def options_for(call: str, project: pathlib.Path, paths: list[str]) -> list[str]:
    # Files without a name, as copies are made in, match no path.
    return [] if call in ONLY_ON_PROJECT else path_options(project, paths)


def paths_in(trace: str, project: pathlib.Path) -> list[str]:
    """The paths of a project that occur in a trace, but for change logs; its own is "."."""
    found = {match.group(1) for match in PLACE.finditer(trace)}
    found |= {f"{match.group(1)}/{match.group(2)}" for match in NAME_IN_FOLDER.finditer(trace)}
    root = str(project) + "/"
    inside = {path[len(root):] for path in found if path.startswith(root)}
    return [".", *sorted(path for path in inside if not path.startswith("log/") and "#" not in path)]


def counts_in(trace: str) -> dict[str, int]:
    by_thread: collections.Counter = collections.Counter()
    for line in trace.splitlines():
        if match := CALL.match(line):
            by_thread[match.groups()] += 1
    counts: dict[str, int] = {}
    for (_, call), count in by_thread.items():
        if call not in NOT_OF_FILES:
            counts[call] = max(counts.get(call, 0), count)
    return counts


def everywhere(path: str) -> bool:
    del path
    return True


def record(program: Program, prepare: Callable[[], pathlib.Path], arguments: list[str],
           wanted: Callable[[str], bool] = everywhere) -> Calls:
    """Runs undisturbed twice, each time on a project made anew at the same place.

    Only calls on the wanted paths are counted.
    """
    log = program.home / "trace"

    def trace(project: pathlib.Path, options: list[str]) -> str:
        program.run(arguments, fast_tracer(log, options))
        return log.read_text(errors="surrogateescape")

    project = prepare()
    everything = trace(project, ["-y", "-s", "4096", "-e", f"trace={TRACED}"])
    paths = [path for path in paths_in(everything, project) if wanted(path)]
    if not paths:
        raise Failure("the tracer saw no call on the project")
    project = prepare()
    counts = counts_in(trace(project, ["-e", f"trace={TRACED}", *path_options(project, paths)]))
    whole = counts_in(everything)
    counts |= {call: whole[call] for call in whole.keys() & ONLY_ON_PROJECT}
    return Calls(paths, counts)
