"""Folders that may not be written to and files that may not be read, as a user other than root.

The run says what the user is to know, in its own words, and nothing is lost.
"""

from __future__ import annotations

import functools
import os
import pathlib
from dataclasses import dataclass

from cases import Case, Site, Surroundings, site
from plants import Plant, plain_screen, sound, write_files
from programs import Failure, Program, copy_for_others, require_no_crash
from trees import differences, lost_originals

NOBODY = 65534
AS_NOBODY = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]

NOTHING_SAID = ""


@dataclass(frozen=True)
class Ban:
    """What is taken from the user, and what a run over all shapes then says."""
    path: str
    mode: int
    forced: str   # in the log of a run that goes on whatever its survey finds
    surveyed: str  # the finding for which a run is refused; empty where it is not


COPY_BACK_FAILED = "!!! Could not copy all files from \\scr_temp folder to \\scr. Copy them manually !!!"

BANS = (
    Ban(".", 0o555, "Could not open Temp File", "folder-protected"),
    Ban("scr", 0o555, COPY_BACK_FAILED, "folder-protected"),
    Ban("scr/area", 0o555, NOTHING_SAID, "folder-protected"),
    Ban("scr_temp", 0o555, "Could not open Temp File", "temp-folder-left"),
    Ban("scr_bak", 0o555, "could not be backed up whole", NOTHING_SAID),
    Ban("log", 0o555, NOTHING_SAID, NOTHING_SAID),
    Ban("scr/units.psc", 0o000, "Could not open Image File", "screen-unreadable"),
    Ban("scr/area", 0o000, "scr/area", "folder-unreadable"),
    Ban("scr", 0o000, "scr", "folder-unreadable"),
    Ban("mac/pump.plb", 0o000, "Could not open Shape File", NOTHING_SAID),
    Ban("mac", 0o000, "Could not open Shape File", NOTHING_SAID),
)


def give_away(root: pathlib.Path) -> None:
    os.chown(root, NOBODY, NOBODY)
    for folder, folders, files in os.walk(root):
        for name in folders + files:
            os.chown(os.path.join(folder, name), NOBODY, NOBODY, follow_symlinks=False)


def banned(ban: Ban) -> Plant:
    def build(root: pathlib.Path) -> None:
        sound(root)
        if ban.path == "scr_temp":
            write_files(root, {"scr_temp/legend.psc": plain_screen("Legend of a stopped run")})
        give_away(root.parent)
        os.chmod(root / ban.path, ban.mode)
    return build


def require_power() -> None:
    if os.geteuid() != 0:
        raise Failure("only root can become another user")


def check_ban(surroundings: Surroundings, program: str, ban: Ban, surveyed: bool) -> None:
    with site(surroundings, banned(ban)) as place:
        user = Program(program, place.program.home)
        outcome = user.run(place.update_all() if surveyed else place.update(), AS_NOBODY)
        after = place.tree()
        require_no_crash(outcome)
        if lost := lost_originals(place.before, after):
            raise Failure(f"originals lost: {', '.join(lost)}")
        if surveyed and ban.surveyed:
            require_refusal(place, outcome, ban)
        elif not surveyed and ban.forced not in told_by_run(outcome):
            raise Failure(f"not told: {ban.forced}; exit code {outcome.code}: {told_by_run(outcome)}")
        elif (ban.forced != NOTHING_SAID) != (outcome.code != 0):
            raise Failure(f"exit code {outcome.code}")


def told_by_run(outcome: object) -> str:
    return "\n".join(outcome.messages() + [report["error"] for report in outcome.error_reports()])


def require_refusal(place: Site, outcome: object, ban: Ban) -> None:
    findings = [finding["check"] for finding in outcome.of_kind("finding")]
    if outcome.code != 3 or ban.surveyed not in findings:
        raise Failure(f"not refused for {ban.surveyed}, but exit code {outcome.code}: {findings}")
    if changed := differences(place.before, place.tree()):
        raise Failure(f"refused, but changed: {'; '.join(changed)}")


def program_for_others(surroundings: Surroundings) -> str:
    """A copy that any user may run; one for all rows."""
    surroundings.work.chmod(0o755)
    folder = surroundings.work / "bin"
    if folder.exists():
        return str(folder / pathlib.Path(surroundings.program).name)
    program = copy_for_others(surroundings.program, folder)
    # Where its own library lies is found beside the program.
    os.environ["LD_LIBRARY_PATH"] = str(folder)
    return program


def missing_permissions(surroundings: Surroundings) -> list[Case]:
    require_power()
    program = program_for_others(surroundings)
    return [Case(f"{ban.path} {ban.mode:03o}{', surveyed' if surveyed else ''}",
                 functools.partial(check_ban, surroundings, program, ban, surveyed))
            for ban in BANS for surveyed in (False, True)]
