"""What is measured, against what, and which figure is good enough."""

from __future__ import annotations

import dataclasses
import json
import pathlib
import statistics
from collections.abc import Callable

import processes
from generate import Settings
from trees import Project

MEBIBYTE = 2**20

COPIES = "cp -r scr scr_temp; cp -r scr scr_bak; rm -rf scr; cp -r scr_temp scr; rm -rf scr_temp"
SUBSTITUTION = "find scr -name '*.psc' -print0 | xargs -0 sed -i 's/Plant/Works/'"
SEARCH = "grep -rh ^LIB scr"


class RunFailed(Exception):
    """A run that did not do what it was measured for."""


@dataclasses.dataclass(frozen=True)
class Programs:
    """Where the measured programs lie, and what surrounds them."""

    update: pathlib.Path
    helpers: pathlib.Path
    environment: dict[str, str]


@dataclasses.dataclass(frozen=True)
class Reading:
    """One round of one contender: what it cost, and what it told of itself."""

    cost: processes.Cost
    facts: dict[str, int]
    figures: dict[str, float] = dataclasses.field(default_factory=dict)

    @property
    def seconds(self) -> float:
        """Of the part that is measured: a program may tell it itself."""
        return self.figures.get("seconds", self.cost.seconds)

    @property
    def processor_seconds(self) -> float:
        return self.figures.get("processor_seconds", self.cost.user + self.cost.system)


Readings = dict[str, list[Reading]]
"""For each contender its rounds, in the order in which they were run."""


@dataclasses.dataclass(frozen=True)
class Contender:
    name: str
    settings: Settings
    perform: Callable[[Programs, Project], Reading]


@dataclasses.dataclass(frozen=True)
class Verdict:
    """A figure of each round; the median of them is held against the target."""

    measure: str
    text: str
    unit: str
    target: float | None
    figures: Callable[[Readings], list[float]]

    def median(self, readings: Readings) -> float:
        return statistics.median(self.figures(readings))


@dataclasses.dataclass(frozen=True)
class Experiment:
    title: str
    contenders: tuple[Contender, ...]
    verdicts: tuple[Verdict, ...]

    def answers(self, measures: set[str]) -> bool:
        return any(verdict.measure in measures for verdict in self.verdicts)


# --- Contenders ---


def require(condition: bool, what: str, cost: processes.Cost) -> None:
    if not condition:
        raise RunFailed(f"{what}\n{cost.output[-2000:]}")


def update(programs: Programs, project: Project) -> Reading:
    """A whole run without a window."""
    command = [str(programs.update), "update", "--project", str(project.folder), "--all-shapes", "--quiet"]
    cost = processes.run(command, project.folder, programs.environment)
    facts = project.facts
    require(cost.exit_code == (1 if facts["errors"] else 0), f"update ended with {cost.exit_code}", cost)
    require(reports_in_change_log(project) == expected_reports(facts), "update left out reports", cost)
    require(count_screens(project, "scr") == facts["files"], "update left out screens", cost)
    return Reading(cost, facts)


def expected_reports(facts: dict[str, int]) -> dict[str, int]:
    return {kind: facts[kind] for kind in ("replaced", "not_replaced", "errors")}


def reports_in_change_log(project: Project) -> dict[str, int]:
    """Every report of the run, by its status."""
    counts = {"REPLACE": 0, "NO REPLACE": 0, "ERROR": 0}
    for log in (project.folder / "log").glob("*.csv"):
        with log.open(encoding="latin-1") as rows:
            next(rows)
            for row in rows:
                counts[row.partition(";")[0]] += 1
    return dict(zip(("replaced", "not_replaced", "errors"), counts.values()))


def count_screens(project: Project, folder: str) -> int:
    return sum(1 for _ in (project.folder / folder).rglob("*.psc"))


