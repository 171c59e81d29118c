#!/usr/bin/env python3
"""Makes a large, regular project for measurements.

    generate.py --files 10000 DIR

The same arguments always make the same bytes. About 20 KB a screen at 20 objects.
"""

from __future__ import annotations

import argparse
import pathlib
import random

SECTIONS = 4


def section(rng: random.Random, number: int, level: int, kind: str, reference: str, library: str) -> list[str]:
    """One section of an object: its drawing, and the references that bring it to life."""
    x, y = rng.randrange(1200), rng.randrange(700)
    w, h = rng.randrange(10, 200), rng.randrange(10, 120)
    lines = [f"ID;{number};{kind};Part{number}"]
    if library:
        lines.append(library)
    lines.append(f"PSDV;{x};{y};{x + w};{y + h};2;1;15;8;1;0;{level};0")
    points = [f"{rng.randrange(1280)};{rng.randrange(800)}" for _ in range(9)]
    lines.append(f"PNT;9;1;{';'.join(points)}")
    lines.append(f"IVG;{reference}/State:Shown")
    lines.append(f"IBG;{reference}/State:FrameColour")
    lines.append(f"ITX1;{reference}/Value:Reading;{reference}/Value:Unit;System:DecimalPoint")
    lines.append(f"TXT;{reference.rsplit('/', 1)[-1]};2;15;0;0;Arial;12;left")
    return lines


def shape(rng: random.Random, index: int, icons: list[str]) -> str:
    name = f"Lib/Shape{index:04}"
    lines = ["Shape library for measurements", f"SHAPE;shape{index:04}.plb"]
    lines += section(rng, 1, 1, "Rect", name, f"LIB;shape{index:04}.plb;1;{name};{name}")
    for number in range(2, SECTIONS + 1):
        lines += section(rng, number, 1, "Poly", name, "")
    for number, icon in enumerate(icons):
        lines += [f"ID;{SECTIONS + 1 + number};Icon;Lamp", f"DIV;0;on;{icon}"]
    return "\n".join(lines) + "\n"


def screen(rng: random.Random, arguments: argparse.Namespace, index: int) -> str:
    lines = [f"SCREEN;screen{index:06}", "SIZE;1280;800;grid;2"]
    for number in range(arguments.objects):
        chosen = rng.random() < arguments.share
        used = rng.randrange(arguments.shapes)
        reference = f"Plant/Unit{index}/Obj{number}"
        library = f"LIB;shape{used:04}.plb;1;{reference};Obj/Object{number}" if chosen else ""
        # Neighbours of one level would be one object.
        level = number + 1 if chosen else 0
        for part in range(SECTIONS if level > 0 else 3):
            lines += section(rng, part + 1, level, "Rect", reference, library if part == 0 else "")
    return "\n".join(lines) + "\n"


def write(path: pathlib.Path, text: str) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(text.encode("latin-1"))


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("directory", type=pathlib.Path)
    parser.add_argument("--files", type=int, default=10000)
    parser.add_argument("--objects", type=int, default=20, help="objects a screen")
    parser.add_argument("--shapes", type=int, default=200)
    parser.add_argument("--share", type=float, default=0.5, help="share of objects that are placed shapes")
    parser.add_argument("--folders", type=int, default=50, help="folders below the first")
    parser.add_argument("--icons", type=int, default=0, help="icons a shape")
    parser.add_argument("--bitmap-folders", type=int, default=0)
    parser.add_argument("--variety", type=int, default=64, help="different screens; the others repeat them")
    arguments = parser.parse_args()

    rng = random.Random(20)
    icons = [f"icon{number:02}.bmp" for number in range(arguments.icons)]
    for index in range(arguments.shapes):
        write(arguments.directory / "mac" / f"shape{index:04}.plb", shape(rng, index, icons))
    for number in range(arguments.bitmap_folders):
        write(arguments.directory / "bmp" / f"folder{number:04}" / "picture.bmp", "BM")
    for icon in icons:
        write(arguments.directory / "bmp" / "zz_last" / icon, "BM")
    (arguments.directory / "log").mkdir(parents=True)

    screens = [screen(rng, arguments, index) for index in range(min(arguments.variety, arguments.files))]
    write(arguments.directory / "scr" / "000000.psc", screens[0])
    for index in range(1, arguments.files):
        folder = f"f{index % arguments.folders:03}" if arguments.folders else "."
        write(arguments.directory / "scr" / folder / f"{index:06}.psc", screens[index % len(screens)])


if __name__ == "__main__":
    main()
