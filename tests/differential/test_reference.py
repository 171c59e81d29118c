#!/usr/bin/env python3
"""Tests of the reference conversion and of the project generator.

Run with:  python3 -m unittest -v test_reference      (in this folder)
"""

from __future__ import annotations

import hashlib
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import unittest.mock
from typing import Any, Dict, List, Optional, Tuple

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.dont_write_bytecode = True

import generate  # noqa: E402
import reference as ref  # noqa: E402

PSDV = "PSDV;{};{};{};{};5;{};7;8;9;10;{};12"


def psdv(x1: Any, y1: Any, x2: Any, y2: Any, level: Any = 0,
         counted: Any = 1, extra: str = "") -> str:
    line = PSDV.format(x1, y1, x2, y2, counted, level)
    return line + (";" + extra if extra else "")


def text(*lines: str) -> bytes:
    return "".join(line + "\n" for line in lines).encode("latin-1")


def shape_text(*more: str, name: str = "MAC:valve") -> bytes:
    return text("ID;1;Frame", "LIB;valve.plb;1;old;" + name,
                psdv(0, 0, 49, 49), *more)


def tree(folder: str) -> Dict[str, bytes]:
    found = {}
    for base, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(base, name)
            if os.path.islink(path):
                found[os.path.relpath(path, folder)] = \
                    b"link " + os.readlink(path).encode()
            else:
                with open(path, "rb") as file:
                    found[os.path.relpath(path, folder)] = file.read()
    return found


class ProjectCase(unittest.TestCase):
    """A project folder whose whole path is in small letters."""

    def setUp(self) -> None:
        self.base = os.path.join(tempfile.gettempdir(),
                                 "vantrel-ref-%d" % os.getpid())
        shutil.rmtree(self.base, ignore_errors=True)
        self.project = self.base + "/proj"
        os.makedirs(self.project)

    def tearDown(self) -> None:
        shutil.rmtree(self.base)

    def put(self, name: str, content: bytes = b"") -> str:
        path = self.project + "/" + name
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        return path

    def get(self, name: str) -> Optional[bytes]:
        try:
            with open(self.project + "/" + name, "rb") as file:
                return file.read()
        except FileNotFoundError:
            return None

    def has(self, name: str) -> bool:
        return os.path.lexists(self.project + "/" + name)

    def found(self, folder: str) -> List[str]:
        files: List[ref.FileInfo] = []
        ref.find_image_files(self.project + "/" + folder, files)
        return [info.file_path[len(self.project) + 1:] for info in files]

    def run_it(self, *names: str, **options: Any) -> List[Dict[str, Any]]:
        self.run_state = ref.Run(self.project, **options)
        ref.set_filter_names(self.run_state, names)
        ref.convert(self.run_state)
        return self.run_state.events

    @staticmethod
    def reports(events: List[Dict[str, Any]]) -> List[Tuple[str, str]]:
        return [(e["status"], e["error"]) for e in events
                if e["kind"] == "report"]

    @staticmethod
    def logs(events: List[Dict[str, Any]]) -> List[Tuple[int, str]]:
        return [(e["level"], e["message"]) for e in events
                if e["kind"] == "log"]

    def candidate(self, shape: str = "valve.plb", init: str = "KKS:",
                  level: int = 2) -> List[str]:
        return ["ID;1;Frame", "LIB;%s;x;%s;obj_P1" % (shape, init),
                psdv(100, 50, 199, 149, level)]


class Numbers(unittest.TestCase):
    def test_to_int(self) -> None:
        for given, wanted in [
                ("7", 7), ("+5", 5), ("-0", 0), (" 7 ", 7), ("1e3", 0),
                ("nan", 0), ("", 0), ("2147483647", 2147483647),
                ("2147483648", 0), ("-2147483648", -2147483648),
                ("-2147483649", 0), ("--3", 0), ("+-1", 0), ("- 4", 0),
                ("0x10", 0), ("\xa012\xa0", 0), ("\xb2", 0),
                ("0" * 6000 + "9", 9), ("9" * 6000, 0), ("5\x00", 5), ("5\x00x", 5), ("\x005", 0),
                ("\x1c5", 0), ("1.5", 0), ("1,000", 0), ("7\n", 7)]:
            self.assertEqual(ref.to_int(given), wanted, repr(given[:30]))

    def test_wrap(self) -> None:
        self.assertEqual(ref.wrap(2 ** 31), -2 ** 31)
        self.assertEqual(ref.wrap(-2 ** 31 - 1), 2 ** 31 - 1)
        self.assertEqual(ref.wrap(2 * (2 ** 31 - 1)), -2)

    def test_half(self) -> None:
        self.assertEqual([ref.half(v) for v in (3, 2, 1, 0, -1, -2, -3)],
                         [1, 1, 0, 0, 0, -1, -1])

    def test_normalized(self) -> None:
        self.assertEqual(ref.normalized(ref.Rect(10, 0, 0, 5)),
                         (1, 0, 9, 5))
        self.assertEqual(ref.normalized(ref.Rect(0, 10, 5, 0)),
                         (0, 1, 5, 9))
        self.assertEqual(ref.normalized(ref.Rect(10, 0, 9, 5)),
                         (10, 0, 9, 5))
        self.assertEqual(ref.normalized(ref.Rect(10, 0, 8, 5)),
                         (9, 0, 9, 5))

    def test_area(self) -> None:
        self.assertEqual(ref.area(ref.Rect(0, 0, 9, 4)), 50)
        self.assertEqual(ref.area(ref.Rect(0, 0, 10 ** 9, 10 ** 9)),
                         (10 ** 9 + 1) ** 2)
        self.assertEqual(ref.area(ref.Rect(-2 ** 31, 0, 2 ** 31 - 1, 4)), 0)


