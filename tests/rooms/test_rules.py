#!/usr/bin/env python3
"""Tests of the rules for rooms, over small trees that are made up."""

from __future__ import annotations

import json
import pathlib
import tempfile
import unittest

import picture
import rules
import tree

PROMISES = "# For: a\n# May know: b\n# Must never know: c\nvantrel_add_room()\n"


def room(name: str, *links: str, folder: str = "tools/Vantrel/x", **texts: str) -> tree.Target:
    """A room whose files are named as `One_h="..."`."""
    return tree.Target(name, folder, links, {file.replace("_", "."): text for file, text in texts.items()}, PROMISES)


class TestRules(unittest.TestCase):
    low = room("low", Low_h="", Low_cpp='#include "Low.h"\n#include <set>\n')
    middle = room("middle", "low", Middle_h='#include "Low.h"\n')

    def test_a_tree_may_include_what_it_links_straight_or_over_others(self) -> None:
        high = room("high", "middle", High_cpp='#include "Low.h"\n  # include "deep/Middle.h"\n#include "ui_High.h"\n')
        self.assertEqual(rules.broken_rules([self.low, self.middle, high]), [])

    def test_an_include_against_the_direction_is_named(self) -> None:
        other = room("other", Other_cpp='#include "Low.h"\n')
        self.assertEqual(rules.broken_rules([self.low, other]),
                         ["other: Other.cpp includes Low.h of low, which other does not link"])

    def test_a_cycle_is_named_with_the_files_that_make_it(self) -> None:
        first = room("first", "second", First_h='#include "Second.h"')
        second = room("second", "third", Second_h='#include "Third.h"')
        third = room("third", "first", Third_h="", Third_cpp='#include "First.h"')
        (broken,) = rules.broken_rules([self.low, first, second, third])
        self.assertTrue(broken.startswith("a cycle: "))
        self.assertEqual(set(broken.removeprefix("a cycle: ").split("; ")), {
            "First.h of first includes Second.h of second", "Second.h of second includes Third.h of third",
            "Third.cpp of third includes First.h of first"})

    def test_a_cycle_is_told_in_the_order_of_its_steps(self) -> None:
        rooms = [room(name, after, **{f"{name}_h": f'#include "{after}.h"'}) for name, after in ("ab", "bc", "ca")]
        steps = rules.no_cycles(rooms)[0].removeprefix("a cycle: ").split("; ")
        for step, after in zip(steps, steps[1:] + steps[:1]):
            self.assertEqual(step.split()[-1], after.split()[2])

    def test_a_cycle_of_links_alone_is_one_too(self) -> None:
        self.assertIn("one links two", rules.no_cycles([room("one", "two"), room("two", "one")])[0])

    def test_a_header_name_means_one_header_where_rooms_come_together(self) -> None:
        again = room("again", Low_h="")
        self.assertEqual(rules.broken_rules([self.low, again]), [])
        self.assertEqual(rules.broken_rules([self.low, again, room("both", "low", "again")]),
                         ["Low.h is a header of again and low"])

    def test_a_source_and_its_header_are_one_unit(self) -> None:
        files = {f"{number}_{suffix}": "" for number in range(rules.MOST_UNITS) for suffix in ("h", "cpp")}
        self.assertEqual(rules.broken_rules([room("full", **files)]), [])
        self.assertEqual(rules.broken_rules([room("full", **files, more_h="")]),
                         ["full has 17 units, more than 16: cut it into two"])

    def test_a_room_begins_with_what_it_is_for(self) -> None:
        for text in ("", "# For: a\n# May know: b", PROMISES.replace("May know: b", "May know: "), "\n" + PROMISES):
            with self.subTest(text):
                self.assertEqual(len(rules.broken_rules([tree.Target("a", "b", build_file=text)])), 1)
        self.assertEqual(rules.broken_rules([tree.Target("program", "b", is_room=False)]), [])

    def test_the_engine_neither_prints_nor_asks_nor_knows_exit_codes(self) -> None:
        texts = {'std::printf("a");': "prints: printf(", "puts(text);": "prints: puts(",
                 "std::cerr << 1;": "prints: std::cerr",
                 "QTextStream out(stdout);": "prints: QTextStream out(stdout",
                 "#include <QMessageBox>": "asks: QMessageBox", '#include "ExitCode.h"': "knows exit codes: ExitCode"}
        for text, broken in texts.items():
            with self.subTest(text):
                self.assertEqual(rules.broken_rules([room("a", A_cpp=text)]), [f"tools/Vantrel/x/A.cpp {broken}"])
                self.assertEqual(rules.broken_rules([room("a", folder="tools/Vantrel/ui/x", A_cpp=text)]), [])
        harmless = "// puts(a) no text\nstd::snprintf(a); QTextStream in(&file); outputs(); int exitCode;"
        self.assertEqual(rules.broken_rules([room("a", A_cpp=harmless)]), [])


class TestPicture(unittest.TestCase):
    targets = [room("top", "upper", "zero"), room("upper", "zero"), room("zero"), room("also")]
    text = "also\nzero\nupper -> zero\ntop   -> zero, upper\n"

    def test_a_target_stands_behind_all_that_it_links(self) -> None:
        self.assertEqual(picture.drawn(self.targets), self.text)

    def test_a_document_with_other_links_is_told_and_renewed(self) -> None:
        document = "Before\n\n```rooms\nzero\nupper -> also\n```\n\nBehind\n```\nother\n```\n"
        self.assertIn("-upper -> also", picture.differences(document, self.text))
        document = picture.renewed(document, self.text)
        self.assertEqual(document, f"Before\n\n```rooms\n{self.text}```\n\nBehind\n```\nother\n```\n")
        self.assertEqual(picture.differences(document, self.text), [])

    def test_a_document_without_a_picture_differs(self) -> None:
        self.assertIn("+zero", picture.differences("Nothing\n", self.text))


class TestTree(unittest.TestCase):
    def test_sources_are_read_and_links_to_the_system_are_left_out(self) -> None:
        with tempfile.TemporaryDirectory() as name:
            root = pathlib.Path(name).resolve()
            folder = root / "tools/one"
            folder.mkdir(parents=True)
            (folder / "CMakeLists.txt").write_text(PROMISES)
            (folder / "One.cpp").write_text("// one\n")
            targets = [
                {"name": "one", "type": "STATIC_LIBRARY", "folder": str(folder), "links": ["two", "Qt6::Core"],
                 "sources": ["One.cpp", "One.ui", str(root / "build/Made.cpp")]},
                {"name": "two", "type": "EXECUTABLE", "folder": str(folder), "links": [""], "sources": [""]}]
            (root / "targets.json").write_text(json.dumps(targets))
            one, two = tree.read_tree(root / "targets.json", root)
        self.assertEqual(one, tree.Target("one", "tools/one", ("two",), {"One.cpp": "// one\n"}, PROMISES, True))
        self.assertEqual((two.links, two.texts, two.is_room), ((), {}, False))


if __name__ == "__main__":
    unittest.main()
