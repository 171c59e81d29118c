#!/usr/bin/env python3
"""Makes a large, regular project for measurements, and tells what a run over it reports.

    generate.py --files 10000 DIR

The same arguments always make the same bytes. About 20 KB a screen at 20 objects. Prints one
JSON object: the number of screens, their bytes and lines, and the reports of a run in which
all shapes are chosen.
"""

from __future__ import annotations

import argparse
import dataclasses
import json
import pathlib
import random


@dataclasses.dataclass(frozen=True)
class Settings:
    """What a project is like; the field names are those of the options."""

    files: int = 10000
    objects: int = 20
    sections: int = 4
    texts: int = 1
    levels: int = 0
    shapes: int = 200
    share: float = 0.5
    missing: float = 0.0
    folders: int = 50
    icons: int = 0
    pictures: int = 0
    bitmap_folders: int = 0
    variety: int = 64


HELP = {
    "files": "screens",
    "objects": "objects a screen",
    "sections": "sections a placed object",
    "texts": "text lines a section",
    "levels": "levels that the objects of a screen share in turn; 0: each placed object has its own",
    "shapes": "shapes in the library",
    "share": "share of objects that are placed shapes",
    "missing": "share of placed shapes that the library does not have",
    "folders": "folders below the first",
    "icons": "icons a shape",
    "pictures": "sections a shape of the same size as an icon's that are none",
    "bitmap_folders": "folders of bitmaps that are searched before the one with the icons",
    "variety": "different screens; the others repeat them",
}


@dataclasses.dataclass
class Reports:
    """The reports of a run in which all shapes are chosen."""

    replaced: int = 0
    not_replaced: int = 0
    errors: int = 0


def is_due(number: int, share: float) -> bool:
    """Whether the thing with this number is one of the evenly spread share."""
    return int((number + 1) * share) > int(number * share)


def section(rng: random.Random, texts: int, number: int, level: int, reference: str, library: str) -> list[str]:
    """One section of an object: its drawing, and the references that bring it to life."""
    x, y = rng.randrange(1200), rng.randrange(700)
    w, h = rng.randrange(10, 200), rng.randrange(10, 120)
    points = [f"{rng.randrange(1280)};{rng.randrange(800)}" for _ in range(9)]
    name = reference.rsplit("/", 1)[-1]
    return [
        f"ID;{number};Rect;Part{number}",
        *([library] if library else []),
        f"PSDV;{x};{y};{x + w};{y + h};2;1;15;8;1;0;{level};0",
        f"PNT;9;1;{';'.join(points)}",
        f"IVG;{reference}/State:Shown",
        f"IBG;{reference}/State:FrameColour",
        f"ITX1;{reference}/Value:Reading;{reference}/Value:Unit;System:DecimalPoint",
        *([f"TXT;{name};2;15;0;0;Arial;12;left"] * texts),
    ]


def shape(rng: random.Random, settings: Settings, index: int) -> list[str]:
    name = f"Lib/Shape{index:04}"
    lines = ["Shape library for measurements", f"SHAPE;shape{index:04}.plb"]
    for number in range(1, settings.sections + 1):
        library = f"LIB;shape{index:04}.plb;1;{name};{name}" if number == 1 else ""
        lines += section(rng, settings.texts, number, 1, name, library)
    for kind, count in (("Icon", settings.icons), ("Rect", settings.pictures)):
        for number in range(count):
            lines += [f"ID;{settings.sections + 1 + number};{kind};Lamp", f"DIV;0;on;icon{number:02}.bmp"]
    return lines


def level_of(settings: Settings, number: int, is_placed: bool) -> int:
    if settings.levels:
        return number % settings.levels + 1
    # Neighbours of one level would be one object.
    return number + 1 if is_placed else 0


