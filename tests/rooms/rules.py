"""What holds for rooms. Each rule takes all targets and returns what breaks it, one text each."""

from __future__ import annotations

import graphlib
import itertools
import pathlib
import re

from tree import Target, reached

MOST_UNITS = 16  # more, and nobody keeps in mind what is there
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
COMMENT = re.compile(r"//.*")
PROMISES = ("# For: ", "# May know: ", "# Must never know: ")  # the first lines of a room's CMakeLists.txt
ENGINE, WINDOW = pathlib.PurePosixPath("tools/Vantrel"), pathlib.PurePosixPath("tools/Vantrel/ui")
NOT_THE_ENGINES = {
    "prints": re.compile(r"\bv?f?printf\s*\(|\bf?put(s|c|char)\s*\(|\bstd::c(out|err|log)\b"
                         r"|\bQTextStream\b[^;]*\bstd(out|err)\b"),
    "asks": re.compile(r"\bQMessageBox\b"),
    "knows exit codes": re.compile(r"\bExitCode\b|\bEXIT_(SUCCESS|FAILURE)\b"),
}


def included(target: Target, owners: dict[str, list[str]], reach: set[str]) -> list[tuple[str, str, str]]:
    """The includes of a target as file, header, and the target whose header that is. What no target
    has is of the system, or made by the build."""
    result = []
    for file, text in target.texts.items():
        for path in INCLUDE.findall(text):
            header = pathlib.PurePosixPath(path).name
            rooms = owners.get(header, [])
            seen = [room for room in rooms if room == target.name or room in reach]
            result += [(file, header, room) for room in (seen or rooms)[:1]]
    return result


def all_includes(targets: list[Target]) -> dict[str, list[tuple[str, str, str]]]:
    owners: dict[str, list[str]] = {}
    for target in targets:
        for file in target.texts:
            owners.setdefault(file, []).append(target.name)
    reach = reached(targets)
    return {target.name: included(target, owners, reach[target.name]) for target in targets}


def includes_follow_links(targets: list[Target]) -> list[str]:
    reach = reached(targets)
    return [f"{name}: {file} includes {header} of {other}, which {name} does not link"
            for name, includes in all_includes(targets).items()
            for file, header, other in includes if other != name and other not in reach[name]]


def no_cycles(targets: list[Target]) -> list[str]:
    reasons = {(name, other): f"{file} of {name} includes {header} of {other}"
               for name, includes in all_includes(targets).items()
               for file, header, other in includes if other != name}
    reasons |= {(target.name, link): reasons.get((target.name, link), f"{target.name} links {link}")
                for target in targets for link in target.links}
    sorter: graphlib.TopologicalSorter[str] = graphlib.TopologicalSorter()
    for name, other in reasons:
        sorter.add(name, other)
    try:
        sorter.prepare()
    except graphlib.CycleError as error:
        steps = [reasons[name, other] for other, name in itertools.pairwise(error.args[1])]
        return ["a cycle: " + "; ".join(reversed(steps))]
    return []


def headers_have_names_of_their_own(targets: list[Target]) -> list[str]:
    """Where two rooms come together, an include of such a name means now the one, now the other."""
    reach = reached(targets)
    clashes = set()
    for together in (reach[target.name] | {target.name} for target in targets):
        headers = sorted((file, target.name) for target in targets if target.name in together
                         for file in target.texts if file.endswith(".h"))
        for header, group in itertools.groupby(headers, key=lambda pair: pair[0]):
            names = [name for _, name in group]
            if len(names) > 1:
                clashes.add(f"{header} is a header of {' and '.join(names)}")
    return sorted(clashes)


def rooms_stay_small(targets: list[Target]) -> list[str]:
    """A source and its header are one unit, and so is a header alone."""
    sizes = {target.name: len({pathlib.PurePosixPath(file).stem for file in target.texts}) for target in targets}
    return [f"{name} has {size} units, more than {MOST_UNITS}: cut it into two"
            for name, size in sizes.items() if size > MOST_UNITS]


def begins_with_promises(build_file: str) -> bool:
    lines = build_file.split("\n")[:len(PROMISES)]
    return len(lines) == len(PROMISES) and all(
        line.startswith(promise) and line != promise for line, promise in zip(lines, PROMISES))


def rooms_say_what_they_are_for(targets: list[Target]) -> list[str]:
    return [f"{target.folder}/CMakeLists.txt does not begin with the lines: {', '.join(PROMISES)}"
            for target in targets if target.is_room and not begins_with_promises(target.build_file)]


def is_engine(target: Target) -> bool:
    folder = pathlib.PurePosixPath(target.folder)
    return target.is_room and folder.is_relative_to(ENGINE) and not folder.is_relative_to(WINDOW)


def the_engine_talks_to_nobody(targets: list[Target]) -> list[str]:
    """What it has to tell goes to its callers and into the log; how it is shown is theirs."""
    return [f"{target.folder}/{file} {what}: {match[0]}"
            for target in targets if is_engine(target)
            for file, text in target.texts.items()
            for what, pattern in NOT_THE_ENGINES.items()
            for match in [pattern.search(COMMENT.sub("", text))] if match]


RULES = (includes_follow_links, no_cycles, headers_have_names_of_their_own, rooms_stay_small,
         rooms_say_what_they_are_for, the_engine_talks_to_nobody)


def broken_rules(targets: list[Target]) -> list[str]:
    return [broken for rule in RULES for broken in rule(targets)]
