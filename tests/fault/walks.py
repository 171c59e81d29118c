"""Projects on which many things happen one after the other, by chance.

Runs, cancelled and killed ones, recoveries, undoings, restorings, typos, and what a user writes and
removes between them. After each step every file that lay in "scr" before one of the last runs lies
somewhere, unless the user has removed it; and what says that nothing was touched has touched nothing.
"""

from __future__ import annotations

import dataclasses
import functools
import os
import pathlib
import random
import signal
from dataclasses import dataclass
from typing import Callable

from cases import Case, Site, Surroundings, site
from ledger import File, Ledger, files_in, is_interrupted
from names import printable
from permissions import AS_NOBODY, give_away, program_for_others
from plants import SHAPE_NAMES, Plant, linked, mixed, sound, stopped
from programs import Failure, Outcome, built_beside, copy_for_others, require_no_crash
from tracing import Injection, tracer
from trees import HISTORY, RUN_FILES, Tree, below, describe, tree_of, without_logs
from users import User, opened

SHORTEST, LONGEST = 8, 15  # steps

PLANTS = (sound, linked, mixed, stopped)

WRONG_USAGE, REFUSED = 2, 3
NOTHING_TOUCHED = (WRONG_USAGE, REFUSED)

USUAL_RUNS = 3  # that the history keeps
MOST_RUNS = 5

# Calls at which a command is hit, and about how often a thread makes them. The first of "openat" and
# "close" load libraries.
CALLS_ON_NAMES = (("renameat", 12), ("renameat2", 12), ("unlink", 3), ("unlinkat", 14), ("mkdirat", 14),
                  ("rmdir", 3), ("linkat", 7), ("fsync", 13), ("fchmod", 5), ("utimensat", 10))
CALLS = (*CALLS_ON_NAMES, ("openat", 150), ("openat2", 60), ("close", 150), ("write", 15))

CANCELLING = ("SIGINT", "SIGTERM")


