#!/usr/bin/env python3
"""Tests of what makes attacks: a seed tells the same one always, and a failing one is made short."""

from __future__ import annotations

import pathlib
import random
import sys
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "fault"))

import rows  # noqa: E402, F401  (after the place where it lies; tells where others do)
import intrusions  # noqa: E402
import stages  # noqa: E402
from attacks import MOST_TRIES, shortest  # noqa: E402

MANY = 300


class TestAttacks(unittest.TestCase):
    def test_a_seed_tells_one_attack(self) -> None:
        for make in (stages.make_attack, intrusions.make_attack):
            for seed in range(MANY):
                once, again = (make(random.Random(seed)) for _ in range(2))
                self.assertEqual([step.text for step in once.steps], [step.text for step in again.steps])
                self.assertEqual(once.plant, again.plant)

    def test_each_attack_ends_with_a_command(self) -> None:
        for make in (stages.make_attack, intrusions.make_attack):
            for seed in range(MANY):
                self.assertTrue(make(random.Random(seed)).steps[-1].text.startswith("vantrel-cli "))

    def test_what_fails_is_made_short(self) -> None:
        chance = random.Random(1)
        for length in range(1, 40):
            needed = set(chance.sample(range(length), min(length, 3)))
            found = shortest(range(length), needed.issubset, MOST_TRIES)
            self.assertEqual(found, sorted(needed))

    def test_it_gives_up_in_time(self) -> None:
        tries = []

        def fails(items) -> bool:
            tries.append(len(items))
            return len(items) > 30
        found = shortest(range(60), fails, 20)
        self.assertTrue(fails(found))
        self.assertLessEqual(len(tries), 21)


if __name__ == "__main__":
    unittest.main()
