#!/usr/bin/env python3
"""Checks the rooms of the tree, and that docs/architecture.md shows their links as they are.

    rooms.py TARGETS        the targets as the build folder describes them: build/dev/tests/rooms/targets.json

With VANTREL_UPDATE_GOLDEN in the environment it renews the document's picture.
"""

from __future__ import annotations

import os
import pathlib
import sys

sys.dont_write_bytecode = True
import picture  # noqa: E402  (after the order not to leave compiled files)
import rules  # noqa: E402
import tree  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENT = ROOT / "docs/architecture.md"


def check_picture(targets: list[tree.Target]) -> list[str]:
    document = DOCUMENT.read_text()
    drawn = picture.drawn(targets)
    if "VANTREL_UPDATE_GOLDEN" in os.environ:
        document = picture.renewed(document, drawn)
        DOCUMENT.write_text(document)
    differences = picture.differences(document, drawn)
    return ["docs/architecture.md shows other links; VANTREL_UPDATE_GOLDEN=1 renews it", *differences] \
        if differences else []


def main() -> int:
    targets = tree.read_tree(pathlib.Path(sys.argv[1]), ROOT)
    # Where rooms link each other there is no picture to draw.
    broken = rules.broken_rules(targets) or check_picture(targets)
    for line in broken:
        print(line, file=sys.stderr)
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
