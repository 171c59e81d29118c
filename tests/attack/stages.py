"""What somebody else has left in a project: stage files, locks, links on the way. Then a command that trusts them."""

from __future__ import annotations

import os
import random
import socket
from dataclasses import dataclass
from typing import Callable

from attacks import Attack, Kind, Step, attacks, command
from cases import Case, Surroundings
from names import printable
from plants import linked, mixed, plain_screen, sound, stopped
from scenes import ALL_SCREENS, Scene

PLANTS = (sound, linked, mixed, stopped)

STAGES = ("cancelled", "converting", "removing the last backup", "backing up",
          "removing the screens that are backed up", "copying back", "done", "setting the screens aside",
          "rolling back", "rolled back")

SCREEN_NAMES = tuple(name.removeprefix("scr/") for name in ALL_SCREENS)
OTHER_NAMES = ("pressure.psc", "area", "area/scr/legend.psc", "linked/legend.psc", "linked", "scr/legend.psc",
               "to_do.txt")
LEADING_OUT = ("../mac/pump.plb", "../../outside/legend.psc", "../../outside", "area/../../../outside/units.psc", "..",
               "%2e%2e/%2e%2e/outside/legend.psc", "..%00/..%00/outside/legend.psc", "..%00", "legend.psc%00", ".",
               "%2Fetc/legend.psc", "linked/../../outside/legend.psc", "../scr_bak", "../.vantrel.lock",
               "area//notes.psc", "%C0%AE%C0%AE/outside", "%EF%BB%BF../outside", "..%2F..%2Foutside", "")

ENTRIES = ("2026-01-02_03-04-05", "2026-01-02_03-04-06")
ODD_ENTRIES = ("9999-12-31_23-59-59", "..", ".", "../..", "../../outside", "..%00", "linked", "%2E%2E", "")

FLAGS = ("makes folders", "list is whole", "had scr_temp", "had scr_bak", "keeps others")
NUMBERS = ("3", "3", "3", "0", "1", "-1", "+2", "99999999999", "2147483647")

FOLDERS = ("scr", "scr_temp", "scr_bak", f".vantrel.history/{ENTRIES[0]}/scr", f".vantrel.history/{ENTRIES[0]}/scr_bak",
           f".vantrel.history/{ENTRIES[0]}/scr_temp")
# In whose place something else is put.
PLACES = (*FOLDERS, *FOLDERS, *FOLDERS,
          *(f"{folder}/{name}" for folder in FOLDERS
            for name in ("area", "area", "area/deep", "linked", "legend.psc", "pressure.psc")),
          ".vantrel.history", *(f".vantrel.history/{entry}" for entry in (*ENTRIES, "linked")),
          *(f".vantrel.history/{entry}/run.json" for entry in ENTRIES), ".vantrel.run.new", ".vantrel.lock",
          ".vantrel.lock.rmlock", "log", "mac", "bmp", "scr_temp/.vantrel.copy", "scr/.vantrel.copy")
TARGETS = ("outside", "outside", "outside", "outside/scr", "outside/legend.psc", "outside/units.psc", "outside/nothing",
           "outside/run.json", "home", "tmp", "plant/scr", "plant/scr_bak", "plant")

COMMANDS = (
    ["recover", "--roll-back"], ["recover", "--roll-back"], ["recover", "--finish"], ["recover", "--finish"],
    ["recover", "--undo"], ["recover", "--undo"], ["recover"], ["check"], ["history"], ["shapes"], ["diff"],
    ["update", "--json", "--force", "--all-shapes"], ["update", "--json", "--all-shapes"],
    ["update", "--json", "--force", "--all-shapes", "--keep-others", "--make-folders"],
    ["update", "--json", "--all-shapes", "--dry-run"], ["history", "--prune", "0"], ["history", "--prune", "1"],
)


@dataclass(frozen=True)
class Part:
    """What a project is given, some times up to a most."""
    most: int
    make: Callable[[random.Random], Step]


def line(text: str) -> Step:
    return Step(f"the stage file says \"{printable(text)}\"", lambda scene: scene.lines.append(text))


def any_name(chance: random.Random) -> str:
    return chance.choice(chance.choices((SCREEN_NAMES, OTHER_NAMES, LEADING_OUT), (6, 3, 1))[0])


def any_entry(chance: random.Random) -> str:
    return chance.choice(chance.choices((ENTRIES, ODD_ENTRIES), (4, 1))[0])


def any_screen_line(chance: random.Random) -> Step:
    return line(f"{chance.choice(['screen', 'screen', 'unsaved', 'older file', 'older folder'])}: {any_name(chance)}")


def any_damage(chance: random.Random) -> Step:
    place, byte = chance.randrange(1 << 16), chance.choice([0, ord("\n"), ord("/"), ord("."), chance.randrange(256)])
    return Step(f"its byte {place} becomes {byte}", lambda scene: scene.damages.append((place, byte)))


