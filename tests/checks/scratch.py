"""A folder for a test."""

from __future__ import annotations

import pathlib
import tempfile
import unittest


class Scratch(unittest.TestCase):
    """A folder of the test's own."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()

    def write(self, name: str, text: str) -> pathlib.Path:
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path