class RunOverProject(ProjectCase):
    def test_no_image_files(self) -> None:
        self.put("scr/readme.txt", b"x")
        self.put("scr_bak/old.psc", b"x")
        events = self.run_it("valve.plb")
        self.assertEqual(events, [
            {"kind": "progress", "count": 0, "index": 0}, {"kind": "end"}])
        self.assertFalse(self.has("scr"))
        self.assertFalse(self.has("scr_bak"))
        self.assertFalse(self.has("scr_temp"))

    def test_project_below_a_scripts_folder(self) -> None:
        self.project = self.base + "/scripts/proj"
        self.put("scr/a.psc", b"x\n")
        events = self.run_it()
        # The temp and backup folders lie beside the project, without parents.
        self.assertEqual(self.reports(events), [("NO REPLACE", "")])
        self.assertEqual(sorted(os.listdir(self.base)), ["proj", "scripts"])
        self.assertEqual(self.get("scr/a.psc"), b"x\n")

        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", text(*self.candidate()))
        events = self.run_it("valve.plb")
        temp = self.base + "/scr_tempipts/proj/scr_temp/a.psc"
        self.assertEqual(self.reports(events), [
            ("ERROR", "Could not open Temp File " + temp)])
        self.assertEqual(self.logs(events), [
            (3, "Could not open Temp File " + temp)])

        os.makedirs(os.path.dirname(temp))
        os.makedirs(self.base + "/scr_bakipts/proj")
        self.run_it("valve.plb")
        self.assertTrue(os.path.exists(temp))
        self.assertTrue(os.path.exists(
            self.base + "/scr_bakipts/proj/scr_bak/a.psc"))
        self.assertFalse(self.has("scr"))

    def test_temp_parent_missing(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/0sub/a.psc", text(*self.candidate()))
        self.put("scr/0sub/b.psc", b"plain\n")
        events = self.run_it("valve.plb")
        temp = self.project + "/scr_temp/0sub/a.psc"
        self.assertEqual(self.reports(events), [
            ("ERROR", "Could not open Temp File " + temp),
            ("NO REPLACE", "")])
        # The backup failed too, and nothing was there to be copied back.
        self.assertEqual(self.found("scr"),
                         ["scr/0sub/a.psc", "scr/0sub/b.psc"])
        self.assertFalse(self.has("scr_temp"))

    def test_make_folders(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/0sub/deep/a.psc", text(*self.candidate()))
        events = self.run_it("valve.plb", make_folders=True)
        self.assertEqual(self.reports(events), [("REPLACE", "")])
        self.assertEqual(self.found("scr"), ["scr/0sub/deep/a.psc"])
        self.assertEqual(self.get("scr_bak/0sub/deep/a.psc"),
                         text(*self.candidate()))
        self.assertFalse(self.has("scr_temp"))

    def test_copies_never_overwrite(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", b"plain\n")
        self.put("scr/b.psc", text(*self.candidate()))
        self.put("scr_temp/a.psc", b"stale\n")
        self.put("scr_temp/b.psc", b"stale\n")
        self.put("scr_temp/c.psc", b"stale\n")
        self.run_it("valve.plb")
        self.assertEqual(self.get("scr/a.psc"), b"stale\n")
        self.assertIn(b"MAC:valve", self.get("scr/b.psc"))
        self.assertEqual(self.get("scr/c.psc"), b"stale\n")
        self.assertEqual(self.get("scr_bak/a.psc"), b"plain\n")

    def test_copy_back_is_tried_again(self) -> None:
        # The nested folder sorts first, so the backup of its file fails
        # while a left-over temp folder lets the conversion through.
        self.put("scr/0sub/a.psc", b"first\n")
        self.put("scr/b.psc", b"second\n")
        os.makedirs(self.project + "/scr_temp")
        events = self.run_it()
        self.assertEqual(self.logs(events), [
            (1, "!!! Could not copy all files from \\scr_temp folder to "
                "\\scr. Copy them manually !!!")])
        # Nothing is lost: what the backup lacked was saved before "scr"
        # was removed.
        self.assertEqual(self.get("scr_bak/0sub/a.psc"), b"first\n")
        self.assertEqual(self.get("scr_bak/b.psc"), b"second\n")
        self.assertEqual(self.get("scr_temp/0sub/a.psc"), b"first\n")
        self.assertEqual(self.get("scr/b.psc"), b"second\n")
        self.assertFalse(self.has("scr/0sub"))
        self.assertEqual([e["kind"] for e in events][-3:],
                         ["log", "progress", "end"])

    def test_scr_stays_when_it_cannot_be_saved(self) -> None:
        self.put("scr/0sub/a.psc", b"first\n")
        self.put("scr/b.psc", b"second\n")
        os.makedirs(self.project + "/scr_temp")
        self.put("scr_bak", b"a file where a folder should be")
        events = self.run_it()
        self.assertEqual([level for level, _ in self.logs(events)], [1])
        self.assertEqual(self.get("scr/0sub/a.psc"), b"first\n")
        self.assertEqual(self.get("scr/b.psc"), b"second\n")
        self.assertEqual(self.get("scr_temp/b.psc"), b"second\n")

    def test_progress(self) -> None:
        for name in ("a", "B", "c"):
            self.put("scr/%s.psc" % name, b"")
        events = self.run_it()
        self.assertEqual([(e["count"], e["index"]) for e in events
                          if e["kind"] == "progress"],
                         [(3, 0), (3, 1), (3, 2), (3, 3)])
        self.assertEqual([e["path"] for e in events if e["kind"] == "file"],
                         [self.project + "/scr/%s.psc" % name
                          for name in ("a", "B", "c")])
        self.assertEqual(events[-1], {"kind": "end"})

    def test_stopped_run(self) -> None:
        for name in "abc":
            self.put("scr/%s.psc" % name, b"x\n")
        events = self.run_it(stop_before=2)
        self.assertEqual([e["kind"] for e in events],
                         ["progress", "file", "report"] * 2 + ["end"])
        self.assertEqual(self.found("scr_temp"),
                         ["scr_temp/a.psc", "scr_temp/b.psc"])
        self.assertEqual(len(self.found("scr")), 3)

    def test_other_files_are_lost_from_scr(self) -> None:
        self.put("scr/a.psc", b"")
        self.put("scr/a.txt", b"")
        self.run_it()
        self.assertTrue(self.has("scr/a.psc"))
        self.assertFalse(self.has("scr/a.txt"))
        self.assertFalse(self.has("scr_bak/a.txt"))


class ChangeLog(ProjectCase):
    def rows(self) -> List[str]:
        (name,) = os.listdir(self.project + "/log")
        self.assertRegex(
            name, r"^Vantrel_\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d\.csv$")
        return self.get("log/" + name).decode("latin-1").split("\n")

    def one_row(self, **fields: Any) -> str:
        path = self.project + "/x.csv"
        if os.path.exists(path):
            os.remove(path)
        ref.write_change_log(ref.Block(**fields), path)
        with open(path, "rb") as file:
            return file.read().decode("latin-1").split("\n")[1]

    def test_header_once_then_rows(self) -> None:
        os.makedirs(self.project + "/log")
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", text(*self.candidate()))
        self.put("scr/b.psc", b"")
        self.run_it("valve.plb")
        self.assertEqual(self.rows(), [
            "Status; Image File; Shape File; Image-Object; "
            "Replace by Shape-Object; Uminitalisation; Error",
            "REPLACE;%s/scr/a.psc;valve.plb;P1;valve;KKS:;" % self.project,
            "NO REPLACE;%s/scr/b.psc;;;;;" % self.project, ""])

    def test_no_log_folder(self) -> None:
        self.put("scr/b.psc", b"")
        self.run_it()
        self.assertFalse(self.has("log"))

    def test_status(self) -> None:
        self.assertEqual([ref.status_text(s) for s in (0, 1, 2, 3, -1)],
                         ["REPLACE", "NO REPLACE", "ERROR", "REPLACE",
                          "REPLACE"])
        self.assertEqual(self.one_row(), "REPLACE;;;;;;")

    def test_object_columns(self) -> None:
        self.assertEqual(self.one_row(image_object="abcd"), "REPLACE;;;;;;")
        self.assertEqual(self.one_row(image_object="abc"), "REPLACE;;;abc;;;")
        self.assertEqual(self.one_row(image_object="obj_x",
                                      shape_object="MAC:x"),
                         "REPLACE;;;x;;;")
        self.assertEqual(self.one_row(image_object="obj_x",
                                      shape_object="MAC:X"),
                         "REPLACE;;;x;X;;")

    def test_successive_place_markers(self) -> None:
        self.assertEqual(self.one_row(image_file="a%7b", error="E"),
                         "REPLACE;aEb;;;;;E")
        # The marker in the file name takes the value of the next column.
        self.assertEqual(self.one_row(image_file="a%1", shape_file="S"),
                         "REPLACE;aS;;;;;%7")

    def test_control_characters(self) -> None:
        self.assertEqual(self.one_row(init_text="a\r\tb\n\x00\x1f\x7f\x80"),
                         "REPLACE;;;;;a\\r\\tb\\n\\x00\\x1f\\x7f\x80;")

    def test_rows_that_would_be_too_long(self) -> None:
        many = 400
        self.assertEqual(self.one_row(init_text="%7" * many, error="e" * 100),
                         "REPLACE;;;;;" + "e" * 100 * many + ";" + "e" * 100)
        self.assertEqual(self.one_row(init_text="%7" * many, error="e" * many),
                         "REPLACE;;;;;" + "%7" * many + ";" + "e" * many)
        self.assertEqual(self.one_row(init_text="%", error="e" * (1 << 17)),
                         "REPLACE;;;;;%;" + "e" * (1 << 17))

    def test_arg(self) -> None:
        self.assertEqual(ref.arg("%1 %2 %1", "x"), "x %2 x")
        self.assertEqual(ref.arg("%L2 %12 %%2", "x"), "x %12 %x")
        self.assertEqual(ref.arg("% %a", "x"), "% %a")
        self.assertEqual(ref.arg("%0 %1", "x"), "x %1")

    def test_latin1(self) -> None:
        self.assertEqual(self.one_row(image_file="\u03a9\xfc"),
                         "REPLACE;?\xfc;;;;;")

    def test_cleared_block(self) -> None:
        block = ref.Block(status=2, replace=True, error="x",
                          missing_icons=["a"])
        ref.clear_block(block)
        self.assertEqual((block.first_line, block.last_line,
                          block.extra_number, block.status), (-1, -1, -1, 0))
        self.assertEqual(block.rect, (99999, 99999, 0, 0))
        self.assertEqual(block.rect2, (0, 0, 0, 0))
        self.assertEqual(block.rect3, (-99999, -99999, 0, 0))
        self.assertEqual((block.replace, block.error, block.missing_icons),
                         (False, "", []))
        self.assertEqual(ref.Block().rect, (0, 0, -1, -1))


class FileUtilities(ProjectCase):
    def test_remove_dir(self) -> None:
        self.assertTrue(ref.remove_dir(self.project + "/none"))
        self.put("keep/a.txt", b"x")
        self.put("scr_bak/a/b/.hidden", b"x")
        os.mkfifo(self.project + "/scr_bak/fifo")
        os.symlink("../keep", self.project + "/scr_bak/link")
        os.symlink("nowhere", self.project + "/scr_bak/dangling")
        self.assertTrue(ref.remove_dir(self.project + "/scr_bak"))
        self.assertFalse(self.has("scr_bak"))
        self.assertEqual(self.get("keep/a.txt"), b"x")

    def test_remove_dir_stops(self) -> None:
        self.put("t/a/x", b"")
        self.put("t/b/y", b"")
        self.put("t/c", b"")
        really = os.remove

        def refuse(path: bytes) -> None:
            if path.endswith(b"/x"):
                raise PermissionError(path)
            really(path)

        with unittest.mock.patch("os.remove", refuse):
            self.assertFalse(ref.remove_dir(self.project + "/t"))
        self.assertTrue(self.has("t/b/y"))
        self.assertTrue(self.has("t/c"))

    def test_find_image_files(self) -> None:
        for name in ("b.psc", "C.psc", "a.psc.bak", "A2.PSC", ".h.psc",
                     ".dir/x.psc", "x.psc/readme.txt", "bb/z.psc", "d.txt"):
            self.put("scr/" + name)
        os.mkfifo(self.project + "/scr/f.psc")
        os.symlink("nowhere", self.project + "/scr/g.psc")
        os.symlink("b.psc", self.project + "/scr/h.psc")
        os.symlink("..", self.project + "/scr/bb/loop")
        self.put("other/o.psc")
        os.symlink("../other", self.project + "/scr/linked")
        self.assertEqual(self.found("scr"), [
            "scr/a.psc.bak", "scr/b.psc", "scr/bb/z.psc", "scr/C.psc",
            "scr/h.psc", "scr/linked/o.psc", "scr/x.psc/readme.txt"])
        self.assertEqual(self.found("missing"), [])

    def test_move_with_a_scripts_folder(self) -> None:
        self.put("scr/a.psc", b"1")
        self.put("scr/scripts/b.psc", b"2")
        self.assertTrue(ref.move_image_files("/scr", "/scr_bak",
                                             self.project, False))
        self.assertEqual(self.get("scr_bak/a.psc"), b"1")
        self.assertEqual(self.get("scr_bak/scr_bakipts/b.psc"), b"2")
        self.assertFalse(self.has("scr"))

    def test_move_without_intermediate_files(self) -> None:
        self.put("scr/x/y/a.psc", b"1")
        self.assertFalse(ref.move_image_files("/scr", "/scr_bak",
                                              self.project, False))
        self.assertTrue(self.has("scr/x/y/a.psc"))

    def test_move_empty_or_missing(self) -> None:
        self.assertTrue(ref.move_image_files("/scr", "/scr_bak",
                                             self.project, False))
        os.makedirs(self.project + "/scr/a")
        self.assertTrue(ref.move_image_files("/scr", "/scr_bak",
                                             self.project, False))
        self.assertFalse(self.has("scr"))

    def test_every_file_is_attempted(self) -> None:
        self.put("scr/a.psc", b"new")
        self.put("scr/b.psc", b"new")
        self.put("scr_bak/a.psc", b"old")
        self.assertFalse(ref.move_image_files("/scr", "/scr_bak",
                                              self.project, False))
        self.assertEqual(self.get("scr_bak/a.psc"), b"old")
        self.assertEqual(self.get("scr_bak/b.psc"), b"new")
        self.assertTrue(self.has("scr/b.psc"))


class OneImageFile(ProjectCase):
    def test_no_candidates(self) -> None:
        content = b"ID;1;a\r\n  " + psdv(0, 0, 5, 5).encode() + b"\r\n\x00\xff"
        self.put("scr/a.psc", content)
        events = self.run_it("valve.plb")
        self.assertEqual(self.reports(events), [("NO REPLACE", "")])
        self.assertEqual(self.get("scr/a.psc"), content)

    def test_empty_filter(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", b"  head \r\n" + b"\r\n".join(
            line.encode() for line in self.candidate()))
        events = self.run_it()
        self.assertEqual(self.reports(events), [])
        self.assertEqual(self.get("scr/a.psc"),
                         text("head", *self.candidate()))

    def test_name_not_chosen(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", text(*self.candidate()))
        events = self.run_it("pump.plb")
        self.assertEqual(self.reports(events), [])

    def test_fallback_folder(self) -> None:
        self.put("mac/vlo/valve.plb", shape_text("IVG;MAC:valveX;b"))
        self.put("scr/a.psc", text(*self.candidate()))
        events = self.run_it("VALVE.PLB")
        self.assertEqual(self.reports(events), [("REPLACE", "")])
        self.assertEqual(self.get("scr/a.psc"), text(
            "ID;1;Frame", "LIB;valve.plb;1;KKS:;MAC:valve",
            psdv(125, 75, 174, 124, 2), "IVG;KKS:X;b"))

    def test_first_folder_wins(self) -> None:
        self.put("mac/valve.plb", shape_text("TXT;first"))
        self.put("mac/vlo/valve.plb", shape_text("TXT;second"))
        self.put("scr/a.psc", text(*self.candidate()))
        self.run_it("valve.plb")
        self.assertIn(b"first", self.get("scr/a.psc"))

    def test_shape_missing(self) -> None:
        os.makedirs(self.project + "/mac")
        content = text("head", *self.candidate(level=2), "ID;2;x",
                       "LIB;valve.plb;x;K2:;obj_P2", psdv(0, 0, 1, 1, 3))
        self.put("scr/a.psc", content)
        events = self.run_it("valve.plb")
        self.assertEqual(self.reports(events),
                         [("ERROR", "Could not open Shape File")] * 2)
        self.assertEqual(self.logs(events),
                         [(3, "Could not open Shape File valve.plb")] * 2)
        self.assertEqual(self.get("scr/a.psc"), content)
        self.assertEqual(self.run_state.failed_shape_files, ["valve.plb"])

    def test_shape_invalid(self) -> None:
        self.put("mac/valve.plb", b"h1\nh2\n" + shape_text("IY1;a;b"))
        self.put("scr/a.psc", text(*self.candidate()))
        events = self.run_it("valve.plb")
        tail = " [line 6]: IX2... not enough parameters (must be >= 6)"
        self.assertEqual(self.reports(events), [("ERROR", "Shape File" + tail)])
        path = self.project + "/mac/valve.plb"
        self.assertEqual(self.logs(events),
                         [(3, "Shape File " + path + tail)])
        self.assertEqual(self.run_state.failed_shape_files, [path])

    def test_two_missing_icons(self) -> None:
        self.put("mac/valve.plb", text(
            "ID;1;Icon", "LIB;valve.plb;1;old;MAC:valve", psdv(0, 0, 49, 49),
            "DIV;1;2;no1.bmp", "DIV;1;2;yes.bmp", "DIV;1;2;no2.bmp"))
        self.put("bmp/yes.bmp")
        self.put("scr/a.psc", text(*self.candidate()))
        events = self.run_it("valve.plb")
        self.assertEqual(self.reports(events), [
            ("REPLACE", ""), ("ERROR", "Ikon no1.bmp does not exist"),
            ("ERROR", "Ikon no2.bmp does not exist")])
        self.assertEqual([e["shapeObject"] for e in events
                          if e["kind"] == "report"], ["MAC:valve"] * 3)
        written = self.get("scr/a.psc").decode().split("\n")
        self.assertEqual(written[6:], self.candidate() * 2 + [""])

    def test_order_of_report_and_log(self) -> None:
        self.put("scr/a.psc", text("ID;1"))
        self.put("scr/b.psc", text(*self.candidate()))
        events = self.run_it("valve.plb")
        kinds = [e["kind"] for e in events]
        self.assertEqual(kinds, ["progress", "file", "report", "log",
                                 "progress", "file", "log", "report",
                                 "progress", "end"])

    def test_failed_file_is_absent_afterwards(self) -> None:
        self.put("scr/a.psc", text("ID;1"))
        self.put("scr/b.psc", b"")
        events = self.run_it()
        message = "Image File%s [line 1]: ... not enough parameters " \
                  "(must be >= 3)"
        self.assertEqual(self.reports(events)[0], ("ERROR", message % ""))
        self.assertEqual(self.logs(events)[0], (
            3, message % (" " + self.project + "/scr/a.psc")))
        self.assertFalse(self.has("scr/a.psc"))
        self.assertTrue(self.has("scr/b.psc"))
        self.assertTrue(self.has("scr_bak/a.psc"))

    def test_sections_before_the_first_object_are_kept(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", text("head", "ID;8;x", "TXT;8", "ID;9;x",
                                   *self.candidate()))
        self.run_it("valve.plb")
        self.assertTrue(self.get("scr/a.psc").startswith(
            b"head\nID;8;x\nTXT;8\nID;9;x\nID;1;Frame\n"))

    def test_position_and_rect_in_the_report(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", text(*self.candidate(), "ID;2;x",
                                   psdv(0, 0, 300, 300, 2)))
        events = self.run_it("valve.plb")
        report = [e for e in events if e["kind"] == "report"][0]
        self.assertEqual(report["rect3"], [100, 50, 0, 0])
        self.assertEqual(report["rect"], [0, 0, 300, 300])

    def test_second_object_after_a_failed_check(self) -> None:
        # The lines that a bad shape leaves behind must not matter.
        self.put("mac/bad.plb", text("ID;1;x", "PSDV;1", "PNT;x"))
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", text(
            *self.candidate("bad.plb", level=2),
            *self.candidate("valve.plb", level=3)))
        events = self.run_it("bad.plb", "valve.plb")
        self.assertEqual([s for s, _ in self.reports(events)],
                         ["ERROR", "REPLACE"])


