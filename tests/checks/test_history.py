#!/usr/bin/env python3
"""Tests of what git tells of a tree, whole, shallow, alone or missing."""

from __future__ import annotations

import pathlib
import subprocess
import unittest

import history
from scratch import Scratch


class TestHistory(Scratch):
    def git(self, folder: pathlib.Path, *arguments: str) -> None:
        subprocess.run(["git", "-C", folder, "-c", "user.name=a", "-c", "user.email=a@example.org",
                        "-c", "init.defaultBranch=main", *arguments], check=True, capture_output=True)

    def commit(self, folder: pathlib.Path, **files: str) -> None:
        for name, text in files.items():
            (folder / name).write_text(text)
        self.git(folder, "add", "-A")
        self.git(folder, "commit", "-q", "--allow-empty", "-m", "change")

    def repository(self) -> pathlib.Path:
        folder = self.folder / "origin"
        folder.mkdir()
        self.git(folder, "init", "-q")
        self.commit(folder, old="1", moved="a long text\n" * 9)
        for number in range(history.RECENT_COMMITS):
            self.commit(folder, recent=str(number))
        return folder

    def test_a_tree_without_a_history_has_no_commit_and_no_changes(self) -> None:
        self.write("a", "1")
        self.assertIsNone(history.commit(self.folder))
        self.assertEqual(history.recently_changed(self.folder), set())

    def test_a_repository_around_the_tree_is_not_its_own(self) -> None:
        inside = self.repository() / "unpacked"
        inside.mkdir()
        self.assertIsNone(history.commit(inside))
        self.assertEqual(history.recently_changed(inside), set())

    def test_a_repository_without_commits_has_none(self) -> None:
        self.git(self.folder, "init", "-q")
        self.assertIsNone(history.commit(self.folder))
        self.assertEqual(history.recently_changed(self.folder), set())

    def test_without_an_origin_the_last_commits_count(self) -> None:
        self.assertEqual(history.recently_changed(self.repository()), {"recent"})

    def test_a_short_history_counts_from_its_first_commit(self) -> None:
        self.git(self.folder, "init", "-q")
        self.commit(self.folder, a="1")
        self.commit(self.folder, b="1")
        self.assertEqual(history.recently_changed(self.folder), {"b"})

    def test_a_shallow_clone_has_a_commit_and_no_changes(self) -> None:
        clone = self.folder / "clone"
        self.git(self.folder, "clone", "-q", "--depth", "1", f"file://{self.repository()}", str(clone))
        self.assertRegex(history.commit(clone) or "", "^[0-9a-f]{40}$")
        self.assertEqual(history.recently_changed(clone), set())

    def test_what_differs_from_origin_counts_before_the_last_commits(self) -> None:
        clone = self.folder / "clone"
        self.git(self.folder, "clone", "-q", str(self.repository()), str(clone))
        self.assertEqual(history.recently_changed(clone), {"recent"})
        self.git(clone, "mv", "moved", "elsewhere")
        self.commit(clone, committed="1")
        (clone / "old").write_text("changed")
        (clone / "untracked").write_text("1")
        self.assertEqual(history.recently_changed(clone), {"committed", "old", "untracked"})

    def test_what_was_removed_is_not_looked_at(self) -> None:
        repository = self.repository()
        (repository / "old").unlink()
        self.assertEqual(history.recently_changed(repository), {"recent"})


if __name__ == "__main__":
    unittest.main()
