"""What a project folder holds, byte by byte, and what must never be missing from it."""

from __future__ import annotations

import os
import pathlib
import stat
from dataclasses import dataclass

Tree = dict[str, "Entry"]

# What the last runs have displaced.
HISTORY = ".vantrel.history"

# What belongs to a run that is under way, and not to the project.
LOCK = ".vantrel.lock"
LOCKS = (LOCK, LOCK + ".rmlock")  # of the run, and of who takes a dead run's lock over
RUN_FILES = (".vantrel.run", ".vantrel.run.new", *LOCKS)


@dataclass(frozen=True)
class Entry:
    kind: str  # "file", "folder", "link" or "pipe"
    mode: int
    content: bytes = b""


def entry_of(name: str, folder: int) -> Entry:
    """An entry of an open folder: its path may be too long to be opened."""
    status = os.lstat(name, dir_fd=folder)
    mode = stat.S_IMODE(status.st_mode)
    if stat.S_ISLNK(status.st_mode):
        return Entry("link", 0, os.fsencode(os.readlink(name, dir_fd=folder)))
    if stat.S_ISDIR(status.st_mode):
        return Entry("folder", mode)
    if stat.S_ISFIFO(status.st_mode):
        return Entry("pipe", mode)
    with os.fdopen(os.open(name, os.O_RDONLY, dir_fd=folder), "rb") as file:
        return Entry("file", mode, file.read())


def tree_of(root: pathlib.Path) -> Tree:
    """Every entry by its path below the root; names that are not UTF-8 hold surrogates."""
    tree: Tree = {}
    for folder, folders, files, descriptor in os.fwalk(root):
        for name in folders + files:
            tree[os.path.relpath(os.path.join(folder, name), root)] = entry_of(name, descriptor)
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


def run_files_left(tree: Tree) -> list[str]:
    """What tells of a run that is under way, or was interrupted. A cancelled one says that it needs nothing."""
    return [name for name in RUN_FILES if name in tree and b"\nstage: cancelled\n" not in tree[name].content]


def place_in_backup(path: str) -> str:
    return ("/" + path).replace("/scr", "/scr_bak")[1:]


def lost_files(before: Tree, after: Tree) -> list[str]:
    """The files of "scr" and "scr_bak" that lie byte for byte nowhere in the folders of a run any more."""
    def is_of_run(path: str) -> bool:
        return path.split("/")[0] in ("scr", "scr_bak", "scr_temp", HISTORY)
    held = {(os.path.basename(path), entry.kind, entry.content) for path, entry in after.items() if is_of_run(path)}
    return [path for path, entry in before.items()
            if path.split("/")[0] in ("scr", "scr_bak") and entry.kind != "folder"
            and (os.path.basename(path), entry.kind, entry.content) not in held]


def lost_originals(before: Tree, after: Tree) -> list[str]:
    """The screens of which neither "scr" nor "scr_bak" nor the history holds every byte any more."""
    entries = {path.split("/")[1] for path in below(after, HISTORY)}
    def is_whole(path: str, content: bytes) -> bool:
        places = [path, place_in_backup(path), *(f"{HISTORY}/{entry}/{path}" for entry in entries)]
        return any(place in after and after[place].content == content for place in places)
    return [path for path, content in screens(before).items() if not is_whole(path, content)]


def is_kept(path: str) -> bool:
    """Whether it lies in the history, where names hold the time."""
    return path == HISTORY or path.startswith(HISTORY + "/")


def differences(expected: Tree, found: Tree) -> list[str]:
    """One line for each entry that differs, but for those of the history; empty where both are the same."""
    return [f"{path}: {describe(expected.get(path))} became {describe(found.get(path))}"
            for path in sorted(expected.keys() | found.keys())
            if expected.get(path) != found.get(path) and not is_kept(path)]


def describe(entry: Entry | None) -> str:
    if entry is None:
        return "nothing"
    if entry.kind in ("folder", "pipe"):
        return f"a {entry.kind} {entry.mode:o}"
    if entry.kind == "link":
        return f"a link to {os.fsdecode(entry.content)!r}"
    return f"{len(entry.content)} bytes {hash(entry.content) & 0xffff:04x} {entry.mode:o}"
