#!/usr/bin/env python3
"""Makes a random project for comparing two implementations of the conversion.

Call:

    python3 generate.py --seed N DIR [--shapes FILE]

DIR is made and must not exist.  The chosen shape file names go into FILE, one
per line in UTF-8; without --shapes it is the file DIR.shapes beside DIR.  One
seed always gives the same project, whatever DIR is called.

Most projects are sound enough that many of their objects get replaced, for a
comparison of files that nobody touches finds nothing.  The oddities are
strewn in sparingly, each project with its own mixture.
"""

from __future__ import annotations

import argparse
import os
import random
import sys
from dataclasses import dataclass, field
from typing import Callable, Dict, List, Optional

ODD_NUMBERS = ["2147483647", "2147483648", "-2147483648", "-2147483649",
               "1073741824", "-1073741825", "-0", "+5", " 7 ", "1e3", "nan",
               "", "0x10", "007", "--3", "+-1", "- 4", "1.5", "\xa012\xa0",
               "\x8514", "\xb2", "99999999999999999999", "00000000000000012",
               "5\x00", "1,000", "-99999", "99999"]

WORDS = ["PUMP", "VALVE", "M01", "state", "F\xfcllstand", "Beh\xe4lter 7",
         "\xb5\xb2", "50%", "a b", "x\ry", "n\x00l", "KKS.10", "pic.bmp",
         "Image File", "\xff"]

TEXT_TAGS = ["TXT", "COL", "pnt;3", "psdv", "lib;a;b", "IDX", "IV", "SDV",
             "REM", "\xc4ND", "id;1", " "]

ICON_NAMES = ["auf.bmp", "zu.bmp", "motor.bmp", "Alarm.bmp", "k\xfchl.bmp",
              "sub/tief.bmp"]
LOST_ICON_NAMES = ["fehlt.bmp", "AUF.BMP", "gross.bmp", "oben.bmp",
                   "versteckt.bmp", "Shape File.bmp", "weg%1.bmp"]


def weighted(r: random.Random, table: Dict[str, int]) -> str:
    return r.choices(list(table), weights=list(table.values()))[0]


@dataclass
class Shape:
    reference: str          # as image files write it
    file_name: str          # as the conversion looks for it
    name: str               # what field 4 of its LIB line says
    quality: str


@dataclass
class Mixture:
    """How often a project shows each kind of oddity."""
    odd_number: float
    odd_text: float
    line_ends: str
    blanks: float
    init: Dict[str, int] = field(default_factory=dict)