def any_move(chance: random.Random) -> Step:
    name, folder = chance.choice(SCREEN_NAMES), chance.choice(FOLDERS[1:])
    return Step(f"scr/{name} is moved to {folder}", lambda scene: scene.move(f"scr/{name}", f"{folder}/{name}"))


def any_file(chance: random.Random) -> Step:
    place = f"{chance.choice(FOLDERS)}/{chance.choice((*SCREEN_NAMES, 'pressure.psc', '.vantrel.copy'))}"
    content = chance.choice([plain_screen(f"Written by {chance.randrange(1 << 20)}"), b"", b"ID;1;Re"])
    return Step(f"{place} is written", lambda scene: scene.write(place, content))


def any_link(chance: random.Random) -> Step:
    place, target = chance.choice(PLACES), chance.choice(TARGETS)
    return Step(f"{place} is a link to {target}",
                lambda scene: scene.set_aside(place).symlink_to(scene.target(target)))


def give_second_name(scene: Scene, place: str, target: str) -> None:
    path = scene.set_aside(place)
    os.link(scene.target(target), path)


def any_other_kind(chance: random.Random) -> Step:
    place = chance.choice(PLACES)
    name, make = chance.choice([
        ("a pipe", lambda scene: os.mkfifo(scene.set_aside(place))),
        ("a folder", lambda scene: scene.set_aside(place).mkdir()),
        ("a second name of a file outside", lambda scene: give_second_name(scene, place, "outside/legend.psc")),
        ("a second name of a private file", lambda scene: give_second_name(scene, place, "outside/profile")),
    ])
    return Step(f"{place} is {name}", make)


def any_summary(chance: random.Random) -> Step:
    entry, about = chance.choice((*ENTRIES, "9999-12-31_23-59-59")), any_entry(chance).replace("%00", "\\u0000")
    content = (f'{{"format": {chance.choice([1, 1, 1, 2, -1])}, "kind": "{chance.choice(["run", "undo", "x"])}", '
               f'"ended": "2026-01-02T03:04:05", "about": "{about}", "projectDir": "/"}}')
    return Step(f"the entry {entry} says {content}",
                lambda scene: scene.write(f".vantrel.history/{entry}/run.json", content.encode()))


def any_lock(chance: random.Random) -> Step:
    name, content = chance.choice([
        ("of a dead process", f"{(1 << 22) + 1}\nvantrel-cli\n{socket.gethostname()}\n\n\n".encode()),
        ("of another host", b"1\nvantrel-cli\nnowhere\n\n\n"), ("of nobody", b""), ("of a group", b"-1\n\n\n"),
        ("of the first process", f"1\n\n{socket.gethostname()}\n".encode()), ("without an end", b"9" * 5000),
        ("of chance", chance.randbytes(64)),
    ])
    return Step(f"a lock {name}", lambda scene: scene.write(".vantrel.lock", content))


def any_command(chance: random.Random) -> Step:
    if chance.random() < 0.2:
        entry = any_entry(chance).replace("%00", "")
        files = [any_name(chance).replace("%00", "") for _ in range(chance.randint(0, 2))]
        words = chance.choice([["--restore", entry, *files], ["--restore", entry], ["--diff", entry]])
        return command("history", *words)
    return command(*chance.choice(COMMANDS))


AROUND_STAGE = (Part(6, any_move), Part(5, any_file), Part(3, any_link), Part(1, any_other_kind), Part(2, any_summary))


def facts(chance: random.Random) -> list[Step]:
    """The lines of a stage file. Some are missing, now and then."""
    lines = [f"stage: {chance.choice(STAGES)}", f"ended at: {chance.choice(STAGES)}", "program: vantrel 1.0",
             f"started: {chance.choice(['2026-01-02T03:04:05', '1970-01-01T00:00:00Z', '9999-12-31T23:59:59'])}",
             *(f"{flag}: {chance.choice(['yes', 'no'])}" for flag in FLAGS), f"kept runs: {chance.choice(NUMBERS)}"]
    lines += [f"{key}: {any_entry(chance)}" for key in ("history", "set aside") if chance.random() < 0.6]
    lines += [f"screen: {name}" for name in SCREEN_NAMES if chance.random() < 0.7]
    return [line(text) for text in lines if chance.random() < 0.97]


def make_attack(chance: random.Random) -> Attack:
    steps = [part.make(chance) for part in AROUND_STAGE for _ in range(chance.randint(0, part.most))]
    if chance.random() < 0.9:
        steps += facts(chance)
        steps += [any_screen_line(chance) for _ in range(chance.choice([0, 0, 1, 4]))]
        steps += [any_damage(chance) for _ in range(chance.choice([0, 0, 0, 1, 3]))]
    if chance.random() < 0.2:
        steps.append(any_lock(chance))
    steps += [any_command(chance) for _ in range(chance.randint(1, 3))]
    return Attack(chance.choice(PLANTS), tuple(steps))


def stage_files(surroundings: Surroundings) -> list[Case]:
    return attacks(surroundings, Kind("stage-files", make_attack))
