"""Makes the seeds of the fuzz targets, most of them from the screens and shapes of the tests and the example.

    make_seeds.py REPOSITORY FOLDER      writes FOLDER/<target>/<seed>
"""
import pathlib
import shutil
import sys

PLACES = [
    b"100|50|199|149|0|0|49|49|3|extra;text|C:/lib|D:/proj",
    b"0|0|9|9|50|50|59|59|1||p|",
    b"2147483647|-2147483648|0|0|1|1|2|2|-1|a|System:|q",
]
COMMAND_LINES = [
    "--help", "--version", "--print-docs", "--print-schema", "check --help", "nonsense", "--nonsense", "",
    "check --project p", "check --project p --shape pump.plb --shapes-from list --json",
    "shapes --project p", "shapes --project p --json --color always", "diff --project p",
    "update --project p --all-shapes", "update --project p --usable-shapes",
    "update --project p --shape pump.plb --json --quiet",
    "update --project p --shapes-from list --make-folders --force",
    "update --project p --all-shapes --dry-run --fail-on-changes", "update --project p --dry-run",
    "update --project missing --all-shapes --force", "check --project p extra",
]

FACTS = """program: vantrel 1.0.0
started: 2026-01-02T03:04:05
makes folders: no
list is whole: yes
had scr_temp: yes
had scr_bak: yes
kept runs: 3
keeps others: no
"""
NAMES = """history: 2026-01-02_03-04-05
set aside: 2026-01-02_03-04-06
shape: pump.plb
screen: legend.psc
screen: area/with blanks %C3%A4%25.psc
older file: area/old.psc
older folder: area
unsaved: legend.psc
"""
STAGES = ["cancelled", "converting", "removing the last backup", "backing up", "removing the screens that are backed up",
          "copying back", "done", "setting the screens aside", "rolling back", "rolled back"]


def projects(repository):
    yield from sorted((repository / "tests/data/convert").glob("*/in"))
    yield repository / "tests/data/cli/lossy/plant"
    yield repository / "example/waterworks"


def sections_of(project, screen):
    """A whole plant with one of its screens, all of its shapes and icons, and all shapes chosen."""
    shapes = sorted((project / "mac").glob("**/*.plb"))
    parts = [b"@@ screen\n", ended(screen.read_bytes())]
    for shape in shapes:
        name = shape.name.encode()
        parts += [b"@@ choose %s\n@@ shape %s\n" % (name, name), ended(shape.read_bytes())]
    parts += [b"@@ bitmap %s\n" % icon.name.encode() for icon in sorted(project.glob("bmp/**/*.bmp"))]
    return b"".join(parts)


def ended(text):
    return text if text.endswith(b"\n") or not text else text + b"\n"


def seeds(repository):
    for project in projects(repository):
        for screen in sorted((project / "scr").glob("**/*.psc")):
            yield "imagefile", screen.read_bytes()
            yield "conversion", sections_of(project, screen)
        for shape in sorted((project / "mac").glob("**/*.plb")):
            yield "shapefile", shape.read_bytes()
            for place in PLACES:
                yield "placement", place + b"\n" + shape.read_bytes()
            yield "writers", shape.read_bytes()
    for line in COMMAND_LINES:
        yield "commandline", line.replace(" ", "\n").encode()
    for stage in STAGES:
        for names in ("", NAMES):
            yield "stagefile", f"vantrel run 1\nstage: {stage}\nended at: done\n{FACTS}{names}end\n".encode()


def main():
    repository, folder = map(pathlib.Path, sys.argv[1:])
    shutil.rmtree(folder, ignore_errors=True)
    for number, (target, seed) in enumerate(seeds(repository)):
        (folder / target).mkdir(parents=True, exist_ok=True)
        (folder / target / f"{number:04}").write_bytes(seed)


main()
