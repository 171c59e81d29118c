"""Links in a project. What lies outside of it stays as it is, and the run ends."""

from __future__ import annotations

import functools
import os
import pathlib
from dataclasses import dataclass

from cases import Case, Surroundings, site
from plants import Plant, SCREENS, plain_screen, sound, write_files
from programs import Failure, require_no_crash
from trees import differences, lost_originals, tree_of

OUTSIDE = {
    "outside/far.psc": plain_screen("Far"),
    "outside/deep/farther.psc": SCREENS["scr/area/dosing.psc"],
    "outside/notes.txt": b"notes\n",
}


@dataclass(frozen=True)
class Link:
    name: str
    place: str   # in the project
    target: str  # as the link says it, from its own folder


LINKS = (
    Link("to its own folder", "scr/area/loop", "."),
    Link("to the folder above", "scr/area/loop", ".."),
    Link("to nothing", "scr/gone.psc", "nowhere.psc"),
    Link("to a folder outside", "scr/other", "../../outside"),
    Link("to a file outside", "scr/other.psc", "../../outside/far.psc"),
    Link("between two screens", "scr/second.psc", "units.psc"),
    Link("in place of the screens", "scr", "../outside"),
    Link("in place of the copies", "scr_temp", "../outside"),
    Link("in place of the backup", "scr_bak", "../outside"),
    Link("in place of the library", "mac", "../outside"),
)


def linking(link: Link) -> Plant:
    def build(root: pathlib.Path) -> None:
        sound(root)
        write_files(root.parent, OUTSIDE)
        place = root / link.place
        if place.is_dir():
            place.rename(root / "put aside")
        os.symlink(link.target, place)
    return build


def check_link(surroundings: Surroundings, link: Link, surveyed: bool) -> None:
    with site(surroundings, linking(link)) as place:
        outside = tree_of(place.folder / "outside")
        outcome = place.program.run(place.update_all() if surveyed else place.update())
        require_no_crash(outcome)
        if changed := differences(outside, tree_of(place.folder / "outside")):
            raise Failure(f"changed outside, exit code {outcome.code}: {'; '.join(changed)}")
        if lost := lost_originals(place.before, place.tree()):
            raise Failure(f"originals lost: {', '.join(lost)}")


def links(surroundings: Surroundings) -> list[Case]:
    return [Case(f"{link.name}{', surveyed' if surveyed else ''}",
                 functools.partial(check_link, surroundings, link, surveyed))
            for link in LINKS for surveyed in (False, True)]