class Walk:
    """One project and what happens to it."""

    def __init__(self, place: Site, window: str, prefix: list[str], chance: random.Random) -> None:
        self._place = place
        self._window = dataclasses.replace(place.program, path=window)
        self._prefix = prefix
        self._chance = chance
        self._user = User(place.project, chance)
        self._tree = self._look()
        self._ledger = Ledger(self._tree)
        self._entries: dict[str, str] = {}
        self._kept_runs = USUAL_RUNS
        self.steps: list[str] = []

    def go(self) -> None:
        for _ in range(self._chance.randint(SHORTEST, LONGEST)):
            if self._chance.random() < (0.2 if is_interrupted(self._tree) else 0.4):
                self._let_user_act()
            else:
                self._run_any_command()

    # --- Steps ---

    def _let_user_act(self) -> None:
        deeds = [self._user.act() for _ in range(self._chance.randint(1, 4))]
        self.steps.append(f"the user {', '.join(deeds)}")
        if self._prefix:
            give_away(self._place.project)
        before, self._tree = self._tree, self._look()
        self._ledger.user_changed(before, self._tree)

    def _run_any_command(self) -> None:
        commands = COMMANDS_WHEN_INTERRUPTED if is_interrupted(self._tree) else COMMANDS
        command = self._chance.choices(commands, [command.weight for command in commands])[0]
        arguments = command.arguments(self)
        injection = self._any_injection(command)
        tracing = tracer(self._place.folder / "trace", injection.options()) if injection else []
        self.steps.append(printable(" ".join(arguments)) + (f", {injection}" if injection else ""))
        project = str(self._place.project)
        if command.is_of_window:
            program, words = self._window, [project, *arguments[1:]]
        else:
            program, words = self._place.program, [arguments[0], "--project", project, *arguments[1:]]
        outcome = program.run(words, [*self._prefix, *tracing])
        self.steps[-1] += f": exit code {outcome.code}"
        self._compare(command, outcome)

    def _any_injection(self, command: Command) -> Injection | None:
        if self._chance.random() >= command.share_hit:
            return None
        # A window makes thousands of the others before it has anything to do with a project.
        call, most = self._chance.choice(CALLS_ON_NAMES if command.is_of_window else CALLS)
        name = self._chance.choice(["SIGKILL", *(CANCELLING if command.is_cancelled else ())])
        return Injection(call, self._chance.randint(1, self._chance.randint(1, most)), f"signal={name}")

    def _compare(self, command: Command, outcome: Outcome) -> None:
        require_no_crash(outcome)
        before, self._tree = self._tree, self._look()
        changed = changed_paths(before, self._tree)
        if changed and (not command.changes or outcome.code in NOTHING_TOUCHED):
            raise Failure(f"touched {', '.join(changed[:4])}: {outcome.told()[-300:]}")
        self._ask_for_entries()
        if lost := self._ledger.program_ran(before, self._tree, self._entries, self._kept_runs):
            raise Failure(f"lost: {'; '.join(described(lost, before))}")

    # --- What the project holds ---

    def _look(self) -> Tree:
        with opened(self._place.project):
            return without_logs(tree_of(self._place.project))

    def _ask_for_entries(self) -> None:
        outcome = self._place.program.run(["history", "--project", str(self._place.project), "--json"], self._prefix)
        # One that tells nothing yet is the beginning of a command that was killed, and no run.
        self._entries = {run["name"]: run["what"] for run in outcome.of_kind("run")
                         if f"{HISTORY}/{run['name']}/run.json" in self._tree}

    # --- Arguments ---

    def shapes(self) -> list[str]:
        name = self._chance.choice(SHAPE_NAMES)
        return self._chance.choice([["--all-shapes"], ["--all-shapes"], ["--usable-shapes"], ["--shape", name]])

    def update(self) -> list[str]:
        options = [option for option in ("--make-folders", "--keep-others") if self._chance.random() < 0.5]
        self._kept_runs = USUAL_RUNS
        if self._chance.random() < 0.5:
            self._kept_runs = self._chance.randint(USUAL_RUNS, MOST_RUNS)
            options += ["--keep-runs", str(self._kept_runs)]
        return ["update", "--json", "--force", *self.shapes(), *options]

    def unforced_update(self) -> list[str]:
        self._kept_runs = USUAL_RUNS
        return ["update", "--json", *self.shapes()]

    def dry_run(self) -> list[str]:
        return ["update", "--json", "--dry-run", *self.shapes()]

    def mistyped(self) -> list[str]:
        """Refused, but where a folder cannot be read: any name may stand there."""
        self._kept_runs = USUAL_RUNS
        project = str(self._place.project)
        return self._chance.choice([
            ["update", "--force", "--shape", "pmup.plb"], ["update", "--force", "--all-shapes", "--keep-run", "3"],
            ["update", "--force", "--all-shapes", "--keep-runs", "-1"], ["update", "--force"],
            ["update", "--project", project + "/nowhere", "--force", "--all-shapes"],
            ["update", "--project", project + "/scr", "--force", "--all-shapes"],
            ["recover", "--undo", "--finish"], ["recover", "--rollback"],
            ["history", "--restore", "2001-01-01_00-00-00"], ["history", "--restore"],
        ])

    def reading(self) -> list[str]:
        entry = self.any_entry()
        return self._chance.choice([["check"], ["shapes"], ["diff"], ["history"], ["recover"],
                                    *([["history", "--diff", entry]] if entry else [])])

    def restoring(self) -> list[str]:
        entry = self.any_entry()
        files = []
        if self._chance.random() < 0.5:
            held = sorted(files_in(self._tree, f"{HISTORY}/{entry}/scr").values())
            held = [path.removeprefix(f"{HISTORY}/{entry}/scr/") for path in held]
            backup = [path.removeprefix("scr_bak/") for path in sorted(below(self._tree, "scr_bak"))]
            names = held + backup or ["nothing.psc"]
            files = self._chance.choices(names, k=self._chance.randint(1, 2))
        return ["history", "--restore", entry or "9999-01-01_00-00-00", *files]

    def pruning(self) -> list[str]:
        self._kept_runs = self._chance.randint(USUAL_RUNS, MOST_RUNS)
        return ["history", "--prune", str(self._kept_runs)]

    def window(self) -> list[str]:
        """A start, cancelled at some screen or not, and the button for a run that was interrupted."""
        self._kept_runs = USUAL_RUNS
        shapes = self._chance.choices(SHAPE_NAMES, k=self._chance.randint(0, len(SHAPE_NAMES)))
        screens = self._chance.choice([0, 0, self._chance.randint(1, 6)])
        button = self._chance.choice(["btnPutBack", "btnPutBack", "btnComplete", "btnComplete", "btnCancel"])
        return ["window", ",".join(shapes), button, str(screens)]

    def any_entry(self) -> str:
        return self._chance.choice(sorted(self._entries)) if self._entries else ""


