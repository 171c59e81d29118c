"""Cases, the folders that they run in, and running many of them at once."""

from __future__ import annotations

import concurrent.futures
import contextlib
import itertools
import os
import pathlib
import shutil
import stat
from dataclasses import dataclass
from typing import Callable, Iterator, TypeVar

from plants import SHAPE_NAMES, Plant
from programs import Failure, Program
from shares import Share
from trees import Tree, screens, tree_of, without_logs

Item = TypeVar("Item")

# How many cases there are of what is made by chance, if not said otherwise.
USUAL_SEEDS = 2000


@dataclass(frozen=True)
class Case:
    """One fault. The check raises a failure where a promise is not kept."""
    name: str
    check: Callable[[], None]


@dataclass(frozen=True)
class Surroundings:
    """What every row is given."""
    program: str
    work: pathlib.Path
    points: int | None  # of each sweep; none for all
    share: Share | None = None  # of these points; none for all
    least: int = 1  # points of a share
    preload: str = ""  # a library that stands before the system's own
    seeds: int = USUAL_SEEDS
    steps: tuple[int, ...] | None = None  # of a sequence made by chance; none for all

    def thinned(self, items: list[Item]) -> list[Item]:
        """As many as are wanted of a sweep, evenly over its whole length; with both ends where all shares are taken."""
        thinned = evenly(items, self.points)
        return thinned if self.share is None else self.share.of(thinned, self.least)


def evenly(items: list[Item], count: int | None) -> list[Item]:
    if count is None or len(items) <= count:
        return items
    if count == 1:
        return items[:1]
    return [items[round(index * (len(items) - 1) / (count - 1))] for index in range(count)]


class Site:
    """A folder of one case: the plant, and a home for the program."""

    def __init__(self, surroundings: Surroundings, plant: Plant, folder: pathlib.Path) -> None:
        self.folder = folder
        self.project = folder / "plant"
        self.plant = plant
        self.program = Program(surroundings.program, folder / "home", surroundings.preload)
        self.build()

    def build(self) -> pathlib.Path:
        """Makes the plant anew, and the home, so that every run makes the same folders there."""
        shutil.rmtree(self.program.home, ignore_errors=True)
        self.program.home.mkdir()
        shutil.rmtree(self.project, ignore_errors=True)
        self.project.mkdir()
        self.plant(self.project)
        self.before = self.tree()
        return self.project

    def tree(self) -> Tree:
        return without_logs(tree_of(self.project))

    def update(self, *options: str) -> list[str]:
        """The arguments of a run that goes on whatever its survey finds, for chosen shapes."""
        names = self.folder / "shapes"
        contents = screens(self.before).values()
        used = [name for name in SHAPE_NAMES if any(f"LIB;{name};".encode() in content for content in contents)]
        names.write_text("\n".join(used))
        return ["update", "--project", str(self.project), "--json", "--force", "--shapes-from", str(names),
                *options]

    def update_all(self) -> list[str]:
        """The arguments of a run that its survey may refuse, for all shapes."""
        return ["update", "--project", str(self.project), "--json", "--all-shapes"]


numbers = itertools.count(1)


@contextlib.contextmanager
def site(surroundings: Surroundings, plant: Plant) -> Iterator[Site]:
    folder = surroundings.work / f"case{next(numbers)}"
    folder.mkdir()
    try:
        yield Site(surroundings, plant, folder)
    finally:
        make_removable(folder)
        shutil.rmtree(folder)


def make_removable(folder: pathlib.Path) -> None:
    for _, folders, _, descriptor in os.fwalk(folder):
        for name in folders:
            if not stat.S_ISLNK(os.lstat(name, dir_fd=descriptor).st_mode):
                os.chmod(name, 0o755, dir_fd=descriptor)


def run_cases(cases: list[Case], workers: int) -> list[str]:
    """Runs all of them and returns what was not kept, in the order of the cases."""
    def attempt(case: Case) -> str | None:
        try:
            case.check()
        except Failure as failure:
            return f"{case.name}: {failure}"
        except Exception as error:  # a fault of the harness must not pass for a held promise
            return f"{case.name}: {type(error).__name__}: {error}"
        return None

    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        return [complaint for complaint in pool.map(attempt, cases) if complaint is not None]
