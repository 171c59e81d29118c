"""What a user does to a project between two commands, by chance."""

from __future__ import annotations

import contextlib
import os
import pathlib
import random
import shutil
import stat
from dataclasses import dataclass
from typing import Callable, Iterator

from names import printable
from plants import INVALID_SCREEN, SHAPE_NAMES, plain_screen, screen, shape

CLOSED = 0o000
OPENED_FOR_A_LOOK = 0o700
OPEN = 0o755

MOST_OBJECTS = 5

LONG_AGO = 1_700_000_000  # as seconds


def folders_below(root: pathlib.Path) -> Iterator[str]:
    """A folder is entered behind the use of its name, so that it can be opened first."""
    for folder, folders, _ in os.walk(root):
        folders.sort()
        for name in folders:
            path = os.path.join(folder, name)
            if not os.path.islink(path):
                yield path


def mode_of(path: str) -> int:
    return stat.S_IMODE(os.lstat(path).st_mode)


@contextlib.contextmanager
def opened(root: pathlib.Path) -> Iterator[None]:
    """Folders that nobody may enter can be looked into meanwhile."""
    for path in folders_below(root):
        if mode_of(path) == CLOSED:
            os.chmod(path, OPENED_FOR_A_LOOK)
    yield
    for path in sorted(folders_below(root), reverse=True):
        if mode_of(path) == OPENED_FOR_A_LOOK:
            os.chmod(path, CLOSED)


