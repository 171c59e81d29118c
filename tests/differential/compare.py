#!/usr/bin/env python3
"""Runs the program and the reference over the same random projects and compares what they leave.

    compare.py --program build/dev/tools/VantrelCli/vantrel-cli --projects 100 [--first SEED]

Compared are the trees by bytes, the change logs, what is told of each file and object, and the log
messages, all in their order. Both work at the same absolute path, one after the other, because
paths are part of all of these.
"""

from __future__ import annotations

import argparse
import concurrent.futures
import functools
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent


# Where a project lies in its folder, by turns. Upper-case letters hide its bitmaps, "/bmp" lets every
# folder count as one of bitmaps, ".cat" refuses all shapes, ".psc" lets every file be a screen, and
# "/scr" sends the copies elsewhere.
PLACES = ["plant"] * 8 + ["Plant", "bmp/plant", "a.cat/plant", "a.psc/plant", "scripts/plant"]


WARNING = 4

DECOY = "ID;1;Rect;Last\nLIB;nowhere.plb;1;Last;Obj/Last\nPSDV;10;10;29;29;2;1;15;8;1;0;1;0\n"


def lower_case_folder(seed: int) -> pathlib.Path:
    folder = pathlib.Path(tempfile.gettempdir().lower()) / f"vantrel-differential.{os.getpid()}.{seed}"
    folder.mkdir()
    return folder


def tree_of(site: pathlib.Path) -> dict[bytes, bytes | str]:
    """Every entry of a folder by its relative path; change logs without the time in their names. Without what the
    program keeps of its runs, which is no matter of a conversion."""
    tree: dict[bytes, bytes | str] = {}
    root = os.fsencode(site)
    for folder, folders, files in os.walk(root):
        folders[:] = [name for name in folders if name != b".vantrel.history"]
        for name in folders + files:
            path = os.path.join(folder, name)
            key = os.path.relpath(path, root)
            if b"/log/Vantrel_" in key and key.endswith(b".csv"):
                key = os.path.dirname(key) + b"/change log"
            if os.path.islink(path):
                tree[key] = "link to " + os.fsdecode(os.readlink(path))
            elif os.path.isdir(path):
                tree[key] = "folder"
            else:
                tree[key] = pathlib.Path(os.fsdecode(path)).read_bytes()
    return tree


Event = dict[str, object]


def run_reference(project: pathlib.Path, shapes: pathlib.Path, options: list[str],
                  folder: pathlib.Path) -> list[Event]:
    events = folder / "events"
    subprocess.run([sys.executable, "-B", HERE / "reference.py", project, "--shapes-file", shapes,
                    "--report", events, *options], check=True)
    return [json.loads(line) for line in events.read_text().splitlines()]


def run_program(program: str, project: pathlib.Path, shapes: pathlib.Path, options: list[str],
                folder: pathlib.Path) -> list[Event]:
    environment = dict(os.environ, XDG_STATE_HOME=str(folder / "state"))
    result = subprocess.run([program, "update", "--project", project, "--shapes-from", shapes, "--force",
                             "--json", *options], env=environment, capture_output=True, check=False)
    if result.returncode not in (0, 1, 4) or result.stderr:
        raise SystemExit(f"exit code {result.returncode}: {result.stderr.decode()}")
    return [json.loads(line) for line in result.stdout.decode().splitlines()]


def known_names(program: str, project: pathlib.Path) -> set[str]:
    """The shapes that objects on screens refer to, in lower case."""
    told = subprocess.run([program, "shapes", "--project", project, "--json"], capture_output=True, check=False).stdout
    lines = [json.loads(line) for line in told.decode().splitlines()]
    return {line["name"].lower() for line in lines if line["kind"] == "shape"}


def choose(program: str, project: pathlib.Path, shapes: pathlib.Path) -> None:
    """Takes names that no object refers to out of the list, since the program takes no such name.

    Where none is left, a screen more refers to a shape that exists nowhere: the program wants to hear one.
    """
    known = known_names(program, project)
    chosen = [name for name in shapes.read_text("utf-8").split("\n") if name.strip().lower() in known]
    if not chosen:
        (project / "scr").mkdir(exist_ok=True)
        (project / "scr" / "zz_last.psc").write_text(DECOY)
        chosen = ["nowhere.plb"]
    shapes.write_text("\n".join(chosen) + "\n", "utf-8")


def corners(rectangle: dict[str, int]) -> list[int]:
    return [rectangle[side] for side in ("left", "top", "right", "bottom")]


def as_told_by_reference(event: Event, project: pathlib.Path) -> Event:
    """An event of the program in the words of the reference."""
    told = {key: value for key, value in event.items() if key != "version"}
    if event["kind"] == "file":
        told["path"] = f"{project}/{event['path']}"
    if event["kind"] == "log":
        del told["time"]
        told["level"] = {"alert": 1, "error": 3, "warning": WARNING}[event["level"]]
    if event["kind"] == "report":
        told |= {"rect": corners(told["rect"]), "rect2": corners(told.pop("iconRect")),
                 "rect3": corners(told.pop("position"))}
    return told


def split(events: list[Event]) -> tuple[list[Event], list[Event], list[Event]]:
    """What is told of files and objects, the log's entries, which the program tells at its end, and among them the
    warnings: they come when rows of the change log are written, whatever was logged meanwhile."""
    told = ("progress", "file", "report")
    entries = [event for event in events if event["kind"] == "log"]
    return ([event for event in events if event["kind"] in told],
            [event for event in entries if event["level"] != WARNING],
            [event for event in entries if event["level"] == WARNING])


def differing_events(expected: list[Event], found: list[Event]) -> list[str]:
    for number, (one, other) in enumerate(itertools.zip_longest(expected, found), 1):
        if one != other:
            return [f"event {number}:\n    reference {one}\n    program   {other}"]
    return []


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
    site, kept, shapes = folder / "site", folder / "original", folder / "shapes"
    project = site / PLACES[seed % len(PLACES)]
    project.parent.mkdir(parents=True)
    subprocess.run([sys.executable, "-B", HERE / "generate.py", "--seed", str(seed), project, "--shapes", shapes], check=True)
    choose(program, project, shapes)
    options = ["--make-folders"] if seed % 3 == 0 else []
    shutil.copytree(site, kept, symlinks=True)

    expected_events = split(run_reference(project, shapes, options, folder))
    expected = tree_of(site)
    shutil.rmtree(site)
    kept.rename(site)
    found_events = split([as_told_by_reference(event, project)
                          for event in run_program(program, project, shapes, options, folder)
                          if event["kind"] not in ("finding", "end")])
    notes = differences(expected, tree_of(site))
    for one, other in zip(expected_events, found_events):
        notes += differing_events(one, other)
    return notes


def differences_of_project(program: str, seed: int) -> list[str]:
    folder = lower_case_folder(seed)
    try:
        return compare(program, seed, folder)
    finally:
        shutil.rmtree(folder)


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--projects", type=int, default=100)
    parser.add_argument("--first", type=int, default=0)
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    arguments = parser.parse_args()

    seeds = range(arguments.first, arguments.first + arguments.projects)
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(arguments.workers) as pool:
        outcomes = pool.map(functools.partial(differences_of_project, arguments.program), seeds)
        for seed, notes in zip(seeds, outcomes):
            if notes:
                failed += 1
                print(f"project {seed} differs:", *notes, sep="\n  ")
    print(f"{arguments.projects - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    raise SystemExit(main())