class ReadingAndFieldChecks(ProjectCase):
    def lines(self, content: bytes) -> List[str]:
        lines: List[str] = []
        self.assertEqual(ref.read_image_file(self.put("x", content), lines),
                         (True, ""))
        return lines

    def test_lines(self) -> None:
        self.assertEqual(self.lines(b""), [])
        self.assertEqual(self.lines(b"\n"), [""])
        self.assertEqual(self.lines(b"a\nb"), ["a", "b"])
        self.assertEqual(self.lines(b"a\nb\n"), ["a", "b"])
        self.assertEqual(self.lines(b" \ta b \r\n\v\f\r\nc\rd\x00\xff\xa0\n"),
                         ["a b", "", "c\rd\x00\xff\xa0"])

    def test_not_there(self) -> None:
        lines = ["kept"]
        self.assertEqual(
            ref.read_image_file(self.project + "/none", lines),
            (False, "Could not open Image File"))
        self.assertEqual(lines, ["kept"])

    def test_points(self) -> None:
        check = ref.check_field_count
        self.assertEqual(check("PNT", 4, 4, 9, True, 0), (True, ""))
        self.assertEqual(check("PNT", 4, 6, 9, True, 0), (
            False, "Image File [line 11]: PNT... not enough parameters "
                   "(must be >= 6)"))
        self.assertEqual(check("PNT", 6, 4, 9, True, 0), (
            True, "Image File [line 10]: PNT... not enough parameters "
                  "(must be == 4)"))
        self.assertEqual(check("PNT", 2, 4, 4, False, 100), (
            False, "Shape File [line 206]: PNT... not enough parameters "
                   "(must be >= 4)"))

    def test_empty_tag(self) -> None:
        self.assertEqual(ref.check_field_count("", 2, 3, 2, True, 0), (
            False, "Image File [line 3]: ... not enough parameters "
                   "(must be >= 3)"))

    def test_expanded_message(self) -> None:
        run = ref.Run(self.project)
        self.assertEqual(ref.report_image_file_error(
            run, "/p/scr/a.psc", "Could not open Image File"),
            "Could not open Image File /p/scr/a.psc")
        self.assertEqual(run.events[0]["error"], "Could not open Image File")


