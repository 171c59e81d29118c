#!/usr/bin/env python3
"""Tests of shares: each is stable, and all together are the whole."""

from __future__ import annotations

import argparse
import pathlib
import sys
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "fault"))

import cases  # noqa: E402  (after the place where it lies)
from shares import Share, at_most, parse_seed, parse_share, share_for  # noqa: E402

HASH = "c25ea142d3dffdf5325157440404b597001fca1e"


class TestShares(unittest.TestCase):
    def test_the_share_of_a_commit_is_always_the_same(self) -> None:
        self.assertEqual(share_for(parse_seed(HASH), 8), Share(7, 8))
        self.assertEqual(share_for(parse_seed(HASH), 10), Share(9, 10))
        self.assertEqual(share_for(parse_seed(HASH[:12]), 8), share_for(parse_seed(HASH), 8))

    def test_commits_take_every_share(self) -> None:
        self.assertEqual({share_for(f"{commit:x}", 8).number for commit in range(100)}, set(range(8)))

    def test_all_shares_together_are_the_whole(self) -> None:
        for size in range(40):
            for count in range(1, 12):
                for least in (1, 3, 12):
                    taken = [item for number in range(count) for item in Share(number, count).of(range(size), least)]
                    self.assertEqual(set(taken), set(range(size)), (size, count, least))

    def test_shares_do_not_overlap_where_each_has_enough(self) -> None:
        taken = sorted(item for number in range(8) for item in Share(number, 8).of(range(100), least=12))
        self.assertEqual(taken, list(range(100)))

    def test_a_share_has_no_fewer_than_the_least(self) -> None:
        for size in range(40):
            for number in range(8):
                self.assertGreaterEqual(len(Share(number, 8).of(range(size), least=6)), min(size, 6))

    def test_a_share_takes_every_nth(self) -> None:
        self.assertEqual(Share(1, 4).of("abcdefgh"), ["b", "f"])
        self.assertEqual(Share(1, 4).of("abcdefgh", least=4), ["b", "d", "f", "h"])

    def test_at_most_takes_all_of_few_and_by_and_by_all_of_many(self) -> None:
        self.assertEqual(at_most([5, 6], 3, "7"), [5, 6])
        self.assertEqual(at_most([], 3, "7"), [])
        parts = [at_most(range(10), 3, f"{seed:x}") for seed in range(16)]
        self.assertLessEqual(max(map(len, parts)), 3)
        self.assertEqual({item for part in parts for item in part}, set(range(10)))

    def test_a_share_is_read_as_it_is_written(self) -> None:
        self.assertEqual(parse_share("3/8"), Share(3, 8))
        self.assertEqual(str(parse_share("0/1")), "0/1")

    def test_what_is_no_share_is_refused(self) -> None:
        for text in ("", "3", "3/", "/8", "8/8", "9/8", "0/0", "-1/8", "1/-8", "+1/8", " 1/8", "1/8 ", "1/8\n", "1.0/8",
                     "a/b", "1/8/9", "٣/٨", "1_0/20", "0x1/8", "1/9999999"):
            with self.assertRaises(argparse.ArgumentTypeError, msg=text):
                parse_share(text)

    def test_what_is_no_seed_is_refused(self) -> None:
        self.assertEqual(parse_seed(HASH), HASH[:12])
        for text in ("", "-1", "0x1f", "main", "ABC", "1 2", "1\n"):
            with self.assertRaises(argparse.ArgumentTypeError, msg=text):
                parse_seed(text)


class TestSweeps(unittest.TestCase):
    def thinned(self, size: int, points: int | None, share: Share | None) -> list[int]:
        return cases.Surroundings("program", pathlib.Path("/work"), points, share, least=12).thinned(list(range(size)))

    def test_all_shares_of_a_sweep_are_the_sweep(self) -> None:
        for size in (0, 5, 40, 1000):
            shares = [self.thinned(size, 600, Share(number, 8)) for number in range(8)]
            self.assertEqual({point for part in shares for point in part}, set(self.thinned(size, 600, None)))
            self.assertGreaterEqual(min(map(len, shares)), min(size, 12))

    def test_without_a_share_both_ends_are_tried(self) -> None:
        self.assertEqual(self.thinned(100, 3, None), [0, 50, 99])


if __name__ == "__main__":
    unittest.main()
