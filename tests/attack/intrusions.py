"""Somebody else who may write to a project, at work while a command is.

In front of any call of the program an entry of the project is exchanged with a link to the world outside, with a
second name of a file there, a pipe or a folder, or is taken away.
"""

from __future__ import annotations

import functools
import random
from dataclasses import dataclass

from attacks import Attack, Kind, Step, attacks, command, complaint_about
from cases import Case, Surroundings, site
from plants import linked, mixed, sound, stopped
from programs import Failure, built_beside
from scenes import Deed, Scene, surrounded

INTRUDER = "tests/attack/libvantrel_intruder.so"

PLANTS = (sound, linked, mixed, stopped)

# What a run of these plants makes in the history.
ENTRY = "9999-12-31_23-59-59"
NEW_ENTRY = f".vantrel.history/{ENTRY}.002"

FOLDERS = ("scr", "scr_temp", "scr_bak", f"{NEW_ENTRY}/scr", f"{NEW_ENTRY}/scr_bak")
PLACES = (*FOLDERS, *(f"{folder}/{name}" for folder in FOLDERS for name in ("area", "legend.psc", "area/deep")),
          ".vantrel.history", NEW_ENTRY, f"{NEW_ENTRY}/run.json", ".vantrel.run", ".vantrel.run.new", ".vantrel.lock",
          "log", "mac", "mac/pump.plb")
CALLED = ("@name", "@name", "@folder")  # by the very call

FOLDERS_OUTSIDE = ("outside", "outside", "outside/scr", "outside/area", "home", "plant/scr_bak", "plant/scr")
FILES_OUTSIDE = ("outside/legend.psc", "outside/profile", "outside/nothing")


@dataclass(frozen=True)
class Attacked:
    """A command, and about how many calls it makes."""
    words: tuple[str, ...]
    calls: int


RUN = Attacked(("update", "--json", "--force", "--all-shapes"), 350)
UNDOING = Attacked(("recover", "--undo"), 1000)
RECOVERIES = (Attacked(("recover", "--roll-back"), 600), Attacked(("recover", "--finish"), 600),
              Attacked(("recover",), 100))
OTHERS = (Attacked(("check",), 60), Attacked(("update", "--json", "--all-shapes", "--dry-run"), 400),
          Attacked(("history", "--restore", ENTRY), 80), Attacked(("history", "--prune", "1"), 80),
          Attacked(("diff",), 200),
          Attacked(("update", "--json", "--all-shapes", "--keep-others"), 300))
AFTER_RUN = (UNDOING, UNDOING, Attacked(("history", "--restore", f"{ENTRY}.002"), 300), RUN,
             Attacked(("history", "--prune", "0"), 300))


def during(deed: Deed) -> Step:
    return Step(str(deed), lambda scene: scene.deeds.append(deed))


def any_deed(chance: random.Random, calls: int) -> Step:
    kind = chance.choices(("link", "second name", "pipe", "folder", "remove"), (10, 3, 2, 1, 2))[0]
    place = chance.choice(CALLED if chance.random() < 0.6 else PLACES)
    targets = {"link": FOLDERS_OUTSIDE + FILES_OUTSIDE, "second name": FILES_OUTSIDE[:-1]}.get(kind, ("",))
    return during(Deed(chance.randint(1, calls), kind, place, chance.choice(targets)))


def any_attacked(chance: random.Random, attacked: tuple[Attacked, ...]) -> list[Step]:
    chosen = chance.choice(attacked)
    return [*(any_deed(chance, chosen.calls) for _ in range(chance.randint(1, 4))), command(*chosen.words)]


