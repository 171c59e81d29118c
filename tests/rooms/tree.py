"""The libraries and programs of the tree, as CMake links them and as they lie on the disk."""

from __future__ import annotations

import dataclasses
import graphlib
import json
import pathlib


@dataclasses.dataclass(frozen=True)
class Target:
    """A room, a program, or a name for several rooms."""

    name: str
    folder: str  # below the root of the tree
    links: tuple[str, ...] = ()  # straight ones, to other targets of the tree
    texts: dict[str, str] = dataclasses.field(default_factory=dict)  # of its sources and headers, by name
    build_file: str = ""
    is_room: bool = True


def read_target(described: dict, names: set[str], root: pathlib.Path) -> Target:
    folder = pathlib.Path(described["folder"]).resolve()
    paths = [folder / name for name in described["sources"] if name.endswith((".cpp", ".h"))]
    return Target(
        name=described["name"],
        folder=folder.relative_to(root).as_posix(),
        links=tuple(link for link in described["links"] if link in names),
        texts={path.name: path.read_text() for path in paths if path.parent == folder},
        build_file=(folder / "CMakeLists.txt").read_text(),
        is_room=described["type"] in ("STATIC_LIBRARY", "SHARED_LIBRARY"))


def read_tree(targets: pathlib.Path, root: pathlib.Path) -> list[Target]:
    described = json.loads(targets.read_text())
    names = {target["name"] for target in described}
    return [read_target(target, names, root) for target in described]


def reached(targets: list[Target]) -> dict[str, set[str]]:
    """What each target links, straight or over others; besides itself."""
    links = {target.name: target.links for target in targets}
    result = {}
    for name in links:
        result[name], waiting = set(), list(links[name])
        while waiting:
            link = waiting.pop()
            if link not in result[name]:
                result[name].add(link)
                waiting += links[link]
    return result


def bottom_up(targets: list[Target]) -> list[Target]:
    """Each target behind all that it links, those of the same height by their names."""
    by_name = {target.name: target for target in targets}
    sorter = graphlib.TopologicalSorter({target.name: target.links for target in targets})
    sorter.prepare()
    result = []
    while sorter.is_active():
        ready = sorted(sorter.get_ready())
        result += [by_name[name] for name in ready]
        sorter.done(*ready)
    return result