class ShapeLineChecks(unittest.TestCase):
    def check(self, *lines: str) -> Tuple[bool, str]:
        return ref.check_shape_lines(list(lines), 0)

    def assert_fails(self, line: str, tag: str, required: int,
                     number: int = 1) -> None:
        self.assertEqual(self.check(line), (
            False, "Shape File [line %d]: %s... not enough parameters "
                   "(must be >= %d)" % (number, tag, required)))

    def test_table(self) -> None:
        self.assertEqual(self.check(), (True, ""))
        self.assertEqual(self.check("IVGN;a"), (True, ""))
        self.assert_fails("IY1;a;b", "IX2", 6)
        self.assert_fails("ITXN;2;x;a;b", "ITXN", 9)
        self.assert_fails("ITXN;1", "ITXN", 3)
        self.assertEqual(self.check("ITXN;abc;x"), (True, ""))
        self.assertEqual(self.check("PNT;x;0"), (True, ""))
        self.assertEqual(self.check("pnt;9"), (True, ""))
        self.assertEqual(self.check(""), (True, ""))
        self.assert_fails("IBGN", "IBG", 2)
        self.assert_fails("ITCN", "ITC", 2)
        self.assert_fails("ITA", "ITCN", 2)
        self.assert_fails("ID;7", "", 3)
        self.assert_fails("PNT;2;0;1", "PNT", 4, 2)
        self.assert_fails("LIB;a;b", "LIB", 4)
        self.assert_fails("ISA" + ";a" * 19, "ISA", 21)

    def test_points(self) -> None:
        self.assertEqual(self.check("PNT;2;0;10;20;30;40"), (True, ""))
        self.assertEqual(self.check("PNT;2;0;10;20;30;40;"), (
            True, "Shape File [line 1]: PNT... not enough parameters "
                  "(must be == 4)"))

    def test_wrapped_products(self) -> None:
        self.assertTrue(self.check("PNT;2147483647;0")[0])
        self.assertTrue(self.check("PNT;-2147483647;0;1;2")[0])
        self.assertFalse(self.check("PNT;-2147483647;0;1")[0])
        self.assertTrue(self.check("ITXN;1431655765;a")[0])

    def test_image_side(self) -> None:
        check = ref.check_image_lines
        self.assertTrue(check(["IVG", "ITXN", "ISA"])[0])
        self.assertTrue(check(["PSDV" + ";1" * 11])[0])
        self.assertFalse(check(["PSDV" + ";1" * 10])[0])
        self.assertFalse(check(["LIB;a;b;c"])[0])
        self.assertEqual(check(["x", "PNT;2;0"])[1],
                         "Image File [line 3]: PNT... not enough parameters "
                         "(must be >= 4)")
        self.assertEqual(check(["ID;1"])[1],
                         "Image File [line 1]: ... not enough parameters "
                         "(must be >= 3)")

    def test_required_is_not_carried_over(self) -> None:
        self.assertTrue(self.check("PNT;0;0", "PNT;1;0;1;1", "ITXN;0;a",
                                   "ITXN;1;a;b;c;d")[0])


