#!/usr/bin/env python3
"""Tests of what the stages take of their wholes."""

from __future__ import annotations

import unittest

import check


class TestCheck(unittest.TestCase):
    def test_every_share_of_the_second_implementation_takes_other_projects(self) -> None:
        first = {int(check.second_implementation(check.Extent(f"{seed:x}", whole=False))[-1][-1]) for seed in range(10)}
        self.assertEqual(first, set(range(0, 2000, 200)))

    def test_limits_are_tried_on_both_builds_in_every_share(self) -> None:
        tried = {tuple(command) for seed in range(8)
                 for command in check.limits(check.Extent(f"{seed:x}", whole=False)) if "--share" in command}
        self.assertEqual(len(tried), 2 * check.LIMIT_SHARES)

    def test_mutations_are_few(self) -> None:
        for seed in range(30):
            numbers = check.mutations(check.Extent(f"{seed:x}", whole=False))[-1][2:]
            self.assertTrue(1 <= len(numbers) <= check.MUTATIONS_OF_A_RUN, numbers)

    def test_the_whole_names_no_share(self) -> None:
        stages = check.stages_of_check(check.Extent("5", whole=True))
        commands = [command for stage in stages for command in stage.commands]
        self.assertFalse([command for command in commands if "--share" in command])
        self.assertIn(["scripts/coverage"], commands)

    def test_stages_have_names_of_their_own(self) -> None:
        names = [stage.name for stage in check.stages_of_check(check.Extent("5", whole=True))]
        self.assertEqual(len(names), len(set(names)))


if __name__ == "__main__":
    unittest.main()