class Generator:
    def __init__(self, seed: int, root: str) -> None:
        self.r = random.Random(seed)
        self.root = root
        r = self.r
        self.mix = Mixture(
            odd_number=r.choice([0.0, 0.0, 0.01, 0.03, 0.1]),
            odd_text=r.choice([0.0, 0.02, 0.1]),
            line_ends=weighted(r, {"lf": 60, "crlf": 25, "mixed": 15}),
            blanks=r.choice([0.0, 0.0, 0.05]),
            init={"plain": 60, "path": 10, "grown": 10, "shrunk": 6,
                  "system": 5, "empty": 5, "percent": 2, "same": 2})
        self.shapes: List[Shape] = []
        self.references: List[str] = []

    # -- files ------------------------------------------------------------

    def folder(self, path: str) -> None:
        os.makedirs(os.path.join(self.root, path), exist_ok=True)

    def file(self, path: str, content: bytes) -> None:
        full = os.path.join(self.root, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, "wb") as out:
            out.write(content)

    def as_bytes(self, lines: List[str]) -> bytes:
        r = self.r
        out = b""
        for index, line in enumerate(lines):
            text = line
            if r.random() < self.mix.blanks:
                text = (r.choice(["", " ", "\t", "\r", "\f "]) + text
                        + r.choice(["", "  ", "\v", "\t\r", "\r\r"]))
            end = "\n"
            if self.mix.line_ends == "crlf":
                end = "\r\n"
            elif self.mix.line_ends == "mixed":
                end = r.choice(["\n", "\r\n"])
            if index == len(lines) - 1 and r.random() < 0.2:
                end = r.choice(["", "", "\r"])
            out += (text + end).encode("latin-1")
        return out

    # -- fields -----------------------------------------------------------

    def chance(self, probability: float) -> bool:
        return self.r.random() < probability

    def number(self, low: int = -60, high: int = 1900) -> str:
        if self.chance(self.mix.odd_number):
            return self.r.choice(ODD_NUMBERS)
        return str(self.r.randint(low, high))

    def word(self) -> str:
        if self.chance(self.mix.odd_text):
            return self.r.choice(WORDS)
        return self.r.choice(WORDS[:4]) + str(self.r.randint(1, 99))

    def words(self, low: int, high: int) -> List[str]:
        return [self.word() for _ in range(self.r.randint(low, high))]

    def reference(self, prefix: str) -> str:
        kind = weighted(self.r, {"own": 55, "system": 14, "other": 12,
                                 "empty": 6, "bare": 4, "near": 5,
                                 "later": 4})
        if kind == "own":
            return prefix + self.word()
        if kind == "system":
            return "System:" + self.word()
        if kind == "other":
            return "D:/bilder/" + self.word()
        if kind == "empty":
            return ""
        if kind == "bare":
            return prefix
        if kind == "near":
            return prefix.swapcase() + self.word()
        return "x" + prefix + self.word()

    # -- lines ------------------------------------------------------------

    def line(self, *fields: str) -> str:
        return ";".join(fields)

    def points(self) -> str:
        r = self.r
        n = r.randint(0, 5)
        pairs = [self.number() for _ in range(2 * n)]
        kind = weighted(r, {"exact": 78, "more": 10, "trailing": 6,
                            "wrapped": 6})
        if kind == "more":
            pairs += [self.number() for _ in range(r.randint(1, 3))]
        if kind == "trailing":
            pairs.append("")
        if kind == "wrapped":
            return r.choice([
                self.line("PNT", "-2147483647", "0", self.number(),
                          self.number()),
                self.line("PNT", "1073741824", "0", "5", "6"),
                self.line("PNT", "2147483647", "0", "5", "6"),
                self.line("PNT", "-2147483648", "0"),
                self.line("PNT", "-1", "0", "5", "6"),
                self.line("PNT", "x", "0"),
                self.line("PNT", " " + "1 ", "0", "5", "6")])
        return self.line("PNT", str(n), self.word(), *pairs)

    def rectangle(self) -> List[str]:
        r = self.r
        x = r.randint(-40, 1600)
        y = r.randint(-40, 1000)
        w = r.randint(0, 300)
        h = r.randint(0, 200)
        corners = [x, y, x + w, y + h]
        kind = weighted(r, {"plain": 80, "swapped": 8, "thin": 6, "dot": 6})
        if kind == "swapped":
            corners = r.choice([[x + w, y, x, y + h], [x, y + h, x + w, y],
                                [x + w, y + h, x, y]])
        if kind == "thin":
            corners = [x, y, x - 1, y + h]
        if kind == "dot":
            corners = [x, y, x, y]
        texts = [str(value) for value in corners]
        if self.chance(self.mix.odd_number * 2):
            texts[r.randrange(4)] = r.choice(ODD_NUMBERS)
        if self.chance(self.mix.odd_number):
            texts = r.choice([
                ["-2147483648", "0", "2147483647", "10"],
                ["2147483647", "0", "-2147483648", "10"],
                ["-2000000000", "-2000000000", "2000000000", "2000000000"],
                ["-2147483648", "5", "-2147483648", "9"],
                ["-99999", "-99999", "10", "10"]])
        return texts

    def psdv(self, level: str, at_least: int) -> str:
        r = self.r
        counted = weighted(r, {"1": 78, "2": 4, "-1": 3, "0": 7, "": 4,
                               "x": 4})
        if self.chance(self.mix.odd_number):
            counted = r.choice(ODD_NUMBERS)
        fields = ["PSDV"] + self.rectangle() + [self.word(), counted]
        fields += self.words(4, 4) + [level]
        if at_least >= 13 or self.chance(0.8):
            fields.append(self.word())
            extra = weighted(r, {"none": 55, "one": 20, "many": 12,
                                 "trailing": 13})
            if extra == "one":
                fields.append(self.word())
            if extra == "many":
                fields += self.words(2, 5)
            if extra == "trailing":
                fields.append("")
        if self.chance(0.03):
            fields[0] = "PSDVX"
        return ";".join(fields)

    def reference_line(self, prefix: str) -> str:
        """A line with file references that passes the check of a shape."""
        r = self.r
        ref: Callable[[], str] = lambda: self.reference(prefix)
        tag = r.choice(["IVG", "IBG", "ITC", "IVGN", "IBGN", "ITCN", "ITA",
                        "IDMS", "ITX1", "ITX2", "ITXN", "IIK1", "IIK2",
                        "IIKN", "ISB", "ISA", "IX1", "IX2", "IY1", "IY2",
                        "IBW"])
        tail = self.words(0, 2)
        if tag in ("IVG", "IBG", "ITC", "IDMS", "IIK1", "ISB", "ITA"):
            name = tag
            if tag == "ITA" and self.chance(0.3):
                name = "ITAX"
            if tag in ("IVG", "IBG", "ITC") and self.chance(0.1):
                name = tag + "X"
            return self.line(name, ref(), *tail)
        if tag in ("IVGN", "IBGN", "ITCN"):
            if self.chance(0.2):
                return self.line(tag, ref())
            return self.line(tag, ref(), ref(), *tail)
        if tag == "ITX1":
            return self.line(tag, ref(), ref(), ref(), *tail)
        if tag == "ITX2":
            return self.line(tag, *[ref() for _ in range(6)], *tail)
        if tag == "ITXN":
            if self.chance(0.08):
                count = r.choice(["x", "-1", "-5", "", "0", "-2147483648"])
                return self.line(tag, count, ref(), ref(), ref(), ref())
            n = r.randint(1, 4)
            groups: List[str] = []
            for _ in range(n):
                groups += [ref(), ref(), ref()]
            return self.line(tag, str(n), ref(), *groups, *tail)
        if tag == "IIK2":
            return self.line(tag, ref(), ref(), *tail)
        if tag == "IIKN":
            return self.line(tag, ref(), ref(), *tail)
        if tag == "ISA":
            length = r.choice([20, 20, 24, 28, 29, 29, 31])
            return self.line(tag, *[ref() for _ in range(length)])
        if tag == "IBW":
            return self.line(tag, *[ref() for _ in range(7)], *tail)
        third = ref()
        fourth = self.number()
        fifth = self.number()
        if self.chance(0.15):
            fourth = r.choice([prefix + "a:b", "C:1", "System:x", ""])
        if self.chance(0.15):
            fifth = r.choice([prefix + ":9", "12:", "", " 3"])
        return self.line(tag, ref(), ref(), third, fourth, fifth, *tail)

    def bad_shape_line(self) -> str:
        """A line that does not pass the check of a shape."""
        r = self.r
        return r.choice([
            "ID;7", "ID;", "PNT;2;0;10;20;30", "PNT;", "PNT;3;0", "PNT;5",
            "PSDV;1;2;3;4;5;1;7;8;9;10;3", "PSDV", "LIB;a;b", "LIBRARY",
            "IVG", "IVGN", "IBG", "IBGN", "ITC", "ITCN", "ITA", "IDMS",
            "ITX1;a;b", "ITX2;a;b;c;d;e", "ITXN;1", "ITXN;2;x;a;b",
            "ITXN;abc", "IIK1", "IIK2;a", "IIKN;a", "ISB",
            "ISA" + ";a" * 19, "IX1;a;b", "IX2;a;b;c;d", "IY1;a;b",
            "IY2;a;b;c;4", "IBW;a;b;c;d;e;f"])

    def bad_image_line(self) -> str:
        r = self.r
        return r.choice([
            "ID;7", "ID;", "PNT;2;0;10;20;30", "PNT;", "PNT;3;0", "PNT;5;1",
            "PSDV;1;2;3;4;5;1;7;8;9;10", "PSDV", "LIB;ventil.plb",
            "LIB;a;b;c", "LIB"])

    def other_line(self) -> str:
        r = self.r
        if self.chance(0.1):
            return ""
        return self.line(r.choice(TEXT_TAGS), *self.words(0, 4))

    def body(self, prefix: str, low: int, high: int) -> List[str]:
        lines = []
        for _ in range(self.r.randint(low, high)):
            kind = weighted(self.r, {"reference": 60, "points": 22,
                                     "other": 18})
            if kind == "reference":
                lines.append(self.reference_line(prefix))
            elif kind == "points":
                lines.append(self.points())
            else:
                lines.append(self.other_line())
        return lines

    def id_line(self) -> str:
        kind = weighted(self.r, {"Icon": 30, "Text": 15, "Frame": 40,
                                 "icon": 5, "": 10})
        return self.line("ID", str(self.r.randint(1, 999)), kind,
                         *self.words(0, 3))

    # -- shape files ------------------------------------------------------

    def shape_lines(self, shape: Shape) -> List[str]:
        r = self.r
        lines: List[str] = []
        for _ in range(r.choice([0, 0, 1, 3])):
            lines.append(r.choice(["; header", "VERSION;7", "", "PNT;9;0",
                                   "LIB", " head " + self.word()]))
        sections = r.randint(1, 4)
        for section in range(sections):
            lines.append(self.id_line())
            prefix = shape.name
            lines += self.body(prefix, 0, 4)
            if section == 0 or self.chance(0.3):
                if self.chance(0.04):
                    lines.append(self.line("LIB", shape.file_name, "1", "x"))
                else:
                    lines.append(self.line("LIB", shape.file_name, "1",
                                           self.word(), shape.name,
                                           *self.words(0, 2)))
            for _ in range(r.choice([1, 1, 1, 2, 3, 0])):
                lines.append(self.psdv(self.number(0, 9), 13))
            lines += self.body(prefix, 1, 6)
            for _ in range(r.choice([0, 0, 1, 2])):
                icon = r.choice(ICON_NAMES)
                if self.chance(0.25):
                    icon = r.choice(LOST_ICON_NAMES)
                lines.append(r.choice([
                    self.line("DIV", "1", "2", icon),
                    self.line("DIV", "1", "2", icon, "4"),
                    self.line("DIVX", "", "", icon)]))
            if self.chance(0.03):
                lines.append(r.choice(["DIV;1", "DIV", "DIV;1;2;"]))
        if shape.quality == "invalid":
            lines.insert(r.randint(0, len(lines)), self.bad_shape_line())
            if not any(line.startswith("ID;") for line in lines[:-1]):
                lines.insert(0, "ID;1;Icon")
        return lines

    def make_library(self) -> None:
        r = self.r
        self.folder("mac/vlo")
        stems = ["ventil", "pumpe", "motor", "regler", "k\xfchler", "klappe",
                 "anzeige", "taste", "tank", "l\xfcfter"]
        r.shuffle(stems)
        for number, stem in enumerate(stems[:r.randint(3, 8)]):
            quality = weighted(r, {"good": 74, "invalid": 8, "missing": 6,
                                   "cat": 4, "empty": 3, "no-id": 2,
                                   "folder": 2, "other-case": 1})
            if number == 0:
                quality = "good"
            if self.chance(0.3):
                stem = stem.capitalize()
            base = stem + r.choice(["", "_01", "-a b", "%2"])
            if quality == "cat":
                base += ".cat"
            ending = weighted(r, {".plb": 66, ".lib": 24, ".PLB": 4,
                                  ".LIB": 4, ".lib.lib": 2})
            reference = base + ending
            file_name = reference.replace(".lib", ".plb")
            name = r.choice(["MAC:", "vlo/", "lib:", "C:/l"]) + stem
            name = weighted(r, {name: 76, "System:" + stem: 4, stem[:2]: 5,
                                "": 5, name + ".": 5, "mac:": 5})
            shape = Shape(reference, file_name, name, quality)
            self.shapes.append(shape)
            place = r.choice(["mac/", "mac/", "mac/vlo/"])
            if quality in ("good", "invalid", "cat"):
                self.file(place + file_name,
                          self.as_bytes(self.shape_lines(shape)))
                if place == "mac/" and self.chance(0.2):
                    # The copy below "vlo" is another one and not wanted.
                    self.file("mac/vlo/" + file_name,
                              self.as_bytes(self.shape_lines(shape)))
                if reference != file_name and self.chance(0.3):
                    self.file("mac/" + reference, b"ID;0;Text\n")
            elif quality == "empty":
                self.file(place + file_name, b"")
            elif quality == "no-id":
                self.file(place + file_name, self.as_bytes(["LIB;a", "PSDV"]))
            elif quality == "folder":
                self.folder(place + file_name)
            elif quality == "other-case":
                self.file(place + file_name.swapcase(),
                          self.as_bytes(self.shape_lines(shape)))

    def make_bitmaps(self) -> None:
        r = self.r
        layout = weighted(r, {"plain": 60, "deep": 20, "upper": 8,
                              "named": 8, "none": 4})
        base = {"plain": "bmp", "deep": "bmp/gruppe/a", "upper": "BMP",
                "named": "bmp_alt", "none": "bilder"}[layout]
        for icon in ICON_NAMES:
            if not self.chance(0.08):
                self.file(base + "/" + icon, b"BM")
        self.file("bmp/GROSS/gross.bmp", b"BM")
        self.file("bmp/.verborgen/versteckt.bmp", b"BM")
        self.file("oben.bmp", b"BM")
        self.file("grafik/bmp/fehlt.bmp", b"BM")

    # -- image files ------------------------------------------------------

    def init_text(self, shape: Shape) -> str:
        kind = weighted(self.r, self.mix.init)
        if kind == "plain":
            return "KKS_" + str(self.r.randint(10, 99)) + ":"
        if kind == "path":
            return "D:/proj/" + self.word() + "/"
        if kind == "grown":
            return shape.name + shape.name + "X"
        if kind == "shrunk":
            return shape.name[:3] + "_"
        if kind == "system":
            return "System:"
        if kind == "percent":
            return self.r.choice(["%7", "%1:", "%L7 %12", "100 %"])
        if kind == "same":
            return shape.name or "same"
        return ""

    def lib_line(self, shape: Shape) -> str:
        r = self.r
        self.references.append(shape.reference)
        name = weighted(r, {"obj_": 60, shape.name + "#": 15, shape.name: 15,
                            "abcd": 4, "ab": 3, "": 3})
        if name == "obj_":
            name += self.word()
        return self.line("LIB", shape.reference, r.choice(["", "0", "x"]),
                         self.init_text(shape), name, *self.words(0, 2))

    def level_text(self, level: int) -> str:
        kind = weighted(self.r, {"plain": 94, "plus": 2, "blank": 2,
                                 "zero": 2})
        if kind == "plus":
            return "+" + str(level)
        if kind == "blank":
            return " " + str(level) + " "
        if kind == "zero":
            return "00" + str(level)
        return str(level)

    def image_object(self, level: int) -> List[str]:
        """The lines of one object that carries a shape."""
        r = self.r
        shape = r.choice(self.shapes)
        lines: List[str] = []
        for section in range(r.choice([1, 1, 1, 2, 3])):
            lines.append(self.id_line())
            lines += self.body(shape.name, 0, 3)
            if section == 0:
                lines.append(self.lib_line(shape))
                if self.chance(0.03):
                    # Not directly before its rectangle: no candidate.
                    lines.append(self.other_line())
            elif self.chance(0.15):
                lines.append(self.lib_line(shape))
            for _ in range(1 if section == 0 else r.choice([1, 1, 2, 0])):
                lines.append(self.psdv(self.level_text(level), 12))
            lines += self.body(shape.name, 0, 4)
            if section == 0 and self.chance(0.03):
                # A rectangle of another level without a section of its own.
                lines.append(self.psdv(self.level_text(level + 50), 12))
        if self.chance(0.06):
            lines.append(self.id_line())
            lines += self.body(shape.name, 0, 2)
        return lines

    def plain_object(self) -> List[str]:
        """The lines of an object that is left alone, in one of many ways."""
        r = self.r
        level = weighted(r, {"0": 70, "-3": 6, "x": 6, "": 6, "-0": 6,
                             "2147483648": 6})
        lines = [self.id_line()]
        lines += self.body("MAC:", 0, 3)
        if self.chance(0.3):
            lines.append(self.lib_line(r.choice(self.shapes)))
        lines.append(self.psdv(level, 12))
        lines += self.body("MAC:", 0, 3)
        return lines

    def unfit_object(self, level: int) -> List[str]:
        """An object of a level above 0 that is no candidate."""
        r = self.r
        lines = [self.id_line()]
        kind = r.choice(["no-lib", "empty-file", "prefix", "last-wins"])
        if kind == "empty-file":
            lines.append(self.line("LIB", "", "x", "KKS:", "obj_1"))
        if kind == "prefix":
            lines.append(self.line("LIBX", "ventil.plb", "x", "KKS:", "o"))
        if kind == "last-wins":
            lines.append(self.lib_line(r.choice(self.shapes)))
            lines.append(self.psdv(str(level), 12))
            lines.append(self.line("LIB", "other.plb", "x", "", "obj_2"))
        lines.append(self.psdv(str(level), 12))
        lines += self.body("vlo/", 0, 2)
        return lines

    def image_lines(self) -> List[str]:
        r = self.r
        kind = weighted(r, {"normal": 86, "plain": 4, "empty": 2, "head": 2,
                            "no-psdv": 2, "failing": 4})
        if kind == "empty":
            return []
        lines: List[str] = []
        for _ in range(r.choice([0, 0, 1, 2, 4])):
            lines.append(r.choice(["PSC;V7", "", "SIZE;1920;1080",
                                   self.other_line(),
                                   self.psdv("3", 12)]))
        if kind == "head":
            return lines
        if kind == "no-psdv" or self.chance(0.1):
            # Sections without a rectangle before the first object.
            for _ in range(r.randint(1, 2)):
                lines.append(self.id_line())
                lines += self.body("MAC:", 0, 3)
        if kind == "no-psdv":
            return lines
        level = r.randint(1, 5)
        used: List[int] = []
        for _ in range(r.randint(1, 9)):
            what = weighted(r, {"object": 74, "plain": 16, "unfit": 5,
                                "scattered": 5})
            if kind == "plain":
                what = "plain"
            if what == "plain":
                lines += self.plain_object()
                continue
            if what == "scattered" and used:
                chosen = r.choice(used)
            else:
                level += r.randint(1, 3)
                chosen = level
                used.append(level)
            if what == "unfit":
                lines += self.unfit_object(chosen)
            else:
                lines += self.image_object(chosen)
        if self.chance(0.3):
            lines += self.plain_object()
        if self.chance(0.1):
            lines += r.choice([["", ""], ["END"], ["ID;9;Text"],
                               ["LIB;ventil.plb;0;KKS:;last"]])
        if kind == "failing":
            lines.insert(r.randint(0, len(lines)), self.bad_image_line())
        return lines

    def screen(self, path: str) -> None:
        self.file(path, self.as_bytes(self.image_lines()))

    def make_screens(self) -> None:
        r = self.r
        layout = weighted(r, {"flat": 30, "ordered": 46, "scripts": 8,
                              "unordered": 10, "odd-folder": 3,
                              "none": 2, "missing": 1})
        if layout == "missing":
            return
        self.folder("scr")
        if self.chance(0.25):
            self.file("scr/readme.txt", b"not an image file\n")
            self.file("scr/GROSS.PSC", b"ID;1\n")
        if layout == "none":
            self.file("scr/.hidden.psc", b"ID;1\n")
            return
        names = ["a_start.psc", "anlage.psc", "Bild 2.psc", "C-uebersicht.psc",
                 "detail.psc", "\xdcbersicht.psc", "\u03a9.psc", "zoom.psc"]
        top = [names[0]] + [n for n in names[1:] if self.chance(0.45)]
        if layout != "unordered":
            for name in top:
                self.screen("scr/" + name)
            if self.chance(0.12):
                self.screen("scr/anlage.psc.bak")
            if self.chance(0.1):
                self.file("scr/.hidden.psc", b"ID;1\n")
                self.file("scr/.dir/b.psc", b"ID;1\n")
        if layout == "ordered":
            for folder in ["halle", "teil 2", "k\xfche"]:
                if not self.chance(0.6):
                    continue
                self.screen("scr/" + folder + "/aa.psc")
                if self.chance(0.5):
                    self.screen("scr/" + folder + "/ab.psc")
                if self.chance(0.4):
                    self.screen("scr/" + folder + "/deep/a1.psc")
                if self.chance(0.1):
                    self.file("scr/" + folder + "/notes.txt", b"x\n")
        if layout == "scripts":
            self.screen("scr/scripts/b1.psc")
            if self.chance(0.5):
                self.screen("scr/scripts/scr/b2.psc")
            if self.chance(0.3):
                self.screen("scr/scr_temp/b3.psc")
            if self.chance(0.3):
                self.screen("scr/scr_bak/b4.psc")
        if layout == "unordered":
            # The folder comes first, so its parent may not be there yet.
            self.screen("scr/0erst/a.psc")
            if self.chance(0.5):
                self.screen("scr/0erst/tief/unten/a.psc")
            for name in top:
                if self.chance(0.6):
                    self.screen("scr/" + name)
        if layout == "odd-folder":
            self.screen("scr/x.psc/innen.psc")
            self.screen("scr/x.psc/notes.txt")
        if self.chance(0.03):
            self.screen("geteilt/shared.psc")
            os.symlink("../geteilt", os.path.join(self.root, "scr/verweis"))
            os.symlink("nowhere.psc",
                       os.path.join(self.root, "scr/dangling.psc"))

    def make_leftovers(self) -> None:
        r = self.r
        if self.chance(0.12):
            self.file("scr_temp/a_start.psc", b"left over\n")
            if self.chance(0.5):
                self.file("scr_temp/vorbei.psc", b"from a stopped run\n")
            if self.chance(0.3):
                self.file("scr_temp/rest/notes.txt", b"x\n")
            if self.chance(0.2):
                self.folder("scr_temp/anlage.psc")
        if self.chance(0.15):
            self.file("scr_bak/a_start.psc", b"an older one\n")
            self.file("scr_bak/alt/b.psc", b"an older one\n")
            if self.chance(0.3):
                os.symlink("../mac", os.path.join(self.root, "scr_bak/link"))
        if r.random() < 0.85:
            self.folder("log")

    # -- the chosen names -------------------------------------------------

    def chosen_names(self) -> List[str]:
        r = self.r
        # The names as the decision compares them; a reference in small
        # letters ending in ".lib" is never met under its own name.
        known: List[str] = []
        for shape in self.shapes:
            if shape.file_name not in known:
                known.append(shape.file_name)
        kind = weighted(r, {"all": 66, "some": 14, "cased": 12, "as-written":
                            3, "none-valid": 2, "none": 3})
        if kind == "all":
            return known
        if kind == "some":
            return [name for name in known if r.random() < 0.6]
        if kind == "cased":
            return [r.choice([name.upper(), name.swapcase(), name.lower()])
                    for name in known]
        if kind == "as-written":
            return [shape.reference for shape in self.shapes]
        if kind == "none-valid":
            return ["nothing.plb", "x"]
        return []

    def make(self) -> List[str]:
        os.makedirs(self.root)
        self.make_library()
        self.make_bitmaps()
        self.make_screens()
        self.make_leftovers()
        return self.chosen_names()


def generate(seed: int, folder: str, shapes_file: Optional[str] = None
             ) -> List[str]:
    names = Generator(seed, folder).make()
    if shapes_file is None:
        shapes_file = folder.rstrip("/") + ".shapes"
    with open(shapes_file, "w", encoding="utf-8", newline="\n") as out:
        for name in names:
            out.write(name + "\n")
    return names


def main(arguments: List[str]) -> int:
    parser = argparse.ArgumentParser(description="Make a random project.")
    parser.add_argument("--seed", type=int, required=True)
    parser.add_argument("--shapes", metavar="FILE",
                        help="file for the chosen shape file names")
    parser.add_argument("dir", metavar="DIR")
    options = parser.parse_args(arguments)
    generate(options.seed, options.dir, options.shapes)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
