#!/usr/bin/env python3
"""Tests of what is run and said of stages."""

from __future__ import annotations

import contextlib
import io
import unittest

from scratch import Scratch
from stages import Stage, clock, run_stages, slowest_tests, table


class TestStages(Scratch):
    def run_stages(self, *stages: Stage) -> tuple[int, str, str]:
        output, errors = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(output), contextlib.redirect_stderr(errors):
            code = run_stages(list(stages), self.folder, lambda stage: f"again {stage.name}")
        return code, output.getvalue(), errors.getvalue()

    def test_every_command_runs_in_the_tree_and_each_stage_gets_a_row(self) -> None:
        code, output, errors = self.run_stages(Stage("first", "The first", [["touch", "a b"], ["touch", "c"]]),
                                               Stage("second", "The second", [["true"]]))
        self.assertEqual((code, errors), (0, ""))
        self.assertEqual({path.name for path in self.folder.iterdir()}, {"a b", "c"})
        self.assertIn("$ touch 'a b'\n", output)
        self.assertRegex(output, r"first +0:0\d\nsecond +0:0\d\nall +0:0\d\n$")

    def test_a_failure_ends_all_with_its_code_and_says_how_to_repeat_it(self) -> None:
        code, output, errors = self.run_stages(
            Stage("broken", "Broken", [["sh", "-c", "exit 7"], ["touch", "more"]]),
            Stage("next", "Next", [["touch", "next"]]))
        self.assertEqual(code, 7)
        self.assertEqual(list(self.folder.iterdir()), [])
        self.assertEqual(errors, 'The stage "broken" failed with exit code 7; this repeats it:  again broken\n')
        self.assertNotIn("next", output)

    def test_a_command_that_a_signal_ends_is_a_failure(self) -> None:
        self.assertEqual(self.run_stages(Stage("killed", "Killed", [["sh", "-c", "kill -KILL $$"]]))[0], 137)

    def test_the_slowest_tests_are_told_even_after_a_failure(self) -> None:
        cases = "".join(f'<testcase name="tst_{number}" time="{number}.5"/>' for number in range(7))
        self.write("made.xml", f"<testsuite>{cases}</testsuite>")
        code, output, _ = self.run_stages(
            Stage("tests", "Tests", [["cp", "made.xml", "tests.xml"], ["false"]], "tests.xml"))
        self.assertEqual(code, 1)
        self.assertIn("tst_6 6.5 s, tst_5 5.5 s, tst_4 4.5 s, tst_3 3.5 s, tst_2 2.5 s\n", output)
        self.assertEqual(slowest_tests(self.folder / "made.xml")[0], (6.5, "tst_6"))

    def test_the_times_of_another_run_are_not_shown(self) -> None:
        self.write("tests.xml", '<testsuite><testcase name="old" time="1"/></testsuite>')
        self.assertNotIn("old", self.run_stages(Stage("tests", "Tests", [["false"]], "tests.xml"))[1])

    def test_times_read_as_minutes_and_seconds(self) -> None:
        self.assertEqual([clock(seconds) for seconds in (0, 59.4, 59.6, 3725)], ["0:00", "0:59", "1:00", "62:05"])
        self.assertEqual(table([("one", 1), ("longer", 60)]), "one        0:01\nlonger     1:00\nall        1:01")


if __name__ == "__main__":
    unittest.main()
