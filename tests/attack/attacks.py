"""Sequences of steps that chance makes, and the shortest of them that still does harm."""

from __future__ import annotations

import contextlib
import functools
import random
from dataclasses import dataclass
from typing import Callable, Sequence, TypeVar

from cases import USUAL_SEEDS, Case, Surroundings, site
from plants import Plant
from programs import Failure
from scenes import Impossible, Scene, surrounded

Item = TypeVar("Item")

# How often a sequence that fails is tried with fewer of its steps.
MOST_TRIES = 150


@dataclass(frozen=True)
class Step:
    text: str
    do: Callable[[Scene], None]


@dataclass(frozen=True)
class Attack:
    plant: Plant
    steps: tuple[Step, ...]


@dataclass(frozen=True)
class Kind:
    """The attacks of a row."""
    row: str
    make: Callable[[random.Random], Attack]
    intruder: str = ""  # a library that stands before the system's own


def command(*words: str) -> Step:
    return Step(f"vantrel-cli {' '.join(words)}", lambda scene: scene.run(list(words)))


def shortest(items: Sequence[Item], fails: Callable[[Sequence[Item]], bool], most_tries: int) -> list[Item]:
    """As few of the items as still fail, found by leaving out parts: first halves, at last single ones.

        shortest("abcdef", lambda items: "b" in items and "e" in items, 100)  ->  b e
    """
    kept = list(items)
    size = max(1, len(kept) // 2)
    while most_tries > 0:
        begin, had = 0, len(kept)
        while begin < len(kept) and most_tries > 0:
            fewer = kept[:begin] + kept[begin + size:]
            most_tries -= 1
            if fails(fewer):
                kept = fewer
            else:
                begin += size
        if size == 1 and len(kept) == had:
            break
        size = max(1, size // 2)
    return kept


def complaint_about(surroundings: Surroundings, kind: Kind, attack: Attack, numbers: Sequence[int]) -> str:
    """What these of its steps, counted from 1, have harmed; empty where nothing is."""
    with site(surroundings, surrounded(attack.plant)) as place:
        scene = Scene(place, kind.intruder)
        try:
            for number in numbers:
                with contextlib.suppress(Impossible):
                    attack.steps[number - 1].do(scene)
        except Failure as failure:
            return f"{failure} ({', '.join(scene.outcomes)})"
        return ""


def check_attack(surroundings: Surroundings, kind: Kind, seed: int) -> None:
    attack = kind.make(random.Random(seed))
    complaint_of = functools.partial(complaint_about, surroundings, kind, attack)
    numbers = surroundings.steps or range(1, len(attack.steps) + 1)
    if not complaint_of(numbers):
        return
    numbers = shortest(numbers, lambda fewer: bool(complaint_of(fewer)), MOST_TRIES)
    steps = "\n    ".join(f"{number}. {attack.steps[number - 1].text}" for number in numbers)
    seeds = f" --seeds {seed + 1}" if seed >= USUAL_SEEDS else ""
    only = f'--only "{name_of(seed)}"{seeds} --steps {",".join(map(str, numbers))}'
    raise Failure(f"{complaint_of(numbers)}\n    on the plant \"{attack.plant.__name__}\":\n    {steps}\n"
                  f"    again: run.py --program PROGRAM {only} {kind.row}")


def name_of(seed: int) -> str:
    """Of one length, so that none begins another."""
    return f"seed {seed:06}"


def attacks(surroundings: Surroundings, kind: Kind) -> list[Case]:
    return [Case(name_of(seed), functools.partial(check_attack, surroundings, kind, seed))
            for seed in surroundings.thinned(list(range(surroundings.seeds)))]
