"""Running the program as a user would, and what comes of it."""

from __future__ import annotations

import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
from dataclasses import dataclass, field

# For what a run takes at most, also where a tracer stops it at every call.
PATIENCE = 20  # seconds

# Of one run, so that nothing waits for a reader.
LARGEST_OUTPUT = 1 << 20


class Failure(Exception):
    """A promise was not kept."""


@dataclass
class Outcome:
    """How one call of the program ended."""
    code: int  # negative: the signal that ended it
    output: str
    errors: str
    lines: list[dict] = field(default_factory=list)

    def of_kind(self, kind: str) -> list[dict]:
        return [line for line in self.lines if line.get("kind") == kind]

    def messages(self) -> list[str]:
        return [line["message"] for line in self.of_kind("log")]

    def error_reports(self) -> list[dict]:
        return [line for line in self.of_kind("report") if line["status"] == "ERROR"]

    def told(self) -> str:
        """All that a user can read, in one text."""
        return self.output + self.errors


@dataclass(frozen=True)
class Program:
    """The companion, with a home of its own that no test shares with a user."""
    path: str
    home: pathlib.Path
    preload: str = ""

    def environment(self) -> dict[str, str]:
        kept = {name: os.environ[name] for name in ("PATH", "LD_LIBRARY_PATH", "UBSAN_OPTIONS")
                if name in os.environ}
        if self.preload:
            kept["LD_PRELOAD"] = self.preload
        # Leaks cannot be looked for below a tracer.
        return kept | {"HOME": str(self.home), "XDG_STATE_HOME": str(self.home / "state"),
                       "XDG_CONFIG_HOME": str(self.home / "config"), "LC_ALL": "C.UTF-8",
                       "ASAN_OPTIONS": "detect_leaks=0", "QT_QPA_PLATFORM": "offscreen"}

    def start(self, arguments: list[str], prefix: list[str] | None = None) -> subprocess.Popen:
        """The prefix is a command that runs the program, such as a tracer."""
        return subprocess.Popen([*(prefix or []), self.path, *arguments], env=self.environment(),
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                start_new_session=True, pipesize=LARGEST_OUTPUT)

    def run(self, arguments: list[str], prefix: list[str] | None = None) -> Outcome:
        return outcome_of(self.start(arguments, prefix))

    def has_command(self, name: str) -> bool:
        return self.run([name, "--help"]).code == 0


def outcome_of(process: subprocess.Popen) -> Outcome:
    try:
        output, errors = process.communicate(timeout=PATIENCE)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        output, errors = process.communicate()
        raise Failure(f"did not end within {PATIENCE} s") from None
    text = output.decode(errors="surrogateescape")
    outcome = Outcome(process.returncode, text, errors.decode(errors="surrogateescape"))
    outcome.lines = [json.loads(line) for line in text.splitlines() if line.startswith("{") and line.endswith("}")]
    return outcome


CRASHES = {signal.SIGSEGV, signal.SIGABRT, signal.SIGBUS, signal.SIGFPE, signal.SIGILL, signal.SIGXFSZ,
           signal.SIGPIPE}


def require_no_crash(outcome: Outcome) -> None:
    if -outcome.code in CRASHES or outcome.code - 128 in CRASHES:
        raise Failure(f"ended by {signal.Signals(abs(outcome.code) % 128).name}: {outcome.errors[-300:]}")


def work_folder() -> pathlib.Path:
    """In memory where that can be had. Lower case: other letters hide a project's bitmaps."""
    shared_memory = pathlib.Path("/dev/shm")
    parent = shared_memory if os.access(shared_memory, os.W_OK) else pathlib.Path(tempfile.gettempdir().lower())
    folder = parent / f"vantrel-faults.{os.getpid()}"
    folder.mkdir()
    return folder


def built_beside(program: str, name: str) -> str:
    """Another file of the build that the program is of."""
    file = pathlib.Path(program).parents[2] / name
    if not file.exists():
        raise Failure(f"there is no {file}")
    return str(file)


def copy_for_others(program: str, folder: pathlib.Path) -> str:
    """Copies the program and its own library to where any user may run them."""
    folder.mkdir(exist_ok=True)
    folder.chmod(0o755)
    listing = subprocess.run(["ldd", program], capture_output=True, text=True, check=True).stdout
    libraries = [line.split()[2] for line in listing.splitlines() if "libQel" in line]
    for file in [program, *libraries]:
        target = folder / pathlib.Path(file).name
        if target.exists():  # copied for another program
            continue
        shutil.copy(file, target)
        target.chmod(0o755)
    return str(folder / pathlib.Path(program).name)
