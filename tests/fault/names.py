"""Odd names of screens and folders: converted or reported, never mixed up, never removed unreported."""

from __future__ import annotations

import functools
import os
import pathlib

from cases import Case, Site, Surroundings, site
from plants import LIBRARY, Plant, screen, write_files
from programs import Failure, require_no_crash
from trees import lost_originals, place_in_backup

LONGEST_NAME = 255

NAMES = {
    "blanks": ["two  words .psc", " .psc"],
    "quotes": ["it's.psc", 'say "so".psc', "back`tick`.psc", "back\\slash.psc"],
    "line ends": ["new\nline.psc", "carriage\rreturn.psc", "tab\t.psc"],
    "separators": ["semi;colon.psc", "comma,.psc", ";.psc"],
    "place holders": ["%1.psc", "%2%3.psc", "%n%s.psc"],
    "markup": ["<b>bold</b>.psc", "&amp;.psc"],
    "options": ["-rf.psc", "--force.psc"],
    "patterns": ["*.psc", "[a-z]?.psc", "$HOME.psc", "~.psc"],
    "not UTF-8": ["f\udce4.psc", "\udcff\udcfe.psc"],
    "alike after decoding": ["\udce4.psc", "\udce5.psc", "\ufffd.psc"],
    "a folder not UTF-8": ["\udce4rea/inner.psc"],
    "the longest": ["n" * (LONGEST_NAME - 4) + ".psc", "\u00fc" * 125 + ".psc"],
    "one letter case apart": ["Unit.psc", "unit.psc", "UNIT.psc"],
    "composed and decomposed": ["\u00e4.psc", "a\u0308.psc"],
    "beginning like the folder": ["scratch.psc", "scr/scr.psc", "scr_bak/a.psc"],
    "suffix in the middle": ["a.psc.bak", "b.psc~", "d.psc.d/c.txt"],
}

SHAPES = ["pump.plb", "valve.plb"]


def plant_with(names: list[str]) -> Plant:
    """Each screen holds another number of objects, so that none can be taken for another."""
    def build(root: pathlib.Path) -> None:
        write_files(root, LIBRARY)
        (root / "log").mkdir()
        for count, name in enumerate(names, 1):
            write_files(root, {f"scr/{name}": screen(SHAPES * count)})
    return build


def expected_contents(surroundings: Surroundings, count: int) -> list[bytes]:
    """What the screens of a plant with plain names become."""
    plain = [f"{number:03}.psc" for number in range(1, count + 1)]
    with site(surroundings, plant_with(plain)) as place:
        place.program.run(place.update())
        tree = place.tree()
        return [tree[f"scr/{name}"].content for name in plain]


def printable(name: str) -> str:
    return name.encode(errors="backslashreplace").decode()


def check_names(surroundings: Surroundings, names: list[str], options: list[str]) -> None:
    expected = expected_contents(surroundings, len(names))
    with site(surroundings, plant_with(names)) as place:
        outcome = place.program.run(place.update(*options))
        after = place.tree()
        require_no_crash(outcome)
        if lost := lost_originals(place.before, after):
            raise Failure(f"originals lost, exit code {outcome.code}: {', '.join(map(printable, lost))}")
        if outcome.code == 0:
            require_converted(place, names, expected)


def require_converted(place: Site, names: list[str], expected: list[bytes]) -> None:
    after = place.tree()
    for name, content in zip(names, expected):
        path = f"scr/{name}"
        converted = path in after and after[path].content == content
        saved = after.get(place_in_backup(path)) == place.before[path]
        if not (converted and saved):
            raise Failure(f"{printable(name)} neither converted nor reported")


def check_refusal(surroundings: Surroundings, names: list[str]) -> None:
    expected = expected_contents(surroundings, len(names))
    with site(surroundings, plant_with(names)) as place:
        outcome = place.program.run(place.update_all())
        if outcome.code != 0 and outcome.code != 3:
            raise Failure(f"exit code {outcome.code}")
        if outcome.code == 3 and place.tree() != place.before:
            raise Failure("refused, but changed")
        if outcome.code == 0:
            require_converted(place, names, expected)
        if lost := lost_originals(place.before, place.tree()):
            raise Failure(f"originals lost: {', '.join(map(printable, lost))}")



def path_of_length(project: str, length: int) -> str:
    """A screen whose whole path has as many bytes as asked for, in folders of long names."""
    rest = length - len(f"{project}/scr/") - len("/x.psc")
    folders = []
    while rest > 201:
        folders.append("d" * 200)
        rest -= 201
    return "/".join([*folders, "e" * rest, "x.psc"])


def check_deep(surroundings: Surroundings, spare: int) -> None:
    """A path with so many bytes to spare to the longest that the system takes."""
    def build(root: pathlib.Path) -> None:
        write_files(root, LIBRARY)
        name = path_of_length(str(root), os.pathconf("/", "PC_PATH_MAX") - 1 - spare)
        write_files(root, {f"scr/{name}": screen(SHAPES)})
    with site(surroundings, build) as place:
        outcome = place.program.run(place.update("--make-folders"))
        after = place.tree()
        require_no_crash(outcome)
        if lost := lost_originals(place.before, after):
            raise Failure(f"originals lost, exit code {outcome.code}: a path with {spare} bytes to spare")
        path = next(path for path in place.before if path.endswith("x.psc"))
        if outcome.code == 0 and (path not in after or place_in_backup(path) not in after):
            raise Failure("neither converted nor reported")


def odd_names(surroundings: Surroundings) -> list[Case]:
    cases = []
    for kind, names in NAMES.items():
        cases.append(Case(kind, functools.partial(check_names, surroundings, names, ["--make-folders"])))
        cases.append(Case(f"{kind}, surveyed", functools.partial(check_refusal, surroundings, names)))
    cases += [Case(f"{spare} bytes to the longest path", functools.partial(check_deep, surroundings, spare))
              for spare in (2000, 100, 10, 5, 4, 3, 1, 0)]
    return cases
