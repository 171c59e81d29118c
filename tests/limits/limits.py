"""Runs the companion over projects at the limits of what a user may have: huge, empty, odd.

    limits.py --program build/dev/tools/VantrelCli/vantrel-cli [--large] [--share K/N] [--no-memory] [CASE ...]

A run must end by itself with one of the exit codes that the case allows, say what it refuses, leave the
screens that the case expects, and stay within a bound of memory that grows with the largest file alone.
"""
import argparse
import concurrent.futures
import functools
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import threading

for folder in ("fault", "checks"):
    sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / folder))
from programs import copy_for_others  # noqa: E402  (after the place where it lies)
from shares import Share, parse_share  # noqa: E402

MEBIBYTE = 1 << 20
BYTES_PER_BYTE = 12
FIXED_BYTES = 64 * MEBIBYTE
LONGEST_RUN = 300  # seconds; whatever takes longer hangs
LONGEST_ODD_RUN = 10
MOST_ADDRESSES = 1 << 33  # what an endless input may take before the system refuses

# Cases that do not hold yet, and why. One that holds is a complaint too: take it out of this table.
KNOWN: dict[str, str] = {}
LONGEST_KNOWN_RUN = 2

TOO_LARGE = 512 * MEBIBYTE

DONE, DONE_WITH_ERRORS, REFUSED, FILES_MISSING = 0, 1, 3, 4

CASES = []


def case(size="small", seconds=LONGEST_RUN):
    def register(function):
        CASES.append((function.__name__, size, seconds, function))
        return function
    return register


class Expectation:
    """What a case expects of its run: among others, which screens stay in their place, which come into the
    backup, and which lie whole in one of the two."""

    def __init__(self, codes, message=None, unchanged=(), options=(), lines=None, bytes_per_byte=BYTES_PER_BYTE,
                 fixed_bytes=FIXED_BYTES, most_addresses=MOST_ADDRESSES, backups=(), kept=(), format=("--json",),
                 command="update", has_threads=True):
        self.codes = codes
        self.most_addresses = most_addresses
        self.bytes_per_byte = bytes_per_byte
        self.fixed_bytes = fixed_bytes
        self.message = message
        self.unchanged = unchanged
        self.backups = backups
        self.kept = kept
        self.options = [*format, *options]
        self.command = command
        self.has_threads = has_threads
        self.lines = lines or {}


