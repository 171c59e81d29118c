"""What lies where a run would write its change log: the run neither waits for it nor changes it. And what names
would make of the log: it keeps its size."""

from __future__ import annotations

import functools
import os
import pathlib
import time
from dataclasses import dataclass
from typing import Callable

from cases import Case, Surroundings, site
from plants import Plant, sound, write_files
from programs import PATIENCE, Failure, require_no_crash
from trees import Tree, differences, tree_of

OUTSIDE = {"outside/profile": b"# settings of a shell\n", "outside/log/notes.txt": b"notes\n"}


def future_names() -> list[str]:
    """The names of all change logs that a run could begin while its case is waited for."""
    now = int(time.time())
    return [time.strftime("Vantrel_%Y-%m-%d_%H-%M-%S.csv", time.localtime(now + second))
            for second in range(2 * PATIENCE)]


@dataclass(frozen=True)
class Place:
    """How something else gets into the place of a log, or of the folder of logs."""
    name: str
    take: Callable[[pathlib.Path], None]
    is_folder_of_logs: bool = False


def take_by_second_name(path: pathlib.Path) -> None:
    os.link(path.parents[2] / "outside/profile", path)


PLACES = (
    Place("a link to a file", lambda path: path.symlink_to("../../outside/profile")),
    Place("a link to nothing", lambda path: path.symlink_to("../../outside/new")),
    Place("a link to a device", lambda path: path.symlink_to("/dev/full")),
    Place("a second name of a file", take_by_second_name),
    Place("a pipe", os.mkfifo),
    Place("a folder", pathlib.Path.mkdir),
    Place("a link in place of the folder", lambda path: path.symlink_to("../outside/log"), is_folder_of_logs=True),
    Place("a pipe in place of the folder", os.mkfifo, is_folder_of_logs=True),
    Place("a file in place of the folder", pathlib.Path.touch, is_folder_of_logs=True),
)


def taking(place: Place) -> Plant:
    def build(root: pathlib.Path) -> None:
        sound(root)
        write_files(root.parent, OUTSIDE)
        folder = root / "log"
        if place.is_folder_of_logs:
            folder.rmdir()
            place.take(folder)
            return
        for name in future_names():
            place.take(folder / name)
    return build


def logs_of(project: pathlib.Path) -> Tree:
    """The folder of logs, or what has its place, with all in it."""
    return {path: entry for path, entry in tree_of(project).items() if path.split("/")[0] == "log"}


def check_place(surroundings: Surroundings, place: Place) -> None:
    with site(surroundings, taking(place)) as found:
        outside, logs = tree_of(found.folder / "outside"), logs_of(found.project)
        outcome = found.program.run(found.update())
        require_no_crash(outcome)
        if changed := differences(outside, tree_of(found.folder / "outside")):
            raise Failure(f"changed outside, exit code {outcome.code}: {'; '.join(changed)}")
        if changed := differences(logs, logs_of(found.project)):
            raise Failure(f"changed in the folder of logs: {'; '.join(changed)}")
        (end,) = outcome.of_kind("end")
        if outcome.code or end["changeLog"] is not None:
            raise Failure(f"told: {end}")


# Some hundred of these in each field make gigabytes of a row, if each takes in the field that it names.
MANY = 300
FULL_OF_PLACE_HOLDERS = "ID;1;Rect;Frame\n" + f"LIB;{'%4' * MANY};1;{'%7' * MANY};Obj/{'%6' * MANY}\n" + \
    "PSDV;10;10;29;29;2;1;15;8;1;0;1;0\n"
LARGEST_LOG = 1 << 20


def with_place_holders(root: pathlib.Path) -> None:
    sound(root)
    write_files(root, {f"scr/full{number}.psc": FULL_OF_PLACE_HOLDERS.encode() for number in range(3)})


def check_place_holders(surroundings: Surroundings) -> None:
    with site(surroundings, with_place_holders) as found:
        outcome = found.program.run([*found.update_all(), "--force"])
        require_no_crash(outcome)
        (log,) = (found.project / "log").iterdir()
        if (size := log.stat().st_size) > LARGEST_LOG:
            raise Failure(f"a change log of {size} bytes")
        rows = log.read_bytes().count(b"\n") - 1
        if rows != len(outcome.of_kind("report")):
            raise Failure(f"{rows} rows, but {len(outcome.of_kind('report'))} reports")
        if (warnings := sum("too long" in message for message in outcome.messages())) != 1:
            raise Failure(f"{warnings} warnings: {outcome.messages()}")


def change_logs(surroundings: Surroundings) -> list[Case]:
    return [Case(place.name, functools.partial(check_place, surroundings, place)) for place in PLACES] + \
        [Case("names full of place holders", functools.partial(check_place_holders, surroundings))]
