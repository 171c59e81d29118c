#!/usr/bin/env python3
"""Whether all that is done to files goes through one room.

    door.py --build build/dev

The room "files" opens, makes, moves and removes in folders that it holds open, so that no link leads it
astray. Another room that opened a path by itself would be a second door. Sources tell which classes they
use, objects which functions of the system.
"""

import argparse
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOOR = pathlib.PurePosixPath("tools/Vantrel/files")

# Names of paths as texts, and nothing on a disk.
TEXTS = r"(?!::(?:encodeName|decodeName|cleanPath|isAbsolutePath|isRelativePath|separator|Filters?|NoDot\w+)\b)"
CLASSES = re.compile(rf"\b(QFile|QDir)\b{TEXTS}|\b(QDirIterator|QSaveFile|QTemporaryFile|QTemporaryDir|QLockFile"
                     r"|std::[io]?fstream|std::filesystem)\b")
FUNCTIONS = {"open", "openat", "openat2", "creat", "fopen", "freopen", "opendir", "rename", "renameat", "renameat2",
             "unlink", "unlinkat", "remove", "rmdir", "mkdir", "mkdirat", "link", "linkat", "symlink", "symlinkat",
             "mknod", "mknodat", "mkfifo", "mkstemp", "mkostemp", "mkdtemp", "chmod", "fchmodat", "chown", "lchown",
             "fchownat", "truncate", "utimensat", "utime", "utimes", "syscall"}
COMMENT_OR_TEXT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.DOTALL)
INCLUDE = re.compile(r"^\s*#\s*include[^\n]*", re.MULTILINE)

# What else may open a path, and why it is none of a project's. A row that nothing needs is an error.
ALLOWED = {
    ("tools/Vantrel/process/Process.cpp", "open"): "/dev/null, for standard streams that are closed",
    ("tools/Vantrel/process/Process.cpp", "syscall"): "no path: threads wait for each other",
    ("tools/Vantrel/review/ScratchFolder.cpp", "open"): "a folder for temporary files",
    ("tools/Vantrel/review/ScratchFolder.cpp", "mkdir"): "a folder for temporary files",
    ("tools/Vantrel/review/ScratchFolder.cpp", "rename"): "a folder for temporary files",
    ("tools/Vantrel/review/ScratchFolder.cpp", "rmdir"): "a folder for temporary files",
    ("tools/Vantrel/review/ScratchProject.cpp", "std::filesystem"): "lists; what it makes is a folder for temporary files",
    ("tools/Vantrel/review/ScratchProject.cpp", "QDir"): "folders for temporary files",
    ("tools/Vantrel/ui/project/ProjectCompleter.cpp", "QDir"): "any folder of the disk, while its name is typed",
    ("tools/Vantrel/ui/project/ProjectFolder.cpp", "QDir"): "the folders above one, by their names",
    ("tools/Vantrel/ui/tables/TableActions.cpp", "QSaveFile"): "a table is saved where the user says",
    ("tools/VantrelCli/commands/CommandLine.cpp", "QDir"): "what the user names, as a whole path",
    ("tools/VantrelCli/commands/CommandLine.cpp", "QFile"): "the list of shapes that the user names",
}


def used_classes(text: str) -> set[str]:
    plain = INCLUDE.sub("", COMMENT_OR_TEXT.sub("", text))
    return {match[1] or match[2] for match in CLASSES.finditer(plain)}


def used_functions(symbols: str) -> set[str]:
    """Of the undefined symbols of one object, those of FUNCTIONS; "open64" is "open"."""
    names = {line.split()[-1].split("@")[0] for line in symbols.splitlines() if line.strip()}
    return {plain for name in names if (plain := name.removeprefix("__").removesuffix("_2").removesuffix("64")) in FUNCTIONS}


def sources() -> dict[str, str]:
    files = [file for suffix in ("*.cpp", "*.h") for file in (ROOT / "tools").rglob(suffix)]
    names = {file: file.relative_to(ROOT) for file in sorted(files)}
    return {name.as_posix(): file.read_text() for file, name in names.items() if not name.is_relative_to(DOOR)}


def objects(build: pathlib.Path) -> dict[str, pathlib.Path]:
    """By source. Those of rooms only: what Qt generates is beside them."""
    found = {}
    for file in (build / "tools").rglob("*.cpp.o"):
        folder, inner = re.fullmatch(r"(.*)/CMakeFiles/[^/]+\.dir/(.*)\.o", file.relative_to(build).as_posix()).groups()
        if (ROOT / folder / inner).is_file() and not pathlib.PurePosixPath(folder).is_relative_to(DOOR):
            found[f"{folder}/{inner}"] = file
    return found


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    build = parser.parse_args().build.resolve()
    uses = {(name, used) for name, text in sources().items() for used in used_classes(text)}
    for name, file in objects(build).items():
        symbols = subprocess.run(["nm", "--undefined-only", file], check=True, capture_output=True, text=True).stdout
        uses |= {(name, used) for used in used_functions(symbols)}
    faults = [f"{name} uses {used}: what is done to files is done by the room {DOOR}"
              for name, used in sorted(uses - set(ALLOWED))]
    faults += [f"{name} need not be allowed to use {used}" for name, used in sorted(set(ALLOWED) - uses)]
    if faults:
        sys.exit("\n".join(faults))
    print(f"{len(uses)} uses of paths outside of the door, each of them allowed")


if __name__ == "__main__":
    main()
