"""What a project folder holds, byte by byte, and what must never be missing from it."""

from __future__ import annotations

import os
import pathlib
import stat
from dataclasses import dataclass

Tree = dict[str, "Entry"]

# What belongs to a run that is under way, and not to the project.
LOCK = ".vantrel.lock"
LOCKS = (LOCK, LOCK + ".rmlock")  # of the run, and of who takes a dead run's lock over
RUN_FILES = (".vantrel.run", ".vantrel.run.new", *LOCKS)


@dataclass(frozen=True)
class Entry:
    kind: str  # "file", "folder", "link" or "pipe"
    mode: int
    content: bytes = b""


def entry_of(path: str) -> Entry:
    status = os.lstat(path)
    mode = stat.S_IMODE(status.st_mode)
    if stat.S_ISLNK(status.st_mode):
        return Entry("link", 0, os.fsencode(os.readlink(path)))
    if stat.S_ISDIR(status.st_mode):
        return Entry("folder", mode)
    if stat.S_ISFIFO(status.st_mode):
        return Entry("pipe", mode)
    with open(path, "rb") as file:
        return Entry("file", mode, file.read())


def tree_of(root: pathlib.Path) -> Tree:
    """Every entry by its path below the root; names that are not UTF-8 hold surrogates."""
    tree: Tree = {}
    for folder, folders, files in os.walk(root):
        for name in folders + files:
            path = os.path.join(folder, name)
            tree[os.path.relpath(path, root)] = entry_of(path)
    return tree


def without_logs(tree: Tree) -> Tree:
    """Without change logs, whose names hold the time."""
    return {path: entry for path, entry in tree.items() if not path.startswith("log/Vantrel_")}


def below(tree: Tree, folder: str) -> Tree:
    return {path: entry for path, entry in tree.items() if path.startswith(folder + "/")}


def is_screen(path: str) -> bool:
    """Whether a run takes the file of a plant whose own path holds no ".psc"."""
    hidden = any(part.startswith(".") for part in path.split("/"))
    return path.startswith("scr/") and ".psc" in path and not hidden


def screens(tree: Tree) -> dict[str, bytes]:
    return {path: entry.content for path, entry in tree.items()
            if is_screen(path) and entry.kind == "file"}


def place_in_backup(path: str) -> str:
    return ("/" + path).replace("/scr", "/scr_bak")[1:]


def lost_originals(before: Tree, after: Tree) -> list[str]:
    """The screens of which neither "scr" nor "scr_bak" holds every byte any more."""
    def is_whole(path: str, content: bytes) -> bool:
        places = (path, place_in_backup(path))
        return any(place in after and after[place].content == content for place in places)
    return [path for path, content in screens(before).items() if not is_whole(path, content)]


def differences(expected: Tree, found: Tree) -> list[str]:
    """One line for each entry that differs; empty where both are the same."""
    return [f"{path}: {describe(expected.get(path))} became {describe(found.get(path))}"
            for path in sorted(expected.keys() | found.keys()) if expected.get(path) != found.get(path)]


def describe(entry: Entry | None) -> str:
    if entry is None:
        return "nothing"
    if entry.kind in ("folder", "pipe"):
        return f"a {entry.kind} {entry.mode:o}"
    if entry.kind == "link":
        return f"a link to {os.fsdecode(entry.content)!r}"
    return f"{len(entry.content)} bytes {hash(entry.content) & 0xffff:04x} {entry.mode:o}"
