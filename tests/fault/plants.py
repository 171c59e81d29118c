"""Small plants for the fault tests: few screens, so that a sweep over every call of a run is short.

A plant is a function that fills an empty project folder. Screens are trimmed and end their lines
with a line feed, so that a screen whose objects are all kept is rewritten byte for byte.
"""

from __future__ import annotations

import os
import pathlib
from typing import Callable

Plant = Callable[[pathlib.Path], None]

# More than one buffer of any reader or writer on the way.
MANY_OBJECTS = 300

# Screens of a plant whose runs are to be stopped on the way.
LONG_RUN = 40


def placed_object(number: int, shape: str) -> str:
    """Of a level of its own: parts of one level are taken for one object."""
    x, y = 10 + 40 * (number % 20), 10 + 40 * (number // 20)
    return (f"ID;{number};Rect;Frame{number}\n"
            f"LIB;{shape};1;Plant/Unit{number};Obj/Unit{number}\n"
            f"PSDV;{x};{y};{x + 19};{y + 19};2;1;15;8;1;0;{number};0\n")


def screen(shapes: list[str]) -> bytes:
    return "".join(placed_object(number, shape) for number, shape in enumerate(shapes, 1)).encode("latin-1")


def plain_screen(text: str) -> bytes:
    return f"ID;1;Rect;{text}\nPSDV;0;0;99;49;2;1;15;8;1;0;0\n".encode("latin-1")


def shape(name: str, icon: str = "") -> bytes:
    lines = f"{name} of the library\nID;1;Ellipse;Body\nLIB;{name}.plb;2;Lib/{name};Lib/{name}\n"
    lines += "PSDV;0;0;19;29;2;1;7;0;2;0;0;0\n"
    if icon:
        lines += f"ID;2;Icon;Lamp\nDIV;1;2;{icon}\nPSDV;2;2;9;9;2;0;7;0;2;0;0;0\n"
    return lines.encode("latin-1")


INVALID_SCREEN = b"ID;1;Rect;Cut\nPSDV;0;0;99\n"

LIBRARY = {
    "mac/pump.plb": shape("pump"),
    "mac/vlo/valve.plb": shape("valve", icon="lamp.bmp"),
    "bmp/lamps/lamp.bmp": b"BM lamp",
}

SCREENS = {
    "scr/00_overview.psc": screen(["pump.plb", "valve.plb"]),
    "scr/legend.psc": plain_screen("Legend"),
    "scr/units.psc": screen(["pump.plb"] * MANY_OBJECTS),
    "scr/area/00_area.psc": screen(["valve.plb"]),
    "scr/area/dosing.psc": screen(["pump.plb", "pump.plb", "valve.plb"]),
    "scr/area/notes.psc": plain_screen("Notes"),
}

OLDER_BACKUP = {
    "scr_bak/00_overview.psc": plain_screen("Overview of an earlier run"),
    "scr_bak/area/notes.psc": plain_screen("Notes of an earlier run"),
}

REPORTED_SCREENS = {
    "scr/cut.psc": INVALID_SCREEN,
    "scr/area/lost_shape.psc": screen(["pump.plb", "nowhere.plb"]),
}

OTHER_FILES = {
    "scr/to_do.txt": b"a note\n",
    "scr/.draft.psc": plain_screen("Draft"),
}

STALE_TEMP = {
    "scr_temp/legend.psc": plain_screen("Legend of a stopped run"),
    "scr_temp/pressure.psc": plain_screen("Pressure"),
}

# From a time that no clock tells yet: what a run puts into the history has one name in all runs of a
# plant then, so that its calls can be counted in one and hit in another.
OLDER_HISTORY = {
    ".vantrel.history/9999-12-31_23-59-59/run.json": b'{"format": 1, "kind": "undo"}',
    ".vantrel.history/9999-12-31_23-59-59/scr/earlier.psc": plain_screen("Undone"),
}

SHAPE_NAMES = ["pump.plb", "valve.plb", "nowhere.plb"]


def write_files(root: pathlib.Path, files: dict[str, bytes]) -> None:
    for name, content in files.items():
        path = root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def sound(root: pathlib.Path) -> None:
    """Every screen is converted; a run over it ends with exit code 0."""
    write_files(root, LIBRARY | SCREENS | OLDER_BACKUP | OLDER_HISTORY)
    (root / "log").mkdir()


def linked(root: pathlib.Path) -> None:
    """As the sound one, but a screen has a second name, so that it is backed up by copying."""
    sound(root)
    (root / "archive").mkdir()
    os.link(root / "scr/units.psc", root / "archive/units.psc")


def mixed(root: pathlib.Path) -> None:
    """With screens that a run reports, and files that it discards."""
    sound(root)
    write_files(root, REPORTED_SCREENS | OTHER_FILES)


def stopped(root: pathlib.Path) -> None:
    """As a cancelled run has left it."""
    sound(root)
    write_files(root, STALE_TEMP)


def long(root: pathlib.Path) -> None:
    """A run over it takes several times as long as its start; nothing is replaced or reported."""
    sound(root)
    write_files(root, {f"scr/long{number:02}.psc": screen(["not_chosen.plb"] * MANY_OBJECTS)
                       for number in range(LONG_RUN)})


def without(plant: Plant, *missing: str) -> Plant:
    """The same plant without some of its files."""
    def build(root: pathlib.Path) -> None:
        plant(root)
        for name in missing:
            (root / name).unlink(missing_ok=True)
    return build