def shell(script: str) -> Callable[[Programs, Project], Reading]:
    def perform(programs: Programs, project: Project) -> Reading:
        # Bytes are characters to the peers too; it makes some of them several times as fast.
        environment = {**programs.environment, "LC_ALL": "C"}
        cost = processes.run(["sh", "-ec", script], project.folder, environment)
        require(cost.exit_code == 0, f"{script} ended with {cost.exit_code}", cost)
        require(count_screens(project, "scr") == project.facts["files"], "screens are missing", cost)
        return Reading(cost, project.facts)

    return perform


def helper(name: str, *expected: str) -> Callable[[Programs, Project], Reading]:
    """A program of our own, which prints its figures as a JSON object; those that are expected
    must be as the generator tells."""

    def perform(programs: Programs, project: Project) -> Reading:
        command = [str(programs.helpers / name), str(project.folder)]
        cost = processes.run(command, project.folder, programs.environment)
        require(cost.exit_code == 0, f"{name} ended with {cost.exit_code}", cost)
        figures = json.loads(cost.output.splitlines()[-1])
        for key in expected:
            require(figures[key] == project.facts[key], f"{name}: {key} is {figures[key]}", cost)
        return Reading(cost, project.facts, figures)

    return perform


# --- Figures ---


def ratio(ours: str, peer: str) -> Callable[[Readings], list[float]]:
    """Of the same round: what slows the machine down slows both."""

    def figures(readings: Readings) -> list[float]:
        return [one.seconds / other.seconds for one, other in zip(readings[ours], readings[peer])]

    return figures


def processor_ratio(ours: str, peer: str) -> Callable[[Readings], list[float]]:
    """What remains comparable on a machine that is busy with something else."""

    def figures(readings: Readings) -> list[float]:
        # The kernel counts in steps, so that a tiny run may seem to have cost nothing.
        step = 1e-3
        return [max(one.processor_seconds, step) / max(other.processor_seconds, step)
                for one, other in zip(readings[ours], readings[peer])]

    return figures


def peak(name: str) -> Callable[[Readings], list[float]]:
    return lambda readings: [reading.cost.peak_bytes / MEBIBYTE for reading in readings[name]]


def peak_per_byte(name: str) -> Callable[[Readings], list[float]]:
    return lambda readings: [reading.cost.peak_bytes / reading.facts["bytes"] for reading in readings[name]]


def figure(name: str, key: str) -> Callable[[Readings], list[float]]:
    return lambda readings: [reading.figures[key] for reading in readings[name]]


def spread_per_file(*names: str) -> Callable[[Readings], list[float]]:
    """The dearest file against the cheapest, over sizes of a project."""

    def figures(readings: Readings) -> list[float]:
        rounds = zip(*(readings[name] for name in names))
        per_file = [[reading.seconds / reading.facts["files"] for reading in one] for one in rounds]
        return [max(times) / min(times) for times in per_file]

    return figures


# --- Experiments ---


