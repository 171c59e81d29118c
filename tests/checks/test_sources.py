#!/usr/bin/env python3
"""Tests of which sources static analysis looks at."""

from __future__ import annotations

import json
import unittest

import sources
from scratch import Scratch
from shares import Share


class TestSources(Scratch):
    def setUp(self) -> None:
        super().setUp()
        self.write("a/One.cpp", '#include "One.h"\n#include <set>\n')
        self.write("a/Two.cpp", '  #  include "deeper/One.h"\n')
        self.write("a/Form.cpp", '#include "ui_Form.h"\n')
        self.write("a/Other.cpp", '// "One.h"\n#include "NotOne.h"\n')
        self.sources = ["a/Form.cpp", "a/One.cpp", "a/Other.cpp", "a/Two.cpp"]

    def concerned(self, *changed: str) -> list[str]:
        return sources.concerned(self.sources, set(changed), self.folder)

    def test_a_header_stands_for_what_includes_it(self) -> None:
        self.assertEqual(self.concerned("a/One.h"), ["a/One.cpp", "a/Two.cpp"])

    def test_a_form_stands_for_what_includes_its_header(self) -> None:
        self.assertEqual(self.concerned("b/Form.ui"), ["a/Form.cpp"])

    def test_a_source_stands_for_itself(self) -> None:
        self.assertEqual(self.concerned("a/Two.cpp", "README.md", "gone.cpp"), ["a/Two.cpp"])

    def test_all_shares_take_all_and_each_what_changed(self) -> None:
        taken = [sources.chosen(self.sources, {"a/Two.cpp"}, self.folder, Share(number, 3)) for number in range(3)]
        self.assertTrue(all("a/Two.cpp" in part for part in taken))
        self.assertEqual({path for part in taken for path in part}, set(self.sources))

    def test_after_large_changes_these_are_taken_by_turns(self) -> None:
        many = [self.write(f"b/{number}.cpp", "").relative_to(self.folder) for number in range(70)]
        names = [str(path) for path in many]
        taken = [sources.chosen(names, set(names), self.folder, Share(number, 10)) for number in range(10)]
        self.assertLessEqual(max(map(len, taken)), sources.MOST_CHANGED)
        self.assertEqual({path for part in taken for path in part}, set(names))

    def test_what_a_build_makes_itself_is_left_out(self) -> None:
        files = ["a/One.cpp", "a/One.cpp", "build/dev/moc.cpp", "a/build/Two.cpp"]
        commands = [{"file": str(self.folder / name)} for name in files] + [{"file": "/usr/src/gtest.cc"}]
        path = self.write("compile_commands.json", json.dumps(commands))
        self.assertEqual(sources.compiled(path, self.folder), ["a/One.cpp", "a/build/Two.cpp"])


if __name__ == "__main__":
    unittest.main()