@dataclass(frozen=True)
class Command:
    weight: int
    arguments: Callable[[Walk], list[str]]
    changes: bool = True
    share_hit: float = 0.0  # how many of them are killed
    is_cancelled: bool = False  # or stopped by a signal that it heeds
    is_of_window: bool = False


def recovering(option: str) -> Callable[[Walk], list[str]]:
    return lambda walk: ["recover", option]


UPDATE = Command(12, Walk.update, share_hit=0.6, is_cancelled=True)
UNFORCED_UPDATE = Command(1, Walk.unforced_update, share_hit=0.5, is_cancelled=True)
UNDOING = Command(4, recovering("--undo"), share_hit=0.5)
ROLLING_BACK = Command(1, recovering("--roll-back"), share_hit=0.5)
FINISHING = Command(1, recovering("--finish"), share_hit=0.5, is_cancelled=True)
WINDOW = Command(4, Walk.window, share_hit=0.5, is_of_window=True)
RESTORING = Command(5, Walk.restoring, share_hit=0.5)
PRUNING = Command(1, Walk.pruning, share_hit=0.3)
MISTYPED = Command(2, Walk.mistyped)
READING = Command(2, Walk.reading, changes=False)
DRY_RUN = Command(1, Walk.dry_run, changes=False)

COMMANDS = (UPDATE, UNFORCED_UPDATE, WINDOW, UNDOING, ROLLING_BACK, FINISHING, RESTORING, PRUNING, MISTYPED, READING, DRY_RUN)


def of_weight(weight: int, command: Command) -> Command:
    return dataclasses.replace(command, weight=weight)


COMMANDS_WHEN_INTERRUPTED = (
    of_weight(6, ROLLING_BACK), of_weight(6, FINISHING), of_weight(3, UNDOING), of_weight(6, WINDOW),
    *(of_weight(1, command) for command in (UPDATE, RESTORING, PRUNING, MISTYPED, READING, DRY_RUN)))


def changed_paths(before: Tree, after: Tree) -> list[str]:
    """But for what tells of a run: a dead run's lock is taken over by whoever comes."""
    return [f"{printable(path)}: {describe(before.get(path))} became {describe(after.get(path))}"
            for path in sorted(before.keys() | after.keys())
            if before.get(path) != after.get(path) and path not in RUN_FILES]


def described(lost: set[File], before: Tree) -> list[str]:
    """With a place where each of them lay."""
    places = files_in({f"project/{path}": entry for path, entry in before.items()}, "project")
    return [f"{printable(places[file])}, a {file[1]} with {file[2][:60]!r}" for file in sorted(lost) if file in places]


def check_walk(surroundings: Surroundings, window: str, prefix: list[str], seed: int) -> None:
    chance = random.Random(seed)
    with site(surroundings, owned(chance.choice(PLANTS), bool(prefix))) as place:
        walk = Walk(place, window, prefix, chance)
        try:
            walk.go()
        except (Failure, OSError) as failure:
            steps = "\n    ".join(f"{number}. {step}" for number, step in enumerate(walk.steps, 1))
            repeat = f'run.py --program PROGRAM --only "{name_of(seed)}" random-walks'
            raise Failure(f"step {len(walk.steps)}: {failure}\n    {steps}\n    again: {repeat}") from failure


def owned(plant: Plant, is_given_away: bool) -> Plant:
    def build(root: pathlib.Path) -> None:
        plant(root)
        if is_given_away:
            give_away(root.parent)
    return build


def name_of(seed: int) -> str:
    """Of one length, so that none begins another."""
    return f"seed {seed:04}"


def random_walks(surroundings: Surroundings) -> list[Case]:
    """As an ordinary user: no folder is closed to root."""
    window = built_beside(surroundings.program, "tests/fault/vantrel_window_step")
    prefix = []
    if os.geteuid() == 0:
        surroundings = dataclasses.replace(surroundings, program=program_for_others(surroundings))
        window = copy_for_others(window, pathlib.Path(surroundings.program).parent)
        prefix = AS_NOBODY
    return [Case(name_of(seed), functools.partial(check_walk, surroundings, window, prefix, seed))
            for seed in surroundings.thinned(list(range(surroundings.seeds)))]
