#!/usr/bin/env python3
"""Counts the file-system calls that one screen more costs a run.

    calls.py --program build/dev/tools/VantrelCli/vantrel-cli

Two runs over plants that differ only in their number of screens are traced; the difference of
their calls belongs to the screens. What a screen costs decides what ten thousand cost.
"""

import argparse
import collections
import os
import pathlib
import re
import subprocess
import sys
import tempfile

FEW, MANY = 40, 140
OBJECTS = 3

SECTION = "ID;1;Rect;Part\nLIB;{shape};1;Plant/Unit;Obj/Pump\nPSDV;1;2;30;40;2;1;15;8;1;0;{level};0\n"
SHAPE = "ID;1;Rect;Part\nLIB;pump.plb;1;Lib/Pump;Lib/Pump\nPSDV;1;2;30;40;2;1;15;8;1;0;1;0\n"

# By call: the most that a screen may cost, and what for.
LIMITS = {
    # The survey and the conversion each open it once, and the converted screen is opened once.
    "openat": 3,
    # Once it is open, by the survey and by the conversion, once it is written, and once before each of
    # the two renames.
    "newfstatat": 5,
    # A read sees the end of a file where it comes short of what it asked for.
    "read": 2,
    # The converted screen.
    "write": 1,
    "close": 3,
    # "scr" to "scr_bak", "scr_temp" to "scr".
    "renameat2": 2,
    # A file that may not be read could not be copied, so it is not renamed either.
    "faccessat2": 2,
    # Whether it is in its place again at the end.
    "access": 1,
}
# Nothing else is done for a single screen.
OF_NO_SCREEN = ("statx", "readlink", "getdents64", "mkdir", "rmdir", "unlink", "unlinkat", "linkat", "openat2", "fsync", "fdatasync",
                "sendfile", "copy_file_range", "fchmod", "chmod", "ftruncate", "lseek", "fstat", "ioctl")


def make_plant(root: pathlib.Path, screens: int) -> None:
    for folder in ("scr", "mac", "log"):
        (root / folder).mkdir(parents=True)
    (root / "mac" / "pump.plb").write_text(SHAPE)
    screen = "".join(SECTION.format(shape="pump.plb", level=level + 1) for level in range(OBJECTS))
    for number in range(screens):
        (root / "scr" / f"{number:04}.psc").write_text(screen)


def calls_of_run(program: str, scratch: pathlib.Path, screens: int) -> collections.Counter:
    plant = scratch / f"plant{screens}"
    make_plant(plant, screens)
    trace = scratch / f"trace{screens}"
    command = ["strace", "-f", "-qq", "-y", "-e", "trace=%file,%desc", "-o", str(trace), program, "update",
               "--project", str(plant), "--all-shapes", "--quiet"]
    environment = {**os.environ, "HOME": str(scratch), "XDG_STATE_HOME": str(scratch), "LC_ALL": "C.UTF-8"}
    subprocess.run(command, env=environment, check=True, stdout=subprocess.DEVNULL)
    written = len(list((plant / "scr_bak").iterdir()))
    if written != screens:
        sys.exit(f"{written} of {screens} screens were converted")
    # Only calls on the project: waking another thread is a write too. The rows of the change log are
    # written many at a time; how many depends on the time, not on the screens. A call that another
    # thread's interrupts is traced in two lines, and its result, with the file's name, is in the second.
    return collections.Counter(match[1] for line in trace.read_text(errors="replace").splitlines()
                               if str(plant) in line and f"{plant}/log" not in line and
                               (match := re.match(r"\d+ +(\w+)\(", line)))


def complaints(for_each: dict[str, float]) -> list[str]:
    found = [f"{call}: {count:g} for each screen, but at most {LIMITS[call]}"
             for call, count in for_each.items() if call in LIMITS and count > LIMITS[call]]
    found += [f"{call}: {for_each[call]:g} for each screen, but none"
              for call in OF_NO_SCREEN if for_each.get(call, 0) > 0]
    return found


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", required=True)
    program = os.path.abspath(parser.parse_args().program)
    with tempfile.TemporaryDirectory(prefix="vantrel-calls-") as scratch:
        few = calls_of_run(program, pathlib.Path(scratch), FEW)
        many = calls_of_run(program, pathlib.Path(scratch), MANY)
    for_each = {call: (many[call] - few[call]) / (MANY - FEW) for call in sorted(many)}
    print(", ".join(f"{call} {count:g}" for call, count in for_each.items() if count))
    if found := complaints(for_each):
        sys.exit("\n".join(found))


main()
