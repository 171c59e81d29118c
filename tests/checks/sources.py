#!/usr/bin/env python3
"""Prints the sources that static analysis looks at, one a line.

    sources.py COMPILE_COMMANDS [PATTERN]       all, or those whose path matches
    sources.py COMPILE_COMMANDS --share 3/10    those that changed of late, and a share of the others

A header that changed stands for the sources that include it themselves.
"""

from __future__ import annotations

import argparse
import json
import pathlib
import re
import sys

sys.dont_write_bytecode = True
import history  # noqa: E402  (after the order not to leave compiled files)
import shares  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
MOST_CHANGED = 20  # of which each takes many seconds; after larger changes they are taken by turns


def compiled(commands: pathlib.Path, root: pathlib.Path) -> list[str]:
    """The sources of a build by their paths in the tree, without those that the build makes itself."""
    paths = {pathlib.Path(command["file"]) for command in json.loads(commands.read_text())}
    inside = {path.relative_to(root) for path in paths if path.is_relative_to(root)}
    return sorted(str(path) for path in inside if path.parts[0] != "build")


def includes_any(source: pathlib.Path, names: set[str]) -> bool:
    included = INCLUDE.findall(source.read_text(errors="replace"))
    return any(pathlib.PurePosixPath(path).name in names for path in included)


def concerned(sources: list[str], changed: set[str], root: pathlib.Path) -> list[str]:
    """Those of the sources that changed, or include a header or a form that did."""
    paths = [pathlib.PurePosixPath(path) for path in changed]
    names = {path.name for path in paths if path.suffix == ".h"}
    names |= {f"ui_{path.stem}.h" for path in paths if path.suffix == ".ui"}
    return [source for source in sources if source in changed or includes_any(root / source, names)]


def chosen(sources: list[str], changed: set[str], root: pathlib.Path, share: shares.Share) -> list[str]:
    first = concerned(sources, changed, root)
    others = [source for source in sources if source not in set(first)]
    turns = -(-len(first) // MOST_CHANGED)
    return first[share.number % turns::turns] + share.of(others) if turns else share.of(others)


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("commands", type=pathlib.Path)
    parser.add_argument("--share", type=shares.parse_share)
    parser.add_argument("pattern", nargs="?", default="")
    arguments = parser.parse_args()

    sources = [path for path in compiled(arguments.commands, ROOT) if re.search(arguments.pattern, path)]
    if arguments.share is not None:
        sources = chosen(sources, history.recently_changed(ROOT), ROOT, arguments.share)
    if not sources:
        parser.error("no source matches")
    print(*sources, sep="\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
