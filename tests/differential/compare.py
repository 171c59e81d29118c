#!/usr/bin/env python3
"""Runs the program and the reference over the same random projects and compares what they leave.

    compare.py --program build/dev/tools/VantrelCli/vantrel-cli --projects 100 [--first SEED]

Compared are the trees by bytes, the change logs, and the log messages in their order. Both work
at the same absolute path, one after the other, because paths are part of all three.
"""

from __future__ import annotations

import argparse
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent


def lower_case_folder() -> pathlib.Path:
    """Upper-case letters in a project's path hide its bitmaps."""
    folder = pathlib.Path(tempfile.gettempdir().lower()) / f"vantrel-differential.{os.getpid()}"
    folder.mkdir()
    return folder


def tree_of(project: pathlib.Path) -> dict[bytes, bytes | str]:
    """Every entry of a project by its relative path; change logs without the time in their names."""
    tree: dict[bytes, bytes | str] = {}
    root = os.fsencode(project)
    for folder, folders, files in os.walk(root):
        for name in folders + files:
            path = os.path.join(folder, name)
            key = os.path.relpath(path, root)
            if key.startswith(b"log/Vantrel_") and key.endswith(b".csv"):
                key = b"log/change log"
            if os.path.islink(path):
                tree[key] = "link to " + os.fsdecode(os.readlink(path))
            elif os.path.isdir(path):
                tree[key] = "folder"
            else:
                tree[key] = pathlib.Path(os.fsdecode(path)).read_bytes()
    return tree


def run_reference(project: pathlib.Path, shapes: pathlib.Path, options: list[str]) -> list[str]:
    report = project.parent / "events"
    subprocess.run([sys.executable, "-B", HERE / "reference.py", project, "--shapes-file", shapes,
                    "--report", report, *options], check=True)
    events = [json.loads(line) for line in report.read_text().splitlines()]
    names = {1: "alert", 3: "error"}
    return [f"{names[e['level']]}: {e['message']}" for e in events if e["kind"] == "log"]


def run_program(program: str, project: pathlib.Path, shapes: pathlib.Path, options: list[str]) -> list[str]:
    log = project.parent / "log"
    environment = dict(os.environ, XDG_STATE_HOME=str(project.parent / "state"))
    result = subprocess.run([program, "update", "--project", project, "--shapes-from", shapes, "--force",
                             "--quiet", *options], env=environment, capture_output=True, check=False)
    log.write_bytes(result.stderr)
    if result.returncode not in (0, 1, 4):
        raise SystemExit(f"exit code {result.returncode}: {result.stderr.decode()}")
    lines = result.stderr.decode().splitlines()
    return [line for line in lines if line.startswith(("alert: ", "error: "))]


def escaped(message: str) -> str:
    short = {"\n": "\\n", "\r": "\\r", "\t": "\\t"}
    return "".join(short.get(c) or (f"\\x{ord(c):02x}" if ord(c) < 32 or 127 <= ord(c) < 160 else c)
                   for c in message)


def first_difference(expected: bytes | str | None, found: bytes | str | None) -> str:
    """Both as they stand, or, where both are files, their first lines that differ."""
    if isinstance(expected, bytes) and isinstance(found, bytes):
        pairs = itertools.zip_longest(expected.split(b"\n"), found.split(b"\n"))
        number, (expected, found) = next((n, pair) for n, pair in enumerate(pairs, 1) if pair[0] != pair[1])
        return f"line {number}\n    reference {expected!r}\n    program   {found!r}"
    return f"\n    reference {expected!r:.200}\n    program   {found!r:.200}"


def differences(expected: dict, found: dict) -> list[str]:
    return [f"{os.fsdecode(key)}: {first_difference(expected.get(key), found.get(key))}"
            for key in sorted(expected.keys() | found.keys()) if expected.get(key) != found.get(key)]


def compare(program: str, seed: int, folder: pathlib.Path) -> list[str]:
    project, kept, shapes = folder / "plant", folder / "original", folder / "shapes"
    subprocess.run([sys.executable, "-B", HERE / "generate.py", "--seed", str(seed), project, "--shapes", shapes], check=True)
    # Where no shape is chosen the command line wants to hear one; this one exists nowhere.
    with shapes.open("a", encoding="utf-8") as names:
        names.write("\nchosen but nowhere.plb\n")
    options = ["--make-folders"] if seed % 3 == 0 else []
    shutil.copytree(project, kept, symlinks=True)

    expected_log = [escaped(line) for line in run_reference(project, shapes, options)]
    expected = tree_of(project)
    shutil.rmtree(project)
    kept.rename(project)
    found_log = run_program(program, project, shapes, options)
    notes = differences(expected, tree_of(project))
    if expected_log != found_log:
        notes.append(f"log:\n    reference {expected_log}\n    program   {found_log}")
    return notes


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--projects", type=int, default=100)
    parser.add_argument("--first", type=int, default=0)
    arguments = parser.parse_args()

    failed = 0
    for seed in range(arguments.first, arguments.first + arguments.projects):
        folder = lower_case_folder()
        try:
            notes = compare(arguments.program, seed, folder)
        finally:
            shutil.rmtree(folder)
        if notes:
            failed += 1
            print(f"project {seed} differs:", *notes, sep="\n  ")
    print(f"{arguments.projects - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    raise SystemExit(main())