class Placing(unittest.TestCase):
    TARGET = ref.Rect(100, 50, 199, 149)
    SHAPE = ref.Rect(0, 0, 49, 49)

    def place(self, line: str, target: ref.Rect = TARGET,
              shape: ref.Rect = SHAPE, level: int = 3,
              extra: str = "") -> str:
        lines = [line]
        ref.place_shape_lines(
            lines, ref.Block(rect=target, extra_number=level,
                             extra_text=extra), ref.Block(rect=shape))
        return lines[0]

    def test_displacements(self) -> None:
        self.assertEqual(self.place("PNT;2;0;0;0;49;49"),
                         "PNT;2;0;100;50;149;99")
        self.assertEqual(self.place(psdv(0, 0, 49, 49)),
                         psdv(125, 75, 174, 124, 3))

    def test_left_edge_is_kept_inside(self) -> None:
        self.assertEqual(
            self.place(psdv(0, 0, 49, 39), ref.Rect(-10, -10, 39, 39)),
            psdv(0, -10, 49, 29, 3))

    def test_fields_after_the_thirteenth(self) -> None:
        self.assertEqual(self.place(psdv(0, 0, 49, 49, extra="a;b")),
                         psdv(125, 75, 174, 124, 3))
        self.assertEqual(self.place(psdv(0, 0, 49, 49, extra="a"),
                                    extra="x;y"),
                         psdv(125, 75, 174, 124, 3, extra="x;y"))

    def test_points_that_do_not_count(self) -> None:
        for line in ("PNT;1;0;1;1;", "PNT;0;0", "PNT;x", "PNT;1;0;5"):
            self.assertEqual(self.place(line), line)
        self.assertEqual(self.place("PNT;-2147483647;0;1;1"),
                         "PNT;-2147483647;0;101;51")

    def test_other_lines(self) -> None:
        for line in ("", "IVG;a", "psdv;1;2", "LIB;a;b;c;d", "ID;1;x"):
            self.assertEqual(self.place(line), line)

    def test_wrapping(self) -> None:
        self.assertEqual(self.place("PNT;1;0;2147483647;-0"),
                         "PNT;1;0;-2147483549;50")

    def test_odd_spans(self) -> None:
        # A cleared rectangle has a negative width; halves go toward zero.
        self.assertEqual(ref.centre(99999, 0), 99999 - 49999)
        self.assertEqual(ref.centre(0, -1), 0)


