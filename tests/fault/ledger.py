"""Which files of "scr" a user may still ask for.

The name, the kind and the bytes of a file tell it from others, wherever it lies. One that lay in "scr"
before one of the last runs must lie somewhere in a project. A run that is under way, or was
interrupted, makes files that taking it back removes again: these are not the user's yet.
"""

from __future__ import annotations

import os
import re
from collections.abc import Set

from trees import HISTORY, Tree, below, run_files_left

# Name, kind and bytes.
File = tuple[str, str, bytes]

PLACES = ("scr", "scr_bak", "scr_temp", HISTORY)

RUN = "run"

# What a command that was killed has left of a file that it was writing.
UNFINISHED = ".vantrel.copy"

# Backups and converted screens have their own names wherever one begins with that of their folder.
OWN_NAME = re.compile("^scr_(bak|temp)")


def files_in(tree: Tree, folder: str) -> dict[File, str]:
    """The files below a folder, with a path of each."""
    return {(OWN_NAME.sub("scr", os.path.basename(path)), entry.kind, entry.content): path
            for path, entry in below(tree, folder).items()
            if entry.kind != "folder" and not path.endswith("/" + UNFINISHED)}


def is_interrupted(tree: Tree) -> bool:
    return ".vantrel.run" in run_files_left(tree)


class Ledger:
    """Follows a project from step to step."""

    def __init__(self, tree: Tree) -> None:
        # By file: the entries of the runs that found it in "scr", and of what else has displaced it.
        self._entries_of: dict[File, set[str]] = {file: set() for file in files_in(tree, "scr")}
        self._entries: dict[str, str] = {}
        self._made: set[str] = set()  # entries of what is under way, or of the last command
        self._exposed: set[File] = set()  # what that has found in "scr"

    def user_changed(self, before: Tree, after: Tree) -> None:
        """What is gone now, the user has removed; what is new in "scr", the user has written."""
        present = files_in(after, "scr").keys()
        # What an interrupted run has copied is no reason to ask for what the user has replaced.
        standing = self._standing({path: entry for path, entry in after.items() if not path.startswith("scr_temp/")})
        for file, entries in list(self._entries_of.items()):
            if file not in standing or (not entries and file not in present):
                del self._entries_of[file]
        for file in present - files_in(before, "scr").keys():
            self._entries_of.setdefault(file, set())

    def program_ran(self, before: Tree, after: Tree, entries: dict[str, str], kept_runs: int) -> set[File]:
        """Returns what the program has lost. The entries are those of the history, with what made them."""
        found, present = files_in(before, "scr").keys(), files_in(after, "scr").keys()
        if not is_interrupted(before):
            self._made, self._exposed = set(), set()
        self._made |= entries.keys() - self._entries.keys()
        self._exposed |= found
        runs = [name for name, what in (self._entries | entries).items() if what == RUN]
        self._entries = entries
        self._note(present)
        gone = self._entries_of.keys() - self._standing(after)
        lost = {file for file in gone if file in found or self._is_kept(file, runs, kept_runs)}
        for file in gone:
            del self._entries_of[file]
        if not is_interrupted(after):
            for file in present:
                self._entries_of.setdefault(file, set())
        return lost

    def _note(self, present: Set[File]) -> None:
        for entry in self._made & self._entries.keys():
            of_run = self._entries[entry] == RUN
            for file in (self._exposed if of_run else self._exposed - present) & self._entries_of.keys():
                self._entries_of[file].add(entry)
        # Where a run was taken back, it is as if it had not found them.
        for file in present & self._entries_of.keys():
            self._entries_of[file] &= self._entries.keys()

    def _is_kept(self, file: File, runs: list[str], kept_runs: int) -> bool:
        entries = self._entries_of[file]
        return not entries or sum(run > max(entries) for run in runs) < kept_runs

    @staticmethod
    def _standing(tree: Tree) -> set[File]:
        return set().union(*(files_in(tree, place) for place in PLACES))