class User:
    """Never writes the same bytes twice, so that each file is told from all others."""

    def __init__(self, project: pathlib.Path, chance: random.Random) -> None:
        self._project = project
        self._chance = chance
        self._written = 0

    def act(self) -> str:
        """Does something and tells it."""
        with opened(self._project):
            habit = self._chance.choices(HABITS, [habit.weight for habit in HABITS])[0]
            return habit.act(self)

    def write_screen(self) -> str:
        return self._write(self._new_screen_name(), self._new_screen())

    def write_note(self) -> str:
        return self._write(self._new_name("note", ".txt"), f"note {self._next()}\n".encode())

    def write_hidden_file(self) -> str:
        return self._write(self._new_name(".draft", ".psc"), plain_screen(f"Draft {self._next()}"))

    def write_in_hidden_folder(self) -> str:
        return self._write(self._new_name(".private/kept", ".txt"), f"kept {self._next()}\n".encode())

    def write_invalid_screen(self) -> str:
        return self._write(self._existing_or_new_screen(), INVALID_SCREEN + f"ID;{self._next()}\n".encode())

    def write_odd_name(self) -> str:
        return self._write(self._new_name("f\udce4", self._chance.choice([".psc", ".txt"])), self._new_screen())

    def edit(self) -> str:
        return self._write(self._existing_or_new_screen(), self._new_screen())

    def bring(self) -> str:
        """An old file, as a copy that keeps its date is."""
        path = self._place(self._existing_or_new_screen())
        path.unlink(missing_ok=True)
        path.write_bytes(self._new_screen())
        os.utime(path, (LONG_AGO, LONG_AGO))
        return f"brings an old file to {self._told(path)}"

    def make_pipe(self) -> str:
        path = self._place(self._new_name("pipe", self._chance.choice([".psc", ".txt"])))
        os.mkfifo(path)
        return f"makes a pipe {self._told(path)}"

    def append(self) -> str:
        if not (path := self._any_file()):
            return "finds nothing to append to"
        path.write_bytes(path.read_bytes() + f"ID;{self._next()};Rect;Added\n".encode())
        return f"appends to {self._told(path)}"

    def link(self) -> str:
        path = self._place(self._new_name("link", self._chance.choice([".psc", ".txt"])))
        target = self._chance.choice(["legend.psc", "nothing.psc", str(self._project / "mac/pump.plb"), "area", "."])
        path.symlink_to(target)
        return f"makes a link {self._told(path)} to {os.path.basename(target)}"

    def remove(self) -> str:
        if not (path := self._any_entry()):
            return "finds nothing to remove"
        path.unlink()
        return f"removes {self._told(path)}"

    def rename(self) -> str:
        if not (path := self._any_file()):
            return "finds nothing to rename"
        target = path.parent / f"renamed{self._next()}.psc"
        path.rename(target)
        return f"renames {self._told(path)} to {target.name}"

    def replace(self) -> str:
        """By another one, with the date of that."""
        path, target = self._any_file(), self._any_file()
        if not path or path == target:
            return "finds nothing to replace"
        path.rename(target)
        return f"moves {self._told(path)} to {self._told(target)}"

    def rename_folder(self) -> str:
        if not (folders := self._folders()):
            return "finds no folder to rename"
        path = self._chance.choice(folders)
        target = path.parent / f"folder{self._next()}"
        path.rename(target)
        return f"renames the folder {self._told(path)} to {target.name}"

    def change_shape(self) -> str:
        name = self._chance.choice(["pump", "valve"])
        path = self._project / "mac" / f"{name}.plb"
        path.write_bytes(shape(name).replace(b"Body", f"Body{self._next()}".encode()))
        return f"changes {path.name}"

    def delete_temp_folder(self) -> str:
        shutil.rmtree(self._project / "scr_temp", ignore_errors=True)
        return "deletes scr_temp"

    def close_or_open_folder(self) -> str:
        closed = [path for path in folders_below(self._project) if mode_of(path) == OPENED_FOR_A_LOOK]
        for path in closed:
            os.chmod(path, OPEN)
        if closed or not (folders := self._folders()):
            return "opens all folders"
        path = self._chance.choice(folders)
        os.chmod(path, OPENED_FOR_A_LOOK)  # closed with the others
        return f"closes the folder {self._told(path)}"

    def _next(self) -> int:
        self._written += 1
        return self._written

    def _new_name(self, stem: str, suffix: str) -> str:
        folder = self._chance.choice(["", "", "area/", "scratch/", "deep/er/"])
        return f"{folder}{stem}{self._next()}{suffix}"

    def _new_screen_name(self) -> str:
        return self._new_name(self._chance.choice(["hall", "hall", "screen"]), ".psc")

    def _new_screen(self) -> bytes:
        shapes = self._chance.choices(SHAPE_NAMES, k=self._chance.randint(0, MOST_OBJECTS))
        return plain_screen(f"Screen {self._next()}") + screen(shapes)

    def _place(self, name: str) -> pathlib.Path:
        path = self._project / "scr" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        return path

    def _write(self, name: str, content: bytes) -> str:
        path = self._place(name)
        path.write_bytes(content)
        return f"writes {self._told(path)}"

    def _entries(self) -> list[pathlib.Path]:
        return sorted((self._project / "scr").rglob("*"))

    def _any_entry(self) -> pathlib.Path | None:
        entries = [path for path in self._entries() if path.is_symlink() or not path.is_dir()]
        return self._chance.choice(entries) if entries else None

    def _any_file(self) -> pathlib.Path | None:
        files = [path for path in self._entries() if path.is_file() and not path.is_symlink()]
        return self._chance.choice(files) if files else None

    def _folders(self) -> list[pathlib.Path]:
        return [path for path in self._entries() if path.is_dir() and not path.is_symlink()]

    def _existing_or_new_screen(self) -> str:
        path = self._any_file()
        return str(path.relative_to(self._project / "scr")) if path else self._new_screen_name()

    def _told(self, path: pathlib.Path) -> str:
        return printable(str(path.relative_to(self._project)))


@dataclass(frozen=True)
class Habit:
    weight: int
    act: Callable[[User], str]


HABITS = (
    Habit(4, User.write_screen),
    Habit(3, User.write_note),
    Habit(2, User.write_hidden_file),
    Habit(1, User.write_in_hidden_folder),
    Habit(2, User.write_invalid_screen),
    Habit(1, User.write_odd_name),
    Habit(5, User.edit),
    Habit(2, User.bring),
    Habit(2, User.append),
    Habit(1, User.make_pipe),
    Habit(2, User.link),
    Habit(2, User.remove),
    Habit(2, User.rename),
    Habit(1, User.replace),
    Habit(1, User.rename_folder),
    Habit(2, User.change_shape),
    Habit(1, User.delete_temp_folder),
    Habit(1, User.close_or_open_folder),
)
