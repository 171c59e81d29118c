"""The picture of the links between rooms, as docs/architecture.md shows it."""

from __future__ import annotations

import difflib
import re

from tree import Target, bottom_up

BLOCK = re.compile(r"(?<=^```rooms\n).*?(?=^```$)", re.DOTALL | re.MULTILINE)


def drawn(targets: list[Target]) -> str:
    """One line for each target, behind those of all that it links."""
    order = [target.name for target in bottom_up(targets)]
    width = max(map(len, order))
    links = {target.name: ", ".join(sorted(target.links, key=order.index)) for target in targets}
    return "".join(f"{name:{width}} -> {links[name]}\n" if links[name] else f"{name}\n" for name in order)


def differences(document: str, picture: str) -> list[str]:
    """How the document's picture differs, as lines of a diff; none where it is this one."""
    documented = BLOCK.search(document)
    return list(difflib.unified_diff(documented[0].splitlines() if documented else [], picture.splitlines(),
                                     "in the document", "as CMake links", lineterm=""))


def renewed(document: str, picture: str) -> str:
    return BLOCK.sub(lambda _: picture, document)
