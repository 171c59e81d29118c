#!/usr/bin/env python3
"""Tests of what counts as a second door."""

from __future__ import annotations

import unittest

import door


class TestDoor(unittest.TestCase):
    def test_classes_that_open_paths_are_found(self) -> None:
        for text, used in (("QFile file(path);", "QFile"), ("return QFile::remove(path);", "QFile"),
                           ("QDir(path).entryList();", "QDir"), ("QDirIterator entries(path);", "QDirIterator"),
                           ("namespace fs = std::filesystem;", "std::filesystem"), ("std::ofstream out(path);", "std::ofstream")):
            self.assertEqual(door.used_classes(text), {used}, text)

    def test_texts_of_paths_comments_and_includes_are_none(self) -> None:
        for text in ("QFile::encodeName(path)", "QDir::cleanPath(path)", "QFileInfo(path).isFile()", "#include <QFile>\n",
                     "// QFile would follow it", 'u"QFile"_s', "/* std::filesystem */"):
            self.assertEqual(door.used_classes(text), set(), text)

    def test_functions_are_found_under_all_their_names(self) -> None:
        symbols = " U open64@GLIBC_2.2.5\n U __openat64_2\n U rename\n U memcpy\n U _ZN5QFile4openEv\n U opens\n"
        self.assertEqual(door.used_functions(symbols), {"open", "openat", "rename"})

    def test_the_door_itself_is_none_of_the_sources(self) -> None:
        names = door.sources()
        self.assertIn("tools/Vantrel/run/ChangeLog.cpp", names)
        self.assertNotIn("tools/Vantrel/files/FileIo.cpp", names)


if __name__ == "__main__":
    unittest.main()