class Rebasing(unittest.TestCase):
    def rebase(self, line: str, source: str = "C:/lib",
               target: str = "D:/proj", x: int = 5, y: int = 7) -> str:
        lines = [line]
        ref.rebase_shape_lines(lines, source, target, x, y)
        return lines[0]

    def test_prefix(self) -> None:
        change = lambda t: ref.replace_path_prefix(t, "C:/lib", "D:/proj")
        self.assertEqual(change("C:/lib/pic.bmp"), "D:/proj/pic.bmp")
        self.assertEqual(change("System:pic.bmp"), "System:pic.bmp")
        self.assertEqual(change("E:/x.bmp"), "E:/x.bmp")
        self.assertEqual(change("C:/library/x.bmp"), "D:/projrary/x.bmp")
        self.assertEqual(change("C:/lib"), "D:/proj")
        self.assertEqual(ref.replace_path_prefix("a", "", "p"), "pa")
        self.assertEqual(ref.replace_path_prefix("", "", "p"), "p")
        self.assertEqual(ref.replace_path_prefix("System:", "", "p"),
                         "System:")
        self.assertEqual(
            ref.replace_path_prefix("System:x", "System:", "p"), "System:x")

    def test_join(self) -> None:
        self.assertEqual(ref.join_fields([]), "")
        for line in ("", ";", "a;;b;", "a"):
            self.assertEqual(ref.join_fields(ref.split_fields(line)), line)

    def test_every_tag(self) -> None:
        o, n = "C:/lib", "D:/proj"
        for line, fields in [
                ("IVG;o;o", [1]), ("IBG;o;o", [1]), ("ITC;o;o", [1]),
                ("IVGN;o;o;o", [2]), ("IBGN;o;o;o", [2]),
                ("ITCN;o;o;o", [2]), ("ITA;o;o", [1]), ("ITAX;o;o", [1]),
                ("IDMS;o;o", [1]), ("ITX1;o;o;o;o", [1, 2, 3]),
                ("ITX2" + ";o" * 8, [1, 2, 3, 4, 5, 6]),
                ("ITXN;2" + ";o" * 8, [2, 5, 8]),
                ("ITXN;1" + ";o" * 8, [2, 5]), ("ITXN;0" + ";o" * 8, [2]),
                ("ITXN;-3" + ";o" * 8, [2]),
                ("ITXN;1431655765" + ";o" * 4, [2, 5]),
                ("IIK1;o;o", [1]), ("IIK2;o;o;o", [1, 2]),
                ("IIKN;o;o;o", [2]), ("ISB;o;o", [1]),
                ("ISA" + ";o" * 30, [1, 2, 4, 6, 8, 14, 20, 29]),
                ("ISA" + ";o" * 20, [1, 2, 4, 6, 8, 14, 20]),
                ("IVGN;o", []), ("IBW" + ";o" * 8, [7]), ("IVGX;o", []),
                ("TXT;o", []), ("ivg;o", []), ("DIV;o;o;o", [])]:
            given = line.split(";")
            wanted = [n if i in fields else (o if f == "o" else f)
                      for i, f in enumerate(given)]
            given = [o if f == "o" else f for f in given]
            self.assertEqual(self.rebase(";".join(given)), ";".join(wanted))

    def test_lib(self) -> None:
        self.assertEqual(self.rebase("LIB;a;b;c;d"), "LIB;a;b;D:/proj;d")
        self.assertEqual(self.rebase("LIB;a;b;D:/proj"), "LIB;a;b;D:/proj")

    def test_shifted_numbers(self) -> None:
        self.assertEqual(self.rebase("IX1;C:/lib;;C:/lib;10;x"),
                         "IX1;D:/proj;;D:/proj;15;5")
        self.assertEqual(self.rebase("IX2;a;b;c;C:/lib:1;-9;z"),
                         "IX2;a;b;c;5;-4;z")
        self.assertEqual(self.rebase("IY1;a;b;c;1;2"), "IY1;a;b;c;8;9")
        self.assertEqual(self.rebase("IY2;a;b;c;2147483647;2"),
                         "IY2;a;b;c;-2147483642;9")
        # Without a colon the fields 2 and 3 are no references.
        self.assertEqual(self.rebase("IX1;lib;lib;l:ib;0;0", "l", "N"),
                         "IX1;Nib;lib;N:ib;5;5")


class ShapeFiles(ProjectCase):
    def parse(self, *lines: str) -> ref.Block:
        block = ref.Block(missing_icons=["stale"])
        self.assertTrue(ref.parse_shape_lines(self.project, list(lines),
                                              block))
        return block

    def test_catalogue_is_refused(self) -> None:
        path = self.put("mac/x.cat.plb", shape_text())
        lines = ["kept"]
        self.assertEqual(ref.open_shape_file(ref.Run(self.project), path,
                                             lines),
                         (False, "Could not open Shape File"))
        self.assertEqual(lines, ["kept"])

    def test_header_and_offset(self) -> None:
        run = ref.Run(self.project)
        lines: List[str] = []
        path = self.put("s.plb", b"a\n\nb\nID;1;x\n\n y \n")
        self.assertTrue(ref.open_shape_file(run, path, lines)[0])
        self.assertEqual(lines, ["ID;1;x", "", "y"])
        self.assertEqual(run.shape_line_offset, 3)
        for content in (b"", b"LIB;a\n"):
            path = self.put("t.plb", content)
            self.assertTrue(ref.open_shape_file(run, path, lines)[0])
            self.assertEqual(lines, [])
            self.assertEqual(run.shape_line_offset, -1)
        self.assertFalse(ref.open_shape_file(run, self.project, lines)[0])

    def test_empty_shape(self) -> None:
        block = ref.Block()
        ref.clear_block(block)
        self.assertEqual(self.parse(), block)

    def test_icon_toggle(self) -> None:
        lines = ["ID;1;Icon", psdv(1, 1, 2, 2), psdv(3, 3, 4, 4)]
        self.assertEqual(self.parse(*lines).rect2, (1, 1, 2, 2))
        lines += ["ID;2;Frame", psdv(9, 9, 9, 9), "ID;3;Icon",
                  psdv(5, 5, 6, 6)]
        self.assertEqual(self.parse(*lines).rect2, (5, 5, 6, 6))

    def test_largest_rect(self) -> None:
        block = self.parse("ID;1;x", psdv(0, 0, 9, 9), psdv(5, 5, 14, 14),
                           "ID;2;Text", psdv(0, 0, 99, 99),
                           "ID;3;icon", psdv(0, 0, 50, 50, counted="0"),
                           psdv(0, 0, 50, 50, counted="y"))
        self.assertEqual(block.rect, (0, 0, 9, 9))
        self.assertEqual(self.parse(psdv(10, 0, 0, 5)).rect, (1, 0, 9, 5))
        self.assertEqual(
            self.parse(psdv(0, 0, 4, 4, counted=-7)).rect, (0, 0, 4, 4))

    def test_name(self) -> None:
        self.assertEqual(self.parse("LIB;a;b;c;one", "LIBX;a;b;c;two")
                         .image_object, "two")
        self.assertEqual(self.parse("LIB;a;b;c").image_object, "")

    def test_icons(self) -> None:
        self.put("bmp/a.bmp")
        self.assertEqual(
            self.parse("DIV;1;2;no.bmp", "ID;1;Frame", "DIV;1;2;no.bmp",
                       "ID;1;Icon", "DIV;1;2;a.bmp", "DIV;1;2;A.BMP",
                       "DIV;1;2;no.bmp", "DIV;1;2;no.bmp").missing_icons,
            ["A.BMP", "no.bmp", "no.bmp"])

    def test_bitmap_folders(self) -> None:
        find = ref.find_file_in_bmp_folders
        self.put("bmp_old/deep/er/d.bmp")
        self.put("BMP/up.bmp")
        self.put("bmp/Gross/g.bmp")
        self.put("bmp/.h/h.bmp")
        self.put("grafik/bmp/x.bmp")
        self.put("top.bmp")
        os.symlink("..", self.project + "/bmp/loop")
        self.assertTrue(find(self.project, "d.bmp"))
        for name in ("up.bmp", "g.bmp", "h.bmp", "x.bmp", "gone.bmp"):
            self.assertFalse(find(self.project, name), name)
        # The folder itself answers to an empty name.
        self.assertTrue(find(self.project, ""))

    def test_bitmap_in_a_project_with_capitals(self) -> None:
        self.project = self.base + "/Proj"
        self.put("bmp/a.bmp")
        self.assertFalse(ref.find_file_in_bmp_folders(self.project, "a.bmp"))

    def test_start_folder_is_no_place_to_look(self) -> None:
        self.project = self.base + "/bmpproj"
        self.put("a.bmp")
        self.put("sub/b.bmp")
        self.assertFalse(ref.find_file_in_bmp_folders(self.project, "a.bmp"))
        self.assertTrue(ref.find_file_in_bmp_folders(self.project, "b.bmp"))