def make_attack(chance: random.Random) -> Attack:
    """On a project as it is, after a run, or after one that was killed."""
    match chance.choice(["as it is", "after a run", "after a killed one"]):
        case "as it is":
            steps = any_attacked(chance, (RUN, RUN, RUN, *OTHERS))
        case "after a run":
            steps = [command(*RUN.words), *any_attacked(chance, AFTER_RUN)]
        case _:
            kill = during(Deed(chance.randint(RUN.calls // 3, RUN.calls), "kill"))
            steps = [kill, command(*RUN.words), *any_attacked(chance, RECOVERIES)]
    return Attack(chance.choice(PLANTS), tuple(steps))


KILL_WHILE_BACKING_UP = during(Deed(150, "kill"))
KILL_WHILE_COPYING_BACK = during(Deed(200, "kill"))


@dataclass(frozen=True)
class Sweep:
    """A command each of whose calls meets each of some deeds, and what comes before it."""
    name: str
    before: tuple[Step, ...]
    words: tuple[str, ...]

    def attack(self, *deeds: Deed) -> Attack:
        return Attack(sound, (*self.before, *map(during, deeds), command(*self.words)))


SWEEPS = (
    Sweep("a run", (), RUN.words),
    Sweep("a second run", (command(*RUN.words),), RUN.words),
    Sweep("an undoing", (command(*RUN.words),), UNDOING.words),
    Sweep("a restoring", (command(*RUN.words),), ("history", "--restore", f"{ENTRY}.002")),
    Sweep("a rolling back", (KILL_WHILE_BACKING_UP, command(*RUN.words)), ("recover", "--roll-back")),
    Sweep("a completing", (KILL_WHILE_COPYING_BACK, command(*RUN.words)), ("recover", "--finish")),
    Sweep("a dry run", (), ("update", "--json", "--all-shapes", "--dry-run")),
    Sweep("a check", (), ("check",)),
)
SWEPT_DEEDS = (("link", "@name", "outside"), ("link", "@name", "outside/legend.psc"), ("link", "@folder", "outside"),
               ("second name", "@name", "outside/profile"), ("pipe", "@name", ""), ("remove", "@folder", ""))


def calls_of(surroundings: Surroundings, sweep: Sweep, intruder: str) -> int:
    """How many the command makes where nobody intrudes."""
    with site(surroundings, surrounded(sound)) as place:
        scene = Scene(place, intruder)
        for step in sweep.attack().steps:
            step.do(scene)
        return scene.calls()


def check_swept(surroundings: Surroundings, kind: Kind, attack: Attack) -> None:
    if complaint := complaint_about(surroundings, kind, attack, range(1, len(attack.steps) + 1)):
        raise Failure(complaint)


def intruded_calls(surroundings: Surroundings) -> list[Case]:
    kind = Kind("intruded-calls", make_attack, built_beside(surroundings.program, INTRUDER))
    cases = []
    for sweep in SWEEPS:
        calls = range(1, calls_of(surroundings, sweep, kind.intruder) + 1)
        deeds = [Deed(call, *deed) for deed in SWEPT_DEEDS for call in calls]
        cases += [Case(f"{sweep.name}, {deed}", functools.partial(check_swept, surroundings, kind, sweep.attack(deed)))
                  for deed in surroundings.thinned(deeds)]
    return cases


def check_reach(surroundings: Surroundings, intruder: str) -> None:
    """That calls are counted at all, and that the last of a run can be hit."""
    with site(surroundings, surrounded(sound)) as place:
        scene = Scene(place, intruder)
        scene.deeds.append(Deed(1, "folder", "made by the intruder"))
        scene.run(list(RUN.words))
        if not (place.project / "made by the intruder").is_dir():
            raise Failure("the intruder has done nothing")
        if not RUN.calls // 2 < scene.calls() <= RUN.calls:
            raise Failure(f"a run makes {scene.calls()} calls, but {RUN.calls} are reckoned with")


def intruders(surroundings: Surroundings) -> list[Case]:
    intruder = built_beside(surroundings.program, INTRUDER)
    return [Case("reach", functools.partial(check_reach, surroundings, intruder)),
            *attacks(surroundings, Kind("intruders", make_attack, intruder))]