class Screen:
    """A screen, made object by object."""

    def __init__(self, rng: random.Random, settings: Settings, index: int) -> None:
        self.lines = [f"SCREEN;screen{index:06}", "SIZE;1280;800;grid;2"]
        self.reports = Reports()
        self._rng = rng
        self._settings = settings
        self._index = index
        self._placed = 0
        self._levels_with_candidate: set[int] = set()
        for number in range(settings.objects):
            self._add_object(number)
        if self._placed == 0:
            self.reports.not_replaced = 1

    def _add_object(self, number: int) -> None:
        settings = self._settings
        is_placed = is_due(number, settings.share)
        level = level_of(settings, number, is_placed)
        reference = f"Plant/Unit{self._index}/Obj{number}"
        library = self._library_line(number, level, reference) if is_placed else ""
        sections = settings.sections if level > 0 else max(1, settings.sections - 1)
        for part in range(sections):
            self.lines += section(
                self._rng, settings.texts, part + 1, level, reference, library if part == 0 else "")

    def _library_line(self, number: int, level: int, reference: str) -> str:
        is_missing = is_due(self._placed, self._settings.missing)
        self._placed += 1
        self._count_report(level, is_missing)
        used = self._rng.randrange(self._settings.shapes)
        name = f"gone{used:04}.plb" if is_missing else f"shape{used:04}.plb"
        return f"LIB;{name};1;{reference};Obj/Object{number}"

    def _count_report(self, level: int, is_missing: bool) -> None:
        # Later objects of a candidate's level are parts of it.
        if level in self._levels_with_candidate:
            return
        self._levels_with_candidate.add(level)
        if is_missing:
            self.reports.errors += 1
        else:
            self.reports.replaced += 1


def write(path: pathlib.Path, content: bytes) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def encoded(lines: list[str]) -> bytes:
    return ("\n".join(lines) + "\n").encode("latin-1")


def write_library(directory: pathlib.Path, rng: random.Random, settings: Settings) -> None:
    for index in range(settings.shapes):
        write(directory / "mac" / f"shape{index:04}.plb", encoded(shape(rng, settings, index)))
    for number in range(settings.bitmap_folders):
        write(directory / "bmp" / f"folder{number:04}" / "picture.bmp", b"BM")
    for number in range(settings.icons):
        write(directory / "bmp" / "zz_last" / f"icon{number:02}.bmp", b"BM")


def screen_path(settings: Settings, index: int) -> pathlib.Path:
    name = pathlib.Path(f"{index:06}.psc")
    # The first one stands above all folders: a level is made where it holds a screen.
    if index == 0 or settings.folders == 0:
        return name
    return pathlib.Path(f"f{index % settings.folders:03}") / name


def write_screens(directory: pathlib.Path, rng: random.Random, settings: Settings) -> dict[str, int]:
    screens = [Screen(rng, settings, index) for index in range(min(settings.variety, settings.files))]
    contents = [encoded(screen.lines) for screen in screens]
    facts = {"files": settings.files, "bytes": 0, "lines": 0, "replaced": 0, "not_replaced": 0, "errors": 0}
    for index in range(settings.files):
        screen, content = screens[index % len(screens)], contents[index % len(screens)]
        write(directory / "scr" / screen_path(settings, index), content)
        facts["bytes"] += len(content)
        facts["lines"] += len(screen.lines)
        for kind, count in dataclasses.asdict(screen.reports).items():
            facts[kind] += count
    return facts


def make(directory: pathlib.Path, settings: Settings) -> dict[str, int]:
    """Makes the project in a folder that does not exist yet."""
    rng = random.Random(20)
    write_library(directory, rng, settings)
    (directory / "log").mkdir(parents=True)
    return write_screens(directory, rng, settings)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("directory", type=pathlib.Path)
    for field in dataclasses.fields(Settings):
        option = "--" + field.name.replace("_", "-")
        parser.add_argument(option, type=type(field.default), default=field.default, help=HELP[field.name])
    arguments = vars(parser.parse_args())
    directory = arguments.pop("directory")
    print(json.dumps(make(directory, Settings(**arguments))))


if __name__ == "__main__":
    main()