class Objects(unittest.TestCase):
    def split(self, *lines: str) -> List[ref.Block]:
        objects: List[ref.Block] = []
        self.assertTrue(ref.split_objects("f", list(lines), objects))
        return objects

    def ranges(self, *lines: str) -> List[Tuple[int, int, bool]]:
        return [(b.first_line, b.last_line, b.replace)
                for b in self.split(*lines)]

    def test_nothing(self) -> None:
        self.assertEqual(self.ranges(), [])
        self.assertEqual(self.ranges("x", psdv(0, 0, 1, 1)), [])

    def test_head(self) -> None:
        self.assertEqual(self.ranges("ID;1;x", psdv(0, 0, 1, 1)),
                         [(0, -1, False), (0, 1, False)])
        self.assertEqual(self.ranges("h", "ID;1;x", psdv(0, 0, 1, 1)),
                         [(0, 0, False), (1, 2, False)])

    def test_only_sections_without_rectangle(self) -> None:
        self.assertEqual(self.ranges("h", "ID;1;x", "ID;2;x"),
                         [(0, 0, False)])

    def test_sections_before_the_first_object(self) -> None:
        self.assertEqual(
            self.ranges("h", "ID;1;x", "a", "ID;2;x", "ID;3;x",
                        psdv(0, 0, 1, 1)),
            [(0, 0, False), (1, 3, False), (4, 5, False)])

    def test_levels(self) -> None:
        lib = "LIB;v.plb;x;i;n"
        lines = ["ID;1;x", psdv(0, 0, 1, 1, 0),
                 "ID;2;x", psdv(0, 0, 1, 1, 0),
                 "ID;3;x", lib, psdv(0, 0, 1, 1, 4), "ID;4;x",
                 psdv(0, 0, 1, 1, 4), "ID;5;x", "tail",
                 "ID;6;x", lib, psdv(0, 0, 1, 1, 5),
                 "ID;7;x", psdv(0, 0, 1, 1, 6)]
        self.assertEqual(self.ranges(*lines), [
            (0, -1, False), (0, 1, False), (2, 3, False), (4, 10, True),
            (11, 13, True), (14, 15, True)])

    def test_candidate_rule(self) -> None:
        def first(*lines: str) -> bool:
            return self.split("ID;1;x", *lines, "ID;2;x",
                              psdv(0, 0, 1, 1, 0))[1].replace
        rect = psdv(0, 0, 1, 1, 1)
        self.assertTrue(first("LIB;v;x;i;n", rect))
        self.assertFalse(first("LIB;v;x;i;n", "", rect))
        self.assertFalse(first("LIB;;x;i;n", rect))
        self.assertFalse(first("LIBX;v;x;i;n", rect))
        self.assertFalse(first("LIB;v;x;i;n", psdv(0, 0, 1, 1, 0)))
        self.assertFalse(first("LIB;v;x;i;n", psdv(0, 0, 1, 1, -1)))

    def test_last_object_needs_no_lib_line(self) -> None:
        self.assertTrue(self.split("ID;1;x", psdv(0, 0, 1, 1, 1))[1].replace)
        self.assertFalse(self.split("ID;1;x", "LIB;v;x;i;n",
                                    psdv(0, 0, 1, 1, 0))[1].replace)

    def test_extra_text(self) -> None:
        one = self.split("ID;1;x", psdv(0, 0, 1, 1, 1, extra="a;b;"))[1]
        self.assertEqual((one.extra_number, one.extra_text), (1, "a;b;"))
        one = self.split("ID;1;x", psdv(0, 0, 1, 1, 0, extra="a"))[1]
        self.assertEqual(one.extra_text, "")

    def test_other_level_in_the_same_section(self) -> None:
        self.assertEqual(
            self.ranges("ID;1;x", psdv(0, 0, 1, 1, 1), psdv(0, 0, 1, 1, 2),
                        "ID;2;x", psdv(0, 0, 1, 1, 0),
                        psdv(0, 0, 1, 1, 0)),
            [(0, -1, False), (0, 2, False), (3, 5, False)])

    def test_level_changes_after_a_second_section(self) -> None:
        self.assertEqual(
            self.ranges("ID;1;x", psdv(0, 0, 1, 1, 1), "ID;2;x",
                        psdv(0, 0, 1, 1, 1), psdv(0, 0, 1, 1, 2)),
            [(0, -1, False), (0, 1, False), (2, 4, True)])

    def test_gathering(self) -> None:
        def block(first: int, last: int, level: int,
                  replace: bool) -> ref.Block:
            return ref.Block(first, last, level, replace=replace)
        lines = list("habcdefgijk")
        objects = [block(0, 0, -1, False), block(1, 3, 1, True),
                   block(4, 4, 2, True), block(5, 6, 1, False),
                   block(7, 7, 0, False), block(8, 9, 1, True),
                   block(10, 10, 2, False)]
        ref.gather_scattered_objects(lines, objects)
        self.assertEqual("".join(lines), "habefijckdg")
        self.assertEqual([(b.first_line, b.last_line, b.extra_number)
                          for b in objects],
                         [(0, 0, -1), (1, 7, 1), (8, 9, 2), (10, 10, 0)])

    def test_gathering_with_an_empty_head(self) -> None:
        lines = ["a", "b"]
        objects = [ref.Block(0, -1, -1), ref.Block(0, 1, 3, replace=True)]
        ref.gather_scattered_objects(lines, objects)
        self.assertEqual([(b.first_line, b.last_line) for b in objects],
                         [(0, -1), (0, 1)])

    def read(self, *lines: str) -> ref.Block:
        block = ref.Block()
        ref.clear_block(block)
        block.first_line, block.last_line = 0, len(lines) - 1
        block.replace = True
        ref.read_shape_references(list(lines), [block])
        return block

    def test_references(self) -> None:
        block = self.read("LIB;valve.lib;x;init;name", psdv(5, 6, 1, 2))
        self.assertEqual((block.shape_file, block.init_text,
                          block.image_object, block.replace),
                         ("valve.plb", "init", "name", True))
        self.assertEqual(block.rect3, (2, 3, 0, 0))
        self.assertEqual(self.read("LIB;Valve.LIB;x;i;n").shape_file,
                         "Valve.LIB")
        self.assertEqual(self.read("LIB;a.lib.lib;x;i;n").shape_file,
                         "a.plb.plb")
        self.assertFalse(self.read("LIB;a;x;;n").replace)
        self.assertFalse(self.read("LIB;a;x;i;n", "LIB;a;x;;n").replace)
        self.assertTrue(self.read("LIB;a;x;;n", "LIB;a;x;i;n").replace)

    def test_position(self) -> None:
        self.assertEqual(self.read("x").rect3, (-99999, -99999, 0, 0))
        self.assertEqual(
            self.read(psdv(7, 8, 9, 9), psdv(0, 0, 99, 99)).rect3,
            (7, 8, 0, 0))

    def test_not_a_candidate(self) -> None:
        block = ref.Block(0, 0, shape_file="kept")
        ref.read_shape_references(["LIB;a;b;c;d"], [block])
        self.assertEqual((block.shape_file, block.replace), ("kept", False))

    def test_no_counted_rectangle(self) -> None:
        self.assertEqual(self.read(psdv(0, 0, 9, 9, counted=0)).rect,
                         (99999, 99999, 0, 0))


