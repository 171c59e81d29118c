"""The results as tables and as JSON."""

from __future__ import annotations

import dataclasses
import pathlib
import statistics

from experiments import MEBIBYTE, Experiment, Reading, Readings, Verdict

VERDICT_HEADER = ("Measure", "Where", "What", "Median", "Target", "")
COST_HEADER = ("Where", "Experiment", "Contender", "Wall s (range)", "User s", "System s", "Peak MiB")


@dataclasses.dataclass(frozen=True)
class Result:
    place: pathlib.Path
    experiment: Experiment
    readings: Readings


def shown(value: float, unit: str) -> str:
    return f"{value:.2f}{' ' if unit not in ('', 'x') else ''}{unit}" if unit else f"{value:g}"


def outcome(verdict: Verdict, median: float) -> str:
    if verdict.target is None:
        return ""
    return "met" if median <= verdict.target else "MISSED"


def verdict_rows(results: list[Result]) -> list[tuple[str, ...]]:
    rows = []
    for result in results:
        for verdict in result.experiment.verdicts:
            median = verdict.median(result.readings)
            target = "" if verdict.target is None else f"<= {verdict.target:g}"
            rows.append((verdict.measure, str(result.place), f"{result.experiment.title}: {verdict.text}",
                         shown(median, verdict.unit), target, outcome(verdict, median)))
    return sorted(rows, key=lambda row: row[0])


def median_of(readings: list[Reading], attribute: str) -> float:
    return statistics.median(getattr(reading.cost, attribute) for reading in readings)


def cost_rows(results: list[Result]) -> list[tuple[str, ...]]:
    rows = []
    for result in results:
        for name, readings in result.readings.items():
            seconds = [reading.seconds for reading in readings]
            rows.append((
                str(result.place), result.experiment.title, name,
                f"{statistics.median(seconds):.3f} ({min(seconds):.3f} to {max(seconds):.3f})",
                f"{median_of(readings, 'user'):.2f}", f"{median_of(readings, 'system'):.2f}",
                f"{median_of(readings, 'peak_bytes') / MEBIBYTE:.0f}"))
    return rows


def markdown_table(header: tuple[str, ...], rows: list[tuple[str, ...]]) -> str:
    lines = [header, ("---",) * len(header), *rows]
    return "".join(f"| {' | '.join(line)} |\n" for line in lines)


def text_table(header: tuple[str, ...], rows: list[tuple[str, ...]]) -> str:
    widths = [max(len(row[column]) for row in [header, *rows]) for column in range(len(header))]
    lines = ["  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip() for row in [header, *rows]]
    return "\n".join(lines) + "\n"


def markdown(results: list[Result], machine: dict[str, str], operations: list[tuple[str, ...]]) -> str:
    parts = [
        markdown_table(("Machine", ""), list(machine.items())),
        markdown_table(VERDICT_HEADER, verdict_rows(results)),
        markdown_table(COST_HEADER, cost_rows(results)),
    ]
    if operations:
        parts.append(markdown_table(("Operation", "MB/s"), operations))
    return "\n".join(parts)


def text(results: list[Result], operations: list[tuple[str, ...]]) -> str:
    parts = [text_table(VERDICT_HEADER, verdict_rows(results)), text_table(COST_HEADER, cost_rows(results))]
    if operations:
        parts.append(text_table(("Operation", "MB/s"), operations))
    return "\n".join(parts)


def as_json(results: list[Result], machine: dict[str, str], operations: list[tuple[str, ...]]) -> dict[str, object]:
    return {
        "machine": machine,
        "results": [json_result(result) for result in results],
        "operations": dict(operations),
    }


def json_result(result: Result) -> dict[str, object]:
    return {
        "place": str(result.place),
        "experiment": result.experiment.title,
        "verdicts": [json_verdict(verdict, result.readings) for verdict in result.experiment.verdicts],
        "readings": {name: [json_reading(reading) for reading in readings]
                     for name, readings in result.readings.items()},
    }


def json_verdict(verdict: Verdict, readings: Readings) -> dict[str, object]:
    median = verdict.median(readings)
    return {
        "measure": verdict.measure, "text": verdict.text, "unit": verdict.unit, "target": verdict.target,
        "figures": verdict.figures(readings), "median": median,
        "met": None if verdict.target is None else median <= verdict.target,
    }


def json_reading(reading: Reading) -> dict[str, object]:
    cost = {key: value for key, value in dataclasses.asdict(reading.cost).items() if key != "output"}
    return {"cost": cost, "facts": reading.facts, "figures": reading.figures}