def base_settings(scale: int) -> Settings:
    return Settings(shapes=max(2, 200 // scale), folders=max(2, 50 // scale))


def experiments(scale: int) -> tuple[Experiment, ...]:
    """All of them, each project made smaller by the factor."""
    base = base_settings(scale)
    plant = dataclasses.replace(base, files=10_000 // scale, objects=18)
    plain = dataclasses.replace(plant, share=0.0)
    one_shape = dataclasses.replace(
        base, files=1_000 // scale, objects=100, share=1.0, sections=1, shapes=1, bitmap_folders=2_000 // scale)
    icons = dataclasses.replace(one_shape, icons=20)
    pictures = dataclasses.replace(one_shape, pictures=20)
    reports = dataclasses.replace(base, files=1_000 // scale, objects=20, share=1.0, missing=0.25)
    return (
        Experiment(
            "whole run, half of the objects replaced",
            (Contender("vantrel-cli", plant, update),
             Contender("copies", plant, shell(COPIES)),
             Contender("kernel alone", plant, helper("kernel_floor", "files", "bytes"))),
            (Verdict("A", "time against the copies", "x", 1.0, ratio("vantrel-cli", "copies")),
             Verdict("A", "processor time against the copies", "x", None, processor_ratio("vantrel-cli", "copies")),
             Verdict("A", "time against the kernel alone", "x", None, ratio("vantrel-cli", "kernel alone")),
             Verdict("F", "peak memory of the whole run", "MiB", 64, peak("vantrel-cli"))),
        ),
        Experiment(
            "whole run, no object replaced",
            (Contender("vantrel-cli", plain, update),
             Contender("copies", plain, shell(COPIES))),
            (Verdict("B", "time against the copies", "x", 0.8, ratio("vantrel-cli", "copies")),
             Verdict("B", "processor time against the copies", "x", None, processor_ratio("vantrel-cli", "copies"))),
        ),
        Experiment(
            "conversion alone",
            (Contender("conversion", plant, helper("convert_files", "files", "replaced")),
             Contender("sed -i", plant, shell(SUBSTITUTION))),
            (Verdict("C", "time against sed -i", "x", 1.0, ratio("conversion", "sed -i")),
             Verdict("C", "processor time against sed -i", "x", None, processor_ratio("conversion", "sed -i"))),
        ),
        small_files(scale),
        large_screen(scale),
        Experiment(
            "icons of shapes",
            (Contender("20 icons a shape", icons, update),
             Contender("no icons", pictures, update)),
            (Verdict("G", "time against shapes without icons", "x", 1.3, ratio("20 icons a shape", "no icons")),),
        ),
        Experiment(
            "window with many reports and log entries",
            (Contender("window", reports, helper("window_run", "replaced", "errors")),
             Contender("vantrel-cli", reports, update)),
            (Verdict("H", "longest stall of the event loop", "ms", 50, figure("window", "stall_ms")),
             Verdict("H", "the same, in processor time of the window", "ms", None,
                     figure("window", "stall_processor_ms")),
             Verdict("H", "time against the run without a window", "x", 1.5, ratio("window", "vantrel-cli")),
             Verdict("H", "processor time against it", "x", None, processor_ratio("window", "vantrel-cli"))),
        ),
        Experiment(
            "filter names",
            (Contender("collection", plant, helper("filter_names", "files")),
             Contender("grep", plant, shell(SEARCH))),
            (Verdict("I", "time against grep", "x", 1.5, ratio("collection", "grep")),),
        ),
        Experiment(
            "first sign and cancel",
            (Contender("start and cancel", plant, helper("start_and_cancel", "files")),),
            (Verdict("J", "first progress signal", "ms", 200, figure("start and cancel", "first_progress_ms")),
             Verdict("J", "screens begun after cancel", "", 1, figure("start and cancel", "begun_after_cancel")),
             Verdict("J", "end after cancel", "ms", None, figure("start and cancel", "end_after_cancel_ms"))),
        ),
    )


def small_files(scale: int) -> Experiment:
    counts = [1_000 // scale, 10_000 // scale, 100_000 // scale]
    names = [f"{count:,} screens" for count in counts]
    contenders = [
        Contender(name, dataclasses.replace(base_settings(scale), files=count, objects=2), update)
        for name, count in zip(names, counts)
    ]
    return Experiment(
        "small screens", tuple(contenders),
        (Verdict("D", "time per screen, dearest against cheapest", "x", 1.15, spread_per_file(*names)),))


def large_screen(scale: int) -> Experiment:
    objects = 100_000 // scale
    single = dataclasses.replace(
        base_settings(scale), files=1, objects=objects, share=1.0, sections=1, texts=3, levels=objects // 4)
    double = dataclasses.replace(single, objects=2 * objects, levels=objects // 2)
    return Experiment(
        "one large screen",
        (Contender("twice the lines", double, update),
         Contender("once the lines", single, update)),
        (Verdict("E", "time of twice the lines", "x", 2.2, ratio("twice the lines", "once the lines")),
         Verdict("F", "peak memory by size of the screen", "x", 12, peak_per_byte("once the lines")),
         Verdict("F", "the same, twice the lines", "x", 12, peak_per_byte("twice the lines"))))