class Decision(ProjectCase):
    def convert_one(self, reference_text: str, init: str, chosen: List[str]
                    ) -> List[Tuple[str, str]]:
        self.put("scr/a.psc", text(*self.candidate(reference_text, init)))
        return self.reports(self.run_it(*chosen))

    def test_empty_init_text(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.assertEqual(self.convert_one("valve.plb", "", ["valve.plb"]),
                         [("NO REPLACE", "")])

    def test_letter_case_and_lib(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.assertEqual(self.convert_one("valve.lib", "i", ["Valve.plb"]),
                         [("REPLACE", "")])
        self.assertEqual(self.convert_one("valve.lib", "i", ["valve.lib"]),
                         [])
        self.assertEqual(self.convert_one("Valve.LIB", "i", ["valve.lib"]),
                         [("ERROR", "Could not open Shape File")])

    def test_all_shapes(self) -> None:
        self.put("scr/a.psc", text(*self.candidate("b.lib", level=2),
                                   *self.candidate("a.plb", level=3),
                                   *self.candidate("c.plb", "", level=4)))
        self.put("scr/b.psc", text(*self.candidate("d.plb"), "ID;1"))
        self.assertEqual(ref.all_shape_names(self.project),
                         ["a.plb", "b.plb"])

    def test_shape_name_as_prefix(self) -> None:
        self.put("mac/v.plb", text("ID;1;x", "LIB;v.plb;1;old",
                                   "ISB;a", psdv(0, 0, 49, 49)))
        self.put("scr/a.psc", text(*self.candidate("v.plb", "K:")))
        self.run_it("v.plb")
        self.assertEqual(self.get("scr/a.psc"),
                         text("ID;1;x", "LIB;v.plb;1;K:", "ISB;K:a",
                              psdv(125, 75, 174, 124, 2)))

    def test_icon_name_that_looks_like_a_message(self) -> None:
        self.put("mac/valve.plb", text("ID;1;Icon", psdv(0, 0, 9, 9),
                                       "DIV;;;Shape File.bmp"))
        self.put("scr/a.psc", text(*self.candidate()))
        events = self.run_it("valve.plb")
        self.assertEqual(self.logs(events), [
            (3, "Ikon Shape File Shape File.bmp.bmp does not exist")])


class CommandLineAndGenerator(ProjectCase):
    def digest(self, folder: str) -> str:
        found = tree(folder)
        summary = hashlib.sha256()
        for name in sorted(found):
            summary.update(name.encode() + b"\0" + found[name] + b"\0")
        return summary.hexdigest()

    def test_same_seed_same_project(self) -> None:
        for seed in range(12):
            names = []
            digests = []
            for name in ("one", "two"):
                folder = "%s/%s%d" % (self.base, name, seed)
                names.append(generate.generate(seed, folder))
                digests.append(self.digest(folder))
            self.assertEqual(names[0], names[1])
            self.assertEqual(digests[0], digests[1])

    def test_hash_order_does_not_matter(self) -> None:
        digests = []
        for hash_seed in ("1", "2"):
            folder = self.base + "/h" + hash_seed
            subprocess.run(
                [sys.executable, "-B", HERE + "/generate.py", "--seed", "5",
                 folder], check=True,
                env=dict(os.environ, PYTHONHASHSEED=hash_seed))
            digests.append(self.digest(folder))
            self.assertTrue(os.path.exists(folder + ".shapes"))
        self.assertEqual(digests[0], digests[1])

    def test_command_line(self) -> None:
        self.put("mac/valve.plb", shape_text())
        self.put("scr/a.psc", text(*self.candidate()))
        report = self.base + "/events"
        subprocess.run([sys.executable, "-B", HERE + "/reference.py",
                        self.project, "--all-shapes", "--report", report],
                       check=True)
        with open(report) as file:
            events = [json.loads(line) for line in file]
        self.assertEqual([e["kind"] for e in events],
                         ["progress", "file", "report", "progress", "end"])
        self.assertEqual(sorted(events[2]), sorted([
            "kind", "status", "imageFile", "shapeFile", "imageObject",
            "shapeObject", "initText", "error", "rect3", "level", "rect", "rect2"]))
        subprocess.run([sys.executable, "-B", HERE + "/reference.py",
                        self.project, "--shape", "x", "valve.plb",
                        "--report", report], check=True)
        with open(report) as file:
            self.assertIn('"REPLACE"', file.read())

    def test_many_objects_are_replaced(self) -> None:
        replaced = total = 0
        for seed in range(40):
            folder = "%s/g%d" % (self.base, seed)
            names = generate.generate(seed, folder)
            files: List[ref.FileInfo] = []
            ref.find_image_files(folder + "/scr", files)
            for info in files:
                lines: List[str] = []
                objects: List[ref.Block] = []
                ref.read_image_file(info.file_path, lines)
                if ref.check_image_lines(lines)[0]:
                    ref.split_objects(info.file_path, lines, objects)
                    total += len(objects) - 1
            run = ref.Run(folder)
            ref.set_filter_names(run, names)
            ref.convert(run)
            replaced += self.reports(run.events).count(("REPLACE", ""))
        self.assertGreater(replaced, 0.3 * total)


if __name__ == "__main__":
    unittest.main()