def write(path, *parts):
    """Writes a file part by part: a part is bytes, or a pair of bytes and how often they follow."""
    path.parent.mkdir(parents=True, exist_ok=True)
    with open(path, "wb") as file:
        for part in parts:
            if isinstance(part, bytes):
                file.write(part)
                continue
            piece, count = part
            block = max(1, MEBIBYTE // max(1, len(piece)))
            for begin in range(0, count, block):
                file.write(piece * min(block, count - begin))


def write_each(path, count, piece_of):
    path.parent.mkdir(parents=True, exist_ok=True)
    with open(path, "wb") as file:
        for index in range(count):
            file.write(piece_of(index))


def candidate(level, shape=b"pump.plb"):
    return b"ID;1;O\nLIB;%s;1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;%d\n" % (shape, level)


PLAIN = b"ID;1;O\nPSDV;0;0;9;9;0;1;0;0;0;0;0\n"
SHAPE = b"ID;1;S\nLIB;x;1;q;OBJ:n\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n"


def with_pump(project, shape=(SHAPE,)):
    write(project / "mac/pump.plb", *shape)


# --- Empty and odd files ---

@case()
def empty_screen(project):
    write(project / "scr/a.psc")
    return Expectation([DONE], unchanged=["a.psc"])


@case()
def empty_shape(project):
    write(project / "scr/a.psc", candidate(1), PLAIN)
    with_pump(project, ())
    return Expectation([DONE], lines={"a.psc": 2})


@case()
def no_line_end(project):
    write(project / "scr/a.psc", PLAIN, candidate(1).rstrip(b"\n"))
    with_pump(project, (SHAPE.rstrip(b"\n"),))
    return Expectation([DONE], lines={"a.psc": 5})


@case()
def only_separators(project):
    write(project / "scr/a.psc", (b";", 2 * MEBIBYTE))
    return Expectation([DONE], unchanged=["a.psc"])


@case()
def only_blanks(project):
    write(project / "scr/a.psc", (b" \t\r", MEBIBYTE))
    return Expectation([DONE], unchanged=["a.psc"])


@case()
def only_line_ends(project):
    write(project / "scr/a.psc", (b"\n", 4 * MEBIBYTE))
    return Expectation([DONE], unchanged=["a.psc"])


@case()
def nul_bytes(project):
    write(project / "scr/a.psc", (b"\0", MEBIBYTE), b"\n", PLAIN)
    write(project / "scr/b.psc", b"ID;1;\0\nLIB;pump.plb;1;p\0;OBJ\0a\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n\0\0\n")
    with_pump(project, (SHAPE, b"IVG;\0q\n"))
    return Expectation([DONE], unchanged=["a.psc"], lines={"b.psc": 4})


@case()
def nul_in_a_shape_name(project):
    write(project / "scr/a.psc", candidate(1, b"pu\0mp.plb"), PLAIN)
    with_pump(project)
    return Expectation([DONE, DONE_WITH_ERRORS], lines={"a.psc": 5})


@case()
def every_byte(project):
    write(project / "scr/a.psc", bytes(range(256)) * 100)
    return Expectation([DONE], unchanged=["a.psc"])


@case()
def shape_names_that_leave_the_folder(project):
    names = [b"../scr/a.psc", b"/etc/passwd", b"", b".", b"..", b"a" * 5000]
    write(project / "scr/a.psc", *[candidate(level + 1, name) for level, name in enumerate(names)], PLAIN)
    return Expectation([DONE, DONE_WITH_ERRORS])


# --- Numbers ---

@case()
def numbers_beyond_32_bits(project):
    numbers = [b"2147483647", b"-2147483648", b"2147483648", b"-2147483649", b"99999999999999999999", b"-", b""]
    objects = [b"ID;1;O\nLIB;pump.plb;1;p;OBJ:a\nPSDV;%s;%s;%s;%s;0;%s;0;0;0;0;%d\n" % (
        one, other, other, one, one or b"1", level + 1)
        for level, (one, other) in enumerate((one, other) for one in numbers for other in numbers)]
    write(project / "scr/a.psc", *objects, PLAIN)
    with_pump(project, (SHAPE, b"PNT;2;0;2147483647;-2147483648;2147483648;1\nIX1;a;;;2147483647;-2147483648\n"))
    return Expectation([DONE], lines={"a.psc": 5 * len(objects) + 2})


@case()
def levels_beyond_32_bits(project):
    write(project / "scr/a.psc", *[
        b"ID;1;O\nLIB;pump.plb;1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;%d\n" % level
        for level in (2147483647, 2147483648, -2147483648, -1, 4294967297)])
    return Expectation([DONE, DONE_WITH_ERRORS], lines={"a.psc": 15})


@case()
def twice_the_points_of_32_bits_promised_by_a_screen(project):
    # Twice this count is a negative number of 32 bits, so that there are too many points.
    write(project / "scr/a.psc", PLAIN, b"PNT;2000000000;0;1;2\n")
    return Expectation([DONE], unchanged=["a.psc"])


@case()
def many_points_promised_by_a_screen(project):
    write(project / "scr/a.psc", PLAIN, b"PNT;1000000000;0;1;2\n")
    return Expectation([REFUSED], message=b"not enough parameters", unchanged=["a.psc"])


@case()
def many_points_promised_by_a_screen_that_is_forced(project):
    write(project / "scr/a.psc", PLAIN, b"PNT;1000000000;0;1;2\n")
    return Expectation([FILES_MISSING], message=b"(must be >= 2000000000)", options=["--force"])


@case()
def many_points_promised_by_a_shape(project):
    write(project / "scr/a.psc", candidate(1), PLAIN)
    with_pump(project, (SHAPE, b"PNT;1000000000;0;1;2\n"))
    return Expectation([DONE_WITH_ERRORS], message=b"not enough parameters", lines={"a.psc": 5})


@case()
def counts_that_wrap(project):
    write(project / "scr/a.psc", candidate(1), PLAIN)
    with_pump(project, (SHAPE, b"PNT;2000000000;0;1;2\nPNT;2147483647;0;1;2\nPNT;-2147483648;0;1;2\n"
                        b"ITXN;715827882;q;a;b;c\nITXN;2147483647;q;a;b;c\nITXN;-1;q;a;b;c\n"))
    return Expectation([DONE, DONE_WITH_ERRORS])


# --- Many and long ---

@case()
def ten_thousand_candidates_of_one_level(project):
    write(project / "scr/a.psc", (candidate(1) + PLAIN, 10_000))
    with_pump(project)
    return Expectation([DONE])


@case()
def ten_thousand_levels(project):
    write_each(project / "scr/a.psc", 10_000, lambda index: candidate(index + 1))
    with_pump(project)
    return Expectation([DONE], lines={"a.psc": 30_000})


@case()
def ten_thousand_missing_shapes(project):
    write_each(project / "scr/a.psc", 10_000, lambda index: candidate(index + 1, b"m%d.plb" % index))
    return Expectation([DONE_WITH_ERRORS], lines={"a.psc": 30_000})


@case()
def a_line_of_two_megabytes(project):
    write(project / "scr/a.psc", candidate(1), b"TXT;", (b"x", 2 * MEBIBYTE), b"\n", PLAIN)
    with_pump(project)
    return Expectation([DONE], lines={"a.psc": 5})


@case()
def a_deep_folder(project):
    folder = project / "scr"
    for _ in range(300):
        folder = folder / "level"
        write(folder / "a.psc", PLAIN)
    write(project / "scr/a.psc", PLAIN)
    return Expectation([DONE], unchanged=["a.psc"], options=["--make-folders"])


# --- What is no file ---

def odd_screen(make):
    def prepare(project):
        write(project / "scr/a.psc", PLAIN)
        make(project / "scr/b.psc")
        return Expectation([DONE, DONE_WITH_ERRORS, REFUSED, FILES_MISSING])
    return prepare


def odd_screen_of_a_dry_run(make):
    def prepare(project):
        write(project / "scr/a.psc", candidate(1))
        with_pump(project)
        make(project / "scr/b.psc")
        return Expectation([DONE, DONE_WITH_ERRORS, FILES_MISSING], unchanged=["a.psc"],
                           options=["--dry-run", "--force"])
    return prepare


def odd_version(make):
    def prepare(project):
        write(project / "scr/a.psc", PLAIN)
        write(project / "scr_bak/a.psc", PLAIN)
        make(project / "scr/b.psc")
        write(project / "scr_bak/b.psc", PLAIN)
        return Expectation([REFUSED], b"could not be read", command="diff")
    return prepare


def odd_entry(name):
    """What lies there is of no use to a run, which neither waits for it nor reads it."""
    def with_entry(make):
        def prepare(project):
            write(project / "scr/a.psc", candidate(1))
            with_pump(project)
            (project / name).parent.mkdir(exist_ok=True)
            make(project / name)
            return Expectation([DONE, DONE_WITH_ERRORS, REFUSED, FILES_MISSING], options=["--force"], kept=["a.psc"])
        return prepare
    return with_entry


def odd_shape(make):
    def prepare(project):
        write(project / "scr/a.psc", candidate(1), PLAIN)
        (project / "mac").mkdir()
        make(project / "mac/pump.plb")
        return Expectation([DONE_WITH_ERRORS, REFUSED], message=b"Could not open Shape File")
    return prepare


def empty_device_as_a_shape(project):
    write(project / "scr/a.psc", candidate(1), PLAIN)
    (project / "mac").mkdir()
    (project / "mac/pump.plb").symlink_to("/dev/null")
    # Like any shape without a section it stands for nothing.
    return Expectation([DONE, DONE_WITH_ERRORS])


def make_socket(path):
    # The address of a socket is short; the folder that it is made in is not.
    here = os.getcwd()
    os.chdir(path.parent)
    with socket.socket(socket.AF_UNIX) as end:
        end.bind(path.name)
    os.chdir(here)


for kind, make in {
        "pipe": os.mkfifo, "socket": make_socket, "folder": os.mkdir,
        "endless_device": lambda path: path.symlink_to("/dev/zero")}.items():
    CASES.append((f"{kind}_as_a_screen", "small", LONGEST_ODD_RUN, odd_screen(make)))
    CASES.append((f"{kind}_as_a_shape", "small", LONGEST_ODD_RUN, odd_shape(make)))
    CASES.append((f"{kind}_as_a_screen_of_a_dry_run", "small", LONGEST_ODD_RUN, odd_screen_of_a_dry_run(make)))
    CASES.append((f"{kind}_as_a_version", "small", LONGEST_ODD_RUN, odd_version(make)))
    for place in (".vantrel.lock", ".vantrel.lock.rmlock", ".vantrel.run", ".vantrel.run.new", "scr_temp/a.psc"):
        CASES.append((f"{kind}_as_{place}", "small", LONGEST_ODD_RUN, odd_entry(place)(make)))
CASES.append(("empty_device_as_a_shape", "small", LONGEST_ODD_RUN, empty_device_as_a_shape))


@case("small, of limited memory")
def more_than_the_memory(project):
    write(project / "scr/a.psc")
    os.truncate(project / "scr/a.psc", 400 * MEBIBYTE)
    write(project / "scr/b.psc", PLAIN)
    return Expectation([REFUSED], b"There is not enough memory", unchanged=["a.psc", "b.psc"],
                       most_addresses=400 * MEBIBYTE)


# --- A system that has no more threads ---

@case("small, of limited memory")
def no_thread_for_a_run(project):
    write(project / "scr/a.psc", candidate(1))
    with_pump(project)
    return Expectation([REFUSED], b"It could not be done", unchanged=["a.psc"], has_threads=False)


@case("small, of limited memory")
def no_thread_for_a_recovery(project):
    write(project / "scr/a.psc", candidate(1))
    with_pump(project)
    write(project / ".vantrel.run", b"vantrel run 1\nstage: converting\nended at: converting\nprogram: x\n"
          b"started: 2024-03-05T14:07:09\nmakes folders: no\nlist is whole: yes\nhad scr_temp: no\n"
          b"shape: pump.plb\nscreen: a.psc\nend\n")
    return Expectation([FILES_MISSING], b"It could not be done", unchanged=["a.psc"], command="recover",
                       options=["--finish"], has_threads=False)


@case("small, of limited memory")
def more_than_is_read(project):
    write(project / "scr/a.psc")
    os.truncate(project / "scr/a.psc", TOO_LARGE)
    write(project / "scr/b.psc", PLAIN)
    return Expectation([REFUSED], b"make it smaller than 512 MiB", unchanged=["a.psc", "b.psc"],
                       most_addresses=400 * MEBIBYTE)


# --- Large ---

@case("large")
def a_screen_that_is_too_large_and_forced(project):
    # It is copied, and not moved, since it has another name as well.
    write(project / "scr/a.psc", (b"TXT;a;b\n", TOO_LARGE // 8))
    os.link(project / "scr/a.psc", project / "also.psc")
    write(project / "scr/b.psc", PLAIN)
    return Expectation([FILES_MISSING], b"Could not open Image File", unchanged=["b.psc"], backups=["a.psc"],
                       options=["--force"], bytes_per_byte=0)


HUNDRED_MEGABYTES = 100 * MEBIBYTE


@case("large")
def a_long_plain_line(project):
    write(project / "scr/a.psc", b"TXT;", (b"x", HUNDRED_MEGABYTES), b"\n", PLAIN)
    return Expectation([DONE], unchanged=["a.psc"])


@case("large")
def a_long_line_of_separators(project):
    write(project / "scr/a.psc", PLAIN, b"ID", (b";", HUNDRED_MEGABYTES), b"\n")
    return Expectation([DONE], unchanged=["a.psc"])


@case("large")
def a_long_line_of_a_replaced_object(project):
    write(project / "scr/a.psc", candidate(1), b"TXT;", (b"x", HUNDRED_MEGABYTES), b"\n", PLAIN)
    with_pump(project)
    return Expectation([DONE], lines={"a.psc": 5})


@case("large")
def a_long_extra_text(project):
    write(project / "scr/a.psc", candidate(1).rstrip(b"\n"), b";0", (b";x", HUNDRED_MEGABYTES // 2), b"\n", PLAIN)
    with_pump(project)
    return Expectation([DONE], lines={"a.psc": 5})


@case("large")
def a_long_line_in_a_shape(project):
    write(project / "scr/a.psc", candidate(1), PLAIN)
    with_pump(project, (SHAPE, b"TXT;", (b"x", HUNDRED_MEGABYTES), b"\n"))
    return Expectation([DONE], lines={"a.psc": 6})


@case("large")
def a_long_line_of_points_in_a_shape(project):
    points = HUNDRED_MEGABYTES // 4
    write(project / "scr/a.psc", candidate(1), PLAIN)
    with_pump(project, (SHAPE, b"PNT;%d;0" % points, (b";1;2", points), b"\n"))
    return Expectation([DONE], lines={"a.psc": 6})


@case("large")
def a_long_name(project):
    write(project / "scr/a.psc", b"ID;1;O\nLIB;", (b"x", HUNDRED_MEGABYTES), b";1;p;OBJ:a\n",
          b"PSDV;0;0;9;9;0;1;0;0;0;0;1\n", PLAIN)
    # The name is part of the object, of its path, of its reports and of its messages.
    return Expectation([DONE, DONE_WITH_ERRORS], bytes_per_byte=20)


@case("large")
def a_million_plain_objects(project):
    write(project / "scr/a.psc", (PLAIN, 1_000_000))
    return Expectation([DONE], unchanged=["a.psc"])


@case("large")
def a_million_replaced_objects(project):
    write_each(project / "scr/a.psc", 1_000_000, lambda index: candidate(index + 1))
    with_pump(project)
    return Expectation([DONE], lines={"a.psc": 3_000_000})


@case("large")
def a_million_rows_of_a_table(project):
    a_million_replaced_objects(project)
    return Expectation([DONE], lines={"a.psc": 3_000_000}, message=b"Image File", format=())


@case("large")
def a_million_parts_of_one_object(project):
    write(project / "scr/a.psc", (candidate(1), 1_000_000))
    with_pump(project)
    return Expectation([DONE], lines={"a.psc": 3})


@case("large")
def a_hundred_thousand_screens(project):
    for index in range(100_000):
        write(project / f"scr/s{index}.psc", candidate(1), PLAIN)
    with_pump(project)
    # A few kilobytes for each: its path and its report.
    return Expectation([DONE], lines={"s0.psc": 5, "s99999.psc": 5}, fixed_bytes=FIXED_BYTES + 100_000 * 4096)


# --- Running ---

class Failure(Exception):
    pass


def largest_file(project):
    return max((path.lstat().st_size for path in project.rglob("*") if path.is_file() and not path.is_symlink()),
               default=0)


def without_threads(program, folder):
    """The program where a user may start no thread, and what starts it there: for root there is no such limit."""
    guard = ["prlimit", "--nproc=1"]
    if os.geteuid() != 0:
        return program, guard
    program = copy_for_others(program, folder / "program")
    for path in [folder, *folder.rglob("*")]:
        path.chmod(0o777 if path.is_dir() or path.parent.name == "program" else 0o666)
    return program, ["setpriv", "--reuid=54321", "--regid=54321", "--clear-groups", *guard]


def execute(program, arguments, home, seconds, guard):
    """Returns exit status, output and peak memory of a run that ends in time."""
    environment = {"HOME": str(home), "XDG_STATE_HOME": str(home), "LC_ALL": "C.UTF-8", "TMPDIR": str(home),
                   "LD_LIBRARY_PATH": str(pathlib.Path(program).parent)}
    environment |= {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}
    # What reads without an end must not take the machine's memory.
    environment["ASAN_OPTIONS"] = environment.get("ASAN_OPTIONS", "") + ":hard_rss_limit_mb=4096"
    with open(home / "output", "wb") as output:
        process = subprocess.Popen([*guard, program, *arguments], stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.STDOUT, env=environment)
    watch = threading.Timer(seconds, os.kill, (process.pid, signal.SIGKILL))
    watch.start()
    _, status, usage = os.wait4(process.pid, 0)
    watch.cancel()
    process.returncode = os.waitstatus_to_exitcode(status)
    with open(home / "output", "rb") as output:
        text = output.read(MEBIBYTE)
    if process.returncode == -signal.SIGKILL:
        raise Failure(f"it did not end within {seconds} seconds")
    return process.returncode, text, usage.ru_maxrss * 1024


def line_count(path):
    count = 0
    with open(path, "rb") as file:
        while block := file.read(MEBIBYTE):
            count += block.count(b"\n")
    return count


def have_same_content(one, other):
    with open(one, "rb") as first, open(other, "rb") as second:
        while True:
            block = first.read(MEBIBYTE)
            if block != second.read(MEBIBYTE):
                return False
            if not block:
                return True


def require(holds, complaint):
    if not holds:
        raise Failure(complaint)


def run(program, prepare, seconds, folder, checks_memory):
    """Returns the peak of memory and the size of the largest file."""
    project, home = folder / "plant", folder / "home"
    for made in (project / "log", home):
        made.mkdir(parents=True)
    expectation = prepare(project)
    size = largest_file(project)
    originals = folder / "originals"
    for name in [*expectation.unchanged, *expectation.backups, *expectation.kept]:
        write(originals / name)
        shutil.copyfile(project / "scr" / name, originals / name)

    guard = []
    if not expectation.has_threads:
        program, guard = without_threads(program, folder)
    if checks_memory:
        guard += ["prlimit", f"--as={expectation.most_addresses}"]
    shapes = ["--all-shapes"] if expectation.command == "update" else []
    code, output, peak = execute(
        program, [expectation.command, "--project", str(project), *shapes, *expectation.options], home, seconds, guard)
    require(code in expectation.codes, f"exit code {code}; {output[-600:]!r}")
    require(expectation.message is None or expectation.message in output,
            f"the message {expectation.message!r} is missing; {output[-600:]!r}")
    for name in expectation.unchanged:
        require(have_same_content(project / "scr" / name, originals / name), f"{name} has changed")
    def holds(folder_name, name):
        place = project / folder_name / name
        return place.is_file() and have_same_content(place, originals / name)
    for name in expectation.backups:
        require(holds("scr_bak", name), f"{name} is not in the backup")
    for name in expectation.kept:
        require(holds("scr", name) or holds("scr_bak", name), f"{name} is lost")
    for name, count in expectation.lines.items():
        written = line_count(project / "scr" / name)
        require(written == count, f"{name} has {written} lines instead of {count}")
    bound = expectation.bytes_per_byte * size + expectation.fixed_bytes
    require(not checks_memory or peak <= bound,
            f"{peak // MEBIBYTE} MB of memory for a file of {size / MEBIBYTE:.1f} MB")
    return peak, size


def scratch_folder(number):
    """In memory where there is such a folder; a project's path means something, so it is plain."""
    root = pathlib.Path("/dev/shm" if os.access("/dev/shm", os.W_OK) else "/tmp")
    return root / f"vantrel-limits.{os.getpid()}.{number}"


def try_out(program, checks_memory, number):
    """Returns what came of the case with a number, and whether it holds."""
    name, _, seconds, prepare = CASES[number]
    folder = scratch_folder(number)
    try:
        peak, largest = run(program, prepare, LONGEST_KNOWN_RUN if name in KNOWN else seconds, folder, checks_memory)
        return f"{peak // MEBIBYTE} MB, largest file {largest / MEBIBYTE:.1f} MB", True
    except Failure as failure:
        return str(failure), False
    finally:
        shutil.rmtree(folder)


def chosen_cases(arguments):
    """The numbers of the cases that are asked for."""
    sizes = ["large"] if arguments.large else ["small"]
    if not arguments.large and not arguments.no_memory:
        sizes.append("small, of limited memory")
    return [number for number, (name, size, *_) in enumerate(CASES)
            if (name in arguments.case if arguments.case else size in sizes)]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--large", action="store_true", help="the large cases in place of the small ones")
    parser.add_argument("--no-memory", action="store_true", help="for builds that need memory of their own")
    parser.add_argument("--share", type=parse_share, default=Share(0, 1), metavar="K/N", help="of these cases")
    parser.add_argument("--verbose", action="store_true")
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("case", nargs="*")
    arguments = parser.parse_args()

    failures = 0
    numbers = arguments.share.of(chosen_cases(arguments))
    program = os.path.abspath(arguments.program)
    with concurrent.futures.ThreadPoolExecutor(arguments.workers) as pool:
        outcomes = pool.map(functools.partial(try_out, program, not arguments.no_memory), numbers)
        for number, (result, holds) in zip(numbers, outcomes):
            name = CASES[number][0]
            is_expected = holds != (name in KNOWN)
            failures += not is_expected
            if not is_expected or arguments.verbose:
                print(f"{'' if is_expected else 'FAIL '}{name}: {result}", flush=True)
    sys.exit(1 if failures else 0)


main()
