#!/usr/bin/env python3
"""Tests of the benchmark's generator and driver. VANTREL_BUILD_DIR names the build to try them on."""

from __future__ import annotations

import dataclasses
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

BENCH = pathlib.Path(__file__).resolve().parents[2] / "bench"
sys.path.insert(0, str(BENCH))
sys.dont_write_bytecode = True

import bench  # noqa: E402
import experiments  # noqa: E402
import generate  # noqa: E402
import processes  # noqa: E402
import report  # noqa: E402
from generate import Settings  # noqa: E402

ROUNDS = 2
MEASURES = set("ABCDEFGHIJ")


def contents(folder: pathlib.Path) -> dict[str, bytes]:
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class FolderCase(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory(prefix="vantrel-bench-test-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)


class GeneratorTest(FolderCase):
    def make(self, name: str, **settings: object) -> tuple[dict[str, int], dict[str, bytes]]:
        facts = generate.make(self.folder / name, Settings(**settings))
        return facts, contents(self.folder / name)

    def test_makes_the_same_bytes_again(self) -> None:
        settings = {"files": 5, "missing": 0.5, "icons": 2, "bitmap_folders": 3}
        self.assertEqual(self.make("a", **settings), self.make("b", **settings))

    def test_tells_what_it_made(self) -> None:
        facts, files = self.make("a", files=70, objects=6, variety=3, folders=7)
        screens = [content for name, content in files.items() if name.startswith("scr/")]
        self.assertEqual(facts["files"], len(screens))
        self.assertEqual(facts["bytes"], sum(map(len, screens)))
        self.assertEqual(facts["lines"], sum(content.count(b"\n") for content in screens))
        self.assertEqual(facts["replaced"], sum(content.count(b"\nLIB;") for content in screens))
        self.assertEqual(facts["replaced"], 70 * 3)

    def test_makes_screens_of_about_20_kilobytes(self) -> None:
        facts, _ = self.make("a", files=20, objects=18)
        self.assertTrue(19_000 < facts["bytes"] / facts["files"] < 22_500, facts)

    def test_counts_screens_without_placed_objects(self) -> None:
        facts, _ = self.make("a", files=4, share=0.0)
        self.assertEqual((facts["replaced"], facts["not_replaced"], facts["errors"]), (0, 4, 0))

    def test_counts_objects_of_missing_shapes(self) -> None:
        facts, files = self.make("a", files=2, objects=20, share=1.0, missing=0.25)
        self.assertEqual((facts["replaced"], facts["errors"]), (30, 10))
        self.assertEqual(sum(content.count(b"LIB;gone") for content in files.values()), 10)

    def test_counts_objects_that_share_a_level_once(self) -> None:
        facts, _ = self.make("a", files=1, objects=40, share=1.0, levels=10)
        self.assertEqual(facts["replaced"], 10)

    def test_makes_pictures_of_the_size_of_icons(self) -> None:
        def bytes_of_library(name: str, **settings: object) -> int:
            _, files = self.make(name, files=1, shapes=2, **settings)
            return sum(len(content) for path, content in files.items() if path.startswith("mac/"))

        with_icons = bytes_of_library("icons", icons=4)
        self.assertEqual(bytes_of_library("pictures", pictures=4), with_icons)
        self.assertLess(bytes_of_library("neither"), with_icons)


class DriverTest(FolderCase):
    def run_driver(self, *arguments: object) -> subprocess.CompletedProcess[str]:
        command = [sys.executable, "-B", BENCH / "bench.py", "--quick", "--rounds", ROUNDS,
                   "--folders", self.folder, "--build", os.environ["VANTREL_BUILD_DIR"], *arguments]
        return subprocess.run(list(map(str, command)), text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, check=False)

    def test_measures_everything_in_one_go(self) -> None:
        results, tables = self.folder / "results.json", self.folder / "results.md"
        done = self.run_driver("--json", results, "--markdown", tables)
        self.assertEqual(done.returncode, 0, done.stderr)
        written = json.loads(results.read_text())

        verdicts = [verdict for result in written["results"] for verdict in result["verdicts"]]
        self.assertEqual({verdict["measure"] for verdict in verdicts}, MEASURES)
        for verdict in verdicts:
            self.assertEqual(len(verdict["figures"]), ROUNDS)
            self.assertGreaterEqual(min(verdict["figures"]), 0)
        for result in written["results"]:
            for readings in result["readings"].values():
                self.assertEqual(len(readings), ROUNDS)
                self.assertTrue(all(reading["cost"]["seconds"] > 0 for reading in readings))
                self.assertTrue(all(reading["cost"]["peak_bytes"] > 1e6 for reading in readings))
        self.assertTrue({"processor", "cores", "kernel", "compiler", "Qt", "commit"} <= set(written["machine"]))
        for text in (done.stdout, tables.read_text()):
            for verdict in verdicts:
                self.assertIn(verdict["text"], text)

    def test_leaves_nothing_behind(self) -> None:
        self.assertEqual(self.run_driver("--measures", "B").returncode, 0)
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_ends_when_a_run_does_not_do_its_work(self) -> None:
        done = self.run_driver("--measures", "A", "--program", "/bin/true")
        self.assertEqual(done.returncode, 1)
        self.assertIn("The benchmark was ended: update left out reports", done.stderr)
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_ends_when_a_run_fails(self) -> None:
        done = self.run_driver("--measures", "A", "--program", "/bin/false")
        self.assertEqual(done.returncode, 1)
        self.assertIn("The benchmark was ended: update ended with 1", done.stderr)


class RoundsTest(FolderCase):
    def test_takes_turns_on_fresh_projects(self) -> None:
        performed = []

        def contender(name: str) -> experiments.Contender:
            def perform(_: experiments.Programs, project: experiments.Project) -> experiments.Reading:
                self.assertEqual(len(contents(project.folder / "scr")), 2)
                self.assertFalse((project.folder / "scr_bak").exists())
                (project.folder / "scr").rename(project.folder / "scr_bak")
                performed.append(name)
                return reading(1.0)

            return experiments.Contender(name, Settings(files=2, objects=1), perform)

        experiment = experiments.Experiment("any", (contender("a"), contender("b")), ())
        with bench.Trees(self.folder / "trees") as trees:
            programs = bench.programs_of(bench.parse([]), trees.root)
            readings = bench.measure(experiment, 3, programs, trees)
        self.assertEqual(performed, ["a", "b"] * 3)
        self.assertEqual({name: len(rounds) for name, rounds in readings.items()}, {"a": 3, "b": 3})


def reading(seconds: float, **facts: int) -> experiments.Reading:
    cost = processes.Cost(seconds=seconds, user=seconds, system=0.0, peak_bytes=3 * 2**20, exit_code=0, output="")
    return experiments.Reading(cost, facts)


class FiguresTest(unittest.TestCase):
    def test_compares_readings_of_the_same_round(self) -> None:
        readings = {"a": [reading(1.0), reading(8.0)], "b": [reading(2.0), reading(4.0)]}
        self.assertEqual(experiments.ratio("a", "b")(readings), [0.5, 2.0])
        self.assertEqual(experiments.processor_ratio("a", "b")(readings), [0.5, 2.0])

    def test_takes_the_time_that_a_program_tells(self) -> None:
        told = dataclasses.replace(reading(9.0), figures={"seconds": 3.0})
        self.assertEqual(experiments.ratio("a", "b")({"a": [told], "b": [reading(1.0)]}), [3.0])

    def test_spreads_from_the_cheapest_to_the_dearest_file(self) -> None:
        readings = {"few": [reading(1.0, files=8), reading(8.0, files=8)],
                    "many": [reading(32.0, files=64), reading(16.0, files=64)]}
        self.assertEqual(experiments.spread_per_file("few", "many")(readings), [4.0, 4.0])

    def test_tells_peaks_in_mebibytes_and_by_size(self) -> None:
        readings = {"a": [reading(1.0, bytes=2**20)]}
        self.assertEqual(experiments.peak("a")(readings), [3.0])
        self.assertEqual(experiments.peak_per_byte("a")(readings), [3.0])

    def test_holds_the_median_against_the_target(self) -> None:
        verdict = experiments.Verdict("A", "any", "x", 2.0, lambda readings: [1.0, 2.0, 9.0])
        self.assertEqual(report.outcome(verdict, verdict.median({})), "met")
        self.assertEqual(report.outcome(verdict, 2.01), "MISSED")
        self.assertEqual(report.outcome(dataclasses.replace(verdict, target=None), 9.0), "")


if __name__ == "__main__":
    unittest.main()
