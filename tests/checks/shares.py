"""Shares of a check that is too long for every run: each run takes one of them, and by and by all are taken.

A share is written K/N: of many things the K-th, the K+N-th and so on, from 0. Which one a run takes is
told by its seed, and the seed by the commit, so that the same commit always takes the same share.
"""

from __future__ import annotations

import argparse
import re
from dataclasses import dataclass
from typing import Sequence, TypeVar

Item = TypeVar("Item")

DIGITS_OF_SEED = 12  # of a commit's hash; as many as anybody would copy


@dataclass(frozen=True)
class Share:
    """The number-th of count shares."""
    number: int
    count: int

    def __str__(self) -> str:
        return f"{self.number}/{self.count}"

    def of(self, items: Sequence[Item], least: int = 1) -> list[Item]:
        """What falls to this share; where that would be fewer than the least, of fewer and larger shares.

            Share(1, 4).of("abcdefgh")           ->  b f
            Share(1, 4).of("abcdefgh", least=4)  ->  b d f h
        """
        count = max(1, min(self.count, len(items) // max(1, least)))
        return list(items[self.number % count::count])


def parse_share(text: str) -> Share:
    """For command lines: "3/8" is the share 3 of 0 to 7."""
    match = re.fullmatch(r"([0-9]{1,6})/([0-9]{1,6})", text, re.ASCII)
    if match is None or int(match[1]) >= int(match[2]):
        raise argparse.ArgumentTypeError(f'"{text}" is no share; one is written like "0/8", up to "7/8"')
    return Share(int(match[1]), int(match[2]))


def parse_seed(text: str) -> str:
    """For command lines: the first digits of a commit's hash."""
    if re.fullmatch(r"[0-9a-f]{1,64}", text, re.ASCII) is None:
        raise argparse.ArgumentTypeError(f'"{text}" is no seed; one is the beginning of a commit\'s hash')
    return text[:DIGITS_OF_SEED]


def share_for(seed: str, count: int) -> Share:
    """Which of so many shares a seed takes."""
    return Share(int(seed, 16) % count, count)


def at_most(items: Sequence[Item], most: int, seed: str) -> list[Item]:
    """All, or, where these are too many, a share with at most that many."""
    return share_for(seed, max(1, -(-len(items) // most))).of(items)
