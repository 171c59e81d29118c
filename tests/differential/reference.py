#!/usr/bin/env python3
"""A slow and obvious second implementation of the Vantrel conversion.

It exists to be compared with the program: the same project, converted by
both, has to give the same files, the same change log and the same events.
So nothing here is clever.  Every operation of the converter has one plain
function, and the functions do their steps in the order in which the program
does them.

Call:

    python3 reference.py PROJECT [--shape NAME ...] [--shapes-file FILE]
                         [--all-shapes] [--make-folders] --report FILE

The run is done in place on the folder PROJECT.  FILE receives one JSON object
per line, in the order of the program's signals and error log entries:

    {"kind": "progress", "count": n, "index": i}
    {"kind": "file", "path": text}
    {"kind": "report", "status": "REPLACE" | "NO REPLACE" | "ERROR",
     "imageFile": .., "shapeFile": .., "imageObject": .., "shapeObject": ..,
     "initText": .., "error": .., "level": n, "rect3": [left, top, right, bottom],
     "rect2": .., "rect": ..}
    {"kind": "log", "level": n, "message": text}
    {"kind": "end"}
"""

from __future__ import annotations

import argparse
import datetime
import json
import os
import re
import shutil
import stat
import sys
from dataclasses import dataclass, field
from typing import Any, Dict, Iterable, List, NamedTuple, Optional, Tuple

# ---------------------------------------------------------------------------
# Numbers
# ---------------------------------------------------------------------------

INT_MIN = -(2 ** 31)
INT_MAX = 2 ** 31 - 1

# The characters of Latin-1 that count as white space around a number.
NUMBER_BLANKS = " \t\n\v\f\r"


def wrap(value: int) -> int:
    """Cut an exact result down to a signed 32-bit number."""
    value &= 0xFFFFFFFF
    return value - 2 ** 32 if value > INT_MAX else value


def to_int(text: str) -> int:
    """Read a decimal number; whatever is not one, or is too big, is 0."""
    # As QString::toInt has it, a number ends at a NUL whatever follows.
    text = text.partition("\0")[0].strip(NUMBER_BLANKS)
    match = re.fullmatch(r"([+-]?)([0-9]+)", text)
    if match is None:
        return 0
    digits = match.group(2).lstrip("0")
    if digits == "" or len(digits) > 10:
        return 0
    value = int(digits)
    if match.group(1) == "-":
        value = -value
    if value < INT_MIN or value > INT_MAX:
        return 0
    return value


def half(value: int) -> int:
    """Half of a number, rounded toward zero."""
    if value < 0:
        return -(-value // 2)
    return value // 2


# ---------------------------------------------------------------------------
# Text
# ---------------------------------------------------------------------------

PLACE_MARKER = re.compile(r"%L?([0-9]{1,2})")


def arg(template: str, value: str) -> str:
    """Fill every place marker that has the lowest number, as QString::arg."""
    numbers = [int(match.group(1)) for match in PLACE_MARKER.finditer(template)]
    if not numbers:
        return template
    lowest = min(numbers)

    def fill(match: "re.Match[str]") -> str:
        return value if int(match.group(1)) == lowest else match.group(0)

    return PLACE_MARKER.sub(fill, template)


def to_latin1(text: str) -> bytes:
    """Latin-1 bytes; each 16-bit unit that has no such byte becomes '?'."""
    out = bytearray()
    for character in text:
        code = ord(character)
        if code <= 0xFF:
            out.append(code)
        elif code <= 0xFFFF:
            out += b"?"
        else:
            out += b"??"
    return bytes(out)


def split_fields(line: str) -> List[str]:
    return line.split(";")


def join_fields(fields: List[str]) -> str:
    line = ""
    for text in fields:
        line += text + ";"
    return line[:-1]


def field_at(fields: List[str], index: int) -> str:
    """A field that the line does not have reads as empty."""
    return fields[index] if index < len(fields) else ""


def number_at(fields: List[str], index: int) -> int:
    return to_int(field_at(fields, index))


def set_field(fields: List[str], index: int, text: str) -> None:
    """A field that the line does not have stays missing."""
    if index < len(fields):
        fields[index] = text


# ---------------------------------------------------------------------------
# Rectangles
# ---------------------------------------------------------------------------


class Rect(NamedTuple):
    left: int
    top: int
    right: int
    bottom: int


DEFAULT_RECT = Rect(0, 0, -1, -1)


def normalized(rect: Rect) -> Rect:
    """Swapped corners are put right and moved by one, as QRect::normalized."""
    left, top, right, bottom = rect
    if rect.right < rect.left - 1:
        left = wrap(rect.right + 1)
        right = wrap(rect.left - 1)
    if rect.bottom < rect.top - 1:
        top = wrap(rect.bottom + 1)
        bottom = wrap(rect.top - 1)
    return Rect(left, top, right, bottom)


def area(rect: Rect) -> int:
    width = wrap(rect.right - rect.left + 1)
    height = wrap(rect.bottom - rect.top + 1)
    return width * height


def centre(first: int, last: int) -> int:
    """The middle of the span from first to last, both inclusive."""
    return wrap(first + half(wrap(last - first + 1)))


def rect_of_fields(fields: List[str]) -> Rect:
    return normalized(Rect(number_at(fields, 1), number_at(fields, 2),
                           number_at(fields, 3), number_at(fields, 4)))


# ---------------------------------------------------------------------------
# The record of the conversion
# ---------------------------------------------------------------------------


@dataclass
class Block:
    first_line: int = 0
    last_line: int = 0
    extra_number: int = 0
    status: int = 0
    replace: bool = False
    icon_toggle: bool = False
    shape_file: str = ""
    image_file: str = ""
    init_text: str = ""
    rect: Rect = DEFAULT_RECT
    rect2: Rect = DEFAULT_RECT
    image_object: str = ""
    shape_object: str = ""
    error: str = ""
    extra_text: str = ""
    missing_icons: List[str] = field(default_factory=list)
    rect3: Rect = DEFAULT_RECT


def clear_block(block: Block) -> None:
    block.first_line = -1
    block.last_line = -1
    block.extra_number = -1
    block.status = 0
    block.replace = False
    block.icon_toggle = False
    block.shape_file = ""
    block.image_file = ""
    block.init_text = ""
    block.rect = Rect(99999, 99999, 0, 0)
    block.rect2 = Rect(0, 0, 0, 0)
    block.image_object = ""
    block.shape_object = ""
    block.error = ""
    block.extra_text = ""
    block.missing_icons = []
    block.rect3 = Rect(-99999, -99999, 0, 0)


def copy_block(block: Block) -> Block:
    copied = Block(**vars(block))
    copied.missing_icons = list(block.missing_icons)
    return copied


def status_text(status: int) -> str:
    if status == 1:
        return "NO REPLACE"
    if status == 2:
        return "ERROR"
    return "REPLACE"


# ---------------------------------------------------------------------------
# One run
# ---------------------------------------------------------------------------


@dataclass
class Run:
    project_dir: str
    filter_names: List[str] = field(default_factory=list)
    make_folders: bool = False
    stop_before: Optional[int] = None
    events: List[Dict[str, Any]] = field(default_factory=list)
    log_file_name: str = ""
    has_told_unfilled_row: bool = False
    failed_shape_files: List[str] = field(default_factory=list)
    shape_line_offset: int = -1


def set_filter_names(run: Run, names: Iterable[str]) -> None:
    run.filter_names = []
    for name in names:
        if name.lower() not in run.filter_names:
            run.filter_names.append(name.lower())


def emit_log(run: Run, level: int, message: str) -> None:
    run.events.append({"kind": "log", "level": level, "message": message})


def emit_report(run: Run, block: Block) -> None:
    """Report one object or file; the receiver appends it to the change log."""
    run.events.append({
        "kind": "report",
        "status": status_text(block.status),
        "imageFile": block.image_file,
        "shapeFile": block.shape_file,
        "imageObject": block.image_object,
        "shapeObject": block.shape_object,
        "initText": block.init_text,
        "error": block.error,
        "level": block.extra_number,
        "rect3": list(block.rect3),
        "rect2": list(block.rect2),
        "rect": list(block.rect),
    })
    is_filled = write_change_log(block, run.log_file_name)
    if not is_filled and not run.has_told_unfilled_row:
        run.has_told_unfilled_row = True
        emit_log(run, 4, "A row of the change log would be too long with the "
                 "place holders in its names filled, so they were left as "
                 "they are. The names stand on screen " + block.image_file)


# ---------------------------------------------------------------------------
# Change log
# ---------------------------------------------------------------------------

# A row that is filled has fewer characters than this after every step.
FILLED_ROW_LIMIT = 1 << 16

LOG_HEADER = ("Status; Image File; Shape File; Image-Object; "
              "Replace by Shape-Object; Uminitalisation; Error")


def create_log_file_name(project_dir: str) -> str:
    now = datetime.datetime.now().strftime("_%Y-%m-%d_%H-%M-%S")
    return project_dir + "/log/Vantrel" + now + ".csv"


def without_first_four(text: str) -> str:
    if len(text) < 4:
        return text
    return text[4:]


def spelt_out(text: str) -> str:
    """The control characters of ASCII as a program's text would spell them."""
    short = {"\n": "\\n", "\r": "\\r", "\t": "\\t"}
    return "".join(short.get(c, "\\x%02x" % ord(c)) if c < " " or c == "\x7f"
                   else c for c in text)


def filled_size(row: str, value: str) -> int:
    """How long a row becomes when a value takes the place of its markers."""
    without = len(to_latin1(arg(row, "")))
    markers = len(to_latin1(arg(row, "x"))) - without
    return without + markers * len(to_latin1(value))


def filled_row(fields: List[str]) -> Optional[str]:
    """The row, or nothing where it would become too long on the way."""
    row = "%1;%2;%3;%4;%5;%6;%7"
    for value in fields:
        if filled_size(row, value) >= FILLED_ROW_LIMIT:
            return None
        row = arg(row, value)
    return row


def write_change_log(block: Block, path: str) -> bool:
    """False where a row was written whose place markers were not filled."""
    with_header = not file_exists(path)
    try:
        log = open(fs(path), "ab")
    except (OSError, ValueError):
        return True
    with log:
        if with_header:
            log.write(to_latin1(LOG_HEADER) + b"\n")
        image_object = without_first_four(block.image_object)
        shape_object = without_first_four(block.shape_object)
        if shape_object != "" and shape_object == image_object:
            shape_object = ""
        fields = [status_text(block.status), block.image_file,
                  block.shape_file, image_object, shape_object,
                  block.init_text, block.error]
        fields = [spelt_out(value) for value in fields]
        has_markers = any("%" in value for value in fields)
        row = filled_row(fields) if has_markers else ";".join(fields)
        is_filled = row is not None
        if row is None:
            row = ";".join(fields)
        log.write(to_latin1(row) + b"\n")
    return is_filled


# ---------------------------------------------------------------------------
# File system
# ---------------------------------------------------------------------------


def fs(path: str) -> bytes:
    """File names are UTF-8 whatever the locale says."""
    return path.encode("utf-8", "surrogateescape")


def file_exists(path: str) -> bool:
    """True for folders too; a link without a target does not exist."""
    return os.path.exists(fs(path))


def dir_exists(path: str) -> bool:
    return os.path.isdir(fs(path))


def is_link(path: str) -> bool:
    return os.path.islink(fs(path))


def make_dir(path: str, with_parents: bool) -> None:
    """Failures show later, when something is put into the folder."""
    try:
        if with_parents:
            os.makedirs(fs(path), exist_ok=True)
        else:
            os.mkdir(fs(path))
    except (OSError, ValueError):
        pass


def copy_file(source: str, target: str) -> bool:
    """An existing target is never overwritten."""
    if file_exists(target):
        return False
    try:
        shutil.copyfile(fs(source), fs(target))
        shutil.copymode(fs(source), fs(target))
    except (OSError, ValueError):
        return False
    return True


def read_bytes(path: str) -> Optional[bytes]:
    try:
        with open(fs(path), "rb") as file:
            return file.read()
    except (OSError, ValueError):
        return None


def all_names(path: str) -> List[str]:
    """Every entry of a folder, by name without regard to letter case."""
    try:
        names = [name.decode("utf-8", "surrogateescape")
                 for name in os.listdir(fs(path))]
    except (OSError, ValueError):
        return []
    return sorted(names, key=lambda name: (name.lower(), name))


def listed_names(path: str) -> List[str]:
    """The entries that a listing shows: plain files and folders, directly or
    through a link, whose names do not begin with a dot."""
    names = []
    for name in all_names(path):
        if name.startswith("."):
            continue
        try:
            mode = os.stat(fs(path + "/" + name)).st_mode
        except OSError:
            continue
        if stat.S_ISREG(mode) or stat.S_ISDIR(mode):
            names.append(name)
    return names


class FileInfo(NamedTuple):
    file_path: str
    absolute_path: str


def remove_dir(path: str) -> bool:
    if not dir_exists(path):
        return True
    entries = [path + "/" + name for name in all_names(path)]
    folders = [entry for entry in entries
               if dir_exists(entry) and not is_link(entry)]
    others = [entry for entry in entries if entry not in folders]
    for entry in folders:
        if not remove_dir(entry):
            return False
    for entry in others:
        try:
            os.remove(fs(entry))
        except OSError:
            return False
    try:
        os.rmdir(fs(path))
    except OSError:
        return False
    return True


def find_image_files(path: str, files: List[FileInfo],
                     inside_of: Tuple[bytes, ...] = ()) -> None:
    here = os.path.realpath(fs(path))
    if here in inside_of:
        return
    for name in listed_names(path):
        file_path = path + "/" + name
        if dir_exists(file_path):
            find_image_files(file_path, files, inside_of + (here,))
        elif ".psc" in file_path:
            files.append(FileInfo(file_path, os.path.abspath(path)))


def move_image_files(source: str, target: str, project_dir: str,
                     make_folders: bool) -> bool:
    root = project_dir + source
    files: List[FileInfo] = []
    find_image_files(root, files)
    ok = True
    for info in files:
        target_folder = info.absolute_path.replace(source, target)
        if not dir_exists(target_folder):
            make_dir(target_folder, make_folders)
        copied = copy_file(info.file_path,
                           info.file_path.replace(source, target))
        ok = ok and copied
    if not ok:
        return False
    remove_dir(root)
    return True


def find_file_in_bmp_folders(folder: str, file_name: str,
                             inside_of: Tuple[bytes, ...] = ()) -> bool:
    inside_of = inside_of + (os.path.realpath(fs(folder)),)
    for name in listed_names(folder):
        entry = folder + "/" + name
        lower = entry.lower()
        if lower.find("/bmp") <= 0:
            continue
        if not dir_exists(entry):
            continue
        if file_exists(lower + "/" + file_name):
            return True
        if os.path.realpath(fs(lower)) in inside_of:
            continue
        if find_file_in_bmp_folders(lower, file_name, inside_of):
            return True
    return False


# ---------------------------------------------------------------------------
# Reading files, checking fields
# ---------------------------------------------------------------------------


def read_lines(path: str) -> Optional[List[str]]:
    data = read_bytes(path)
    if data is None:
        return None
    pieces = data.split(b"\n")
    if pieces[-1] == b"":
        # The end of the last line, not one more line.
        pieces.pop()
    return [piece.strip(b" \t\n\v\f\r").decode("latin-1") for piece in pieces]


def read_image_file(path: str, lines: List[str]) -> Tuple[bool, str]:
    read = read_lines(path)
    if read is None:
        return False, "Could not open Image File"
    lines[:] = read
    return True, ""


def check_field_count(tag: str, present: int, required: int, index: int,
                      image_file: bool, offset: int) -> Tuple[bool, str]:
    """The result and the message, which may be there although the line
    passes: a line of points may have more of them than it says."""
    if image_file:
        kind = "Image File"
        line_number = index + 1
        short_points_line_number = index + 2
    else:
        kind = "Shape File"
        line_number = offset + index + 1
        short_points_line_number = 2 * offset + index + 2

    def message(number: int, relation: str) -> str:
        return (kind + " [line " + str(number) + "]: " + tag
                + "... not enough parameters (must be " + relation + " "
                + str(required) + ")")

    if tag != "PNT":
        if present >= required:
            return True, ""
        return False, message(line_number, ">=")
    if present == required:
        return True, ""
    if present > required:
        return True, message(line_number, "==")
    return False, message(short_points_line_number, ">=")


def report_image_file_error(run: Run, path: str, message: str) -> str:
    block = Block()
    clear_block(block)
    block.image_file = path
    block.status = 2
    block.error = message
    emit_report(run, block)
    expanded = message.replace("Image File", arg("Image File %1", path))
    emit_log(run, 3, expanded)
    return expanded


# ---------------------------------------------------------------------------
# Checking the lines of a file
# ---------------------------------------------------------------------------


def check_image_lines(lines: List[str]) -> Tuple[bool, str]:
    error = ""
    for index, line in enumerate(lines):
        fields = split_fields(line)
        if line.startswith("ID;"):
            ok, error = check_field_count("", len(fields), 3, index, True, 0)
        elif line.startswith("PNT;"):
            ok, error = check_field_count(
                "PNT", len(fields) - 3, wrap(2 * number_at(fields, 1)),
                index, True, 0)
        elif line.startswith("PSDV"):
            ok, error = check_field_count("PSDV", len(fields), 12, index,
                                          True, 0)
        elif line.startswith("LIB"):
            ok, error = check_field_count("LIB", len(fields), 5, index,
                                          True, 0)
        else:
            continue
        if not ok:
            return False, error
    return True, error


# Prefix of the line, tag in the message, fields required.  The order decides:
# the short prefixes also catch the lines with a counted number of entries,
# and some messages name another tag than the line's own.
SHAPE_LINE_RULES: List[Tuple[str, str, int]] = [
    ("ID;", "", 3),
    ("PNT;", "PNT", -1),
    ("PSDV", "PSDV", 13),
    ("LIB", "LIB", 4),
    ("IVG", "IVG", 2),
    ("IBG", "IBG", 2),
    ("ITC", "ITC", 2),
    ("IVGN", "IVGN", 3),
    ("IBGN", "ITCN", 3),
    ("ITCN", "ITCN", 3),
    ("ITA", "ITCN", 2),
    ("IDMS", "IDMS", 2),
    ("ITX1", "ITX1", 4),
    ("ITX2", "ITX2", 7),
    ("ITXN", "ITXN", 3),
    ("IIK1", "IIK1", 2),
    ("IIK2", "IIK2", 3),
    ("IIKN", "IIKN", 3),
    ("ISB", "ISB", 2),
    ("ISA", "ISA", 21),
    ("IX1", "IX1", 6),
    ("IX2", "IX2", 6),
    ("IY1", "IX2", 6),
    ("IY2", "IY2", 6),
    ("IBW", "IBW", 8),
]


def check_shape_lines(lines: List[str], offset: int) -> Tuple[bool, str]:
    error = ""
    for index, line in enumerate(lines):
        for prefix, tag, required in SHAPE_LINE_RULES:
            if not line.startswith(prefix):
                continue
            fields = split_fields(line)
            present = len(fields)
            if prefix == "PNT;":
                present = len(fields) - 3
                required = wrap(2 * number_at(fields, 1))
            ok, error = check_field_count(tag, present, required, index,
                                          False, offset)
            if ok and prefix == "ITXN":
                required = wrap(3 * (number_at(fields, 1) + 1))
                ok, error = check_field_count(tag, present, required, index,
                                              False, offset)
            if not ok:
                return False, error
            break
    return True, error


# ---------------------------------------------------------------------------
# Shape files
# ---------------------------------------------------------------------------


def shape_path_of(project_dir: str, shape_file: str) -> str:
    path = project_dir + "/mac/" + shape_file
    if not file_exists(path):
        path = project_dir + "/mac/vlo/" + shape_file
    return path


def open_shape_file(run: Run, path: str, lines: List[str]) -> Tuple[bool, str]:
    if ".cat" in path:
        return False, "Could not open Shape File"
    read = read_lines(path)
    if read is None:
        return False, "Could not open Shape File"
    lines.clear()
    run.shape_line_offset = -1
    for number, line in enumerate(read):
        if line.startswith("ID;") and run.shape_line_offset < 0:
            run.shape_line_offset = number
        if run.shape_line_offset >= 0:
            lines.append(line)
    return True, ""


@dataclass
class Section:
    """The kind of the section that the walk over some lines is in."""
    icon: bool = False
    text: bool = False

    def enter(self, fields: List[str]) -> None:
        if field_at(fields, 2) == "Icon":
            self.icon = True
            self.text = False
        else:
            self.icon = False
            self.text = field_at(fields, 2) == "Text"


def take_icon_rect(block: Block, rect: Rect, section: Section) -> None:
    if not section.icon:
        return
    if block.icon_toggle:
        block.icon_toggle = False
    else:
        block.rect2 = rect
        block.icon_toggle = True


def take_largest_rect(block: Block, rect: Rect, section: Section,
                      fields: List[str], largest: int) -> int:
    """Returns the largest area so far."""
    if number_at(fields, 6) == 0:
        return largest
    if area(rect) > largest and not section.text:
        block.rect = rect
        return area(rect)
    return largest


def parse_shape_lines(project_dir: str, lines: List[str],
                      block: Block) -> bool:
    clear_block(block)
    section = Section()
    largest = 0
    for line in lines:
        fields = split_fields(line)
        if line.startswith("ID;"):
            section.enter(fields)
        elif line.startswith("LIB"):
            block.image_object = field_at(fields, 4)
        elif line.startswith("DIV"):
            if section.icon:
                icon = field_at(fields, 3)
                if not find_file_in_bmp_folders(project_dir, icon):
                    block.missing_icons.append(icon)
        elif line.startswith("PSDV"):
            rect = rect_of_fields(fields)
            take_icon_rect(block, rect, section)
            largest = take_largest_rect(block, rect, section, fields, largest)
    return True


# ---------------------------------------------------------------------------
# The objects of an image file
# ---------------------------------------------------------------------------


def split_objects(image_file: str, lines: List[str],
                  objects: List[Block]) -> bool:
    first_id = -1
    for index, line in enumerate(lines):
        if line.startswith("ID;"):
            first_id = index
            break
    if first_id < 0:
        return True

    head = Block()
    clear_block(head)
    head.image_file = image_file
    head.first_line = 0
    head.last_line = first_id - 1
    objects.append(head)

    working = Block()
    clear_block(working)
    recent_id = first_id
    first_object_seen = False
    index = first_id
    while index < len(lines):
        line = lines[index]
        if line.startswith("ID;"):
            recent_id = index
            index += 1
            continue
        if not line.startswith("PSDV"):
            index += 1
            continue
        fields = split_fields(line)
        level = number_at(fields, 11)

        if working.first_line < 0:
            if not first_object_seen and recent_id > first_id:
                # Sections without a rectangle come before the first object.
                # They belong to nothing, but their lines must not get lost.
                between = Block()
                clear_block(between)
                between.image_file = image_file
                between.first_line = first_id
                between.last_line = recent_id - 1
                objects.append(between)
            first_object_seen = True
            working.image_file = image_file
            working.first_line = recent_id
            working.extra_number = level
            if level > 0 and working.extra_text == "" and len(fields) > 13:
                working.extra_text = join_fields(fields[13:])
            before = split_fields(lines[index - 1])
            working.replace = (before[0] == "LIB"
                               and field_at(before, 1) != ""
                               and level >= 1)
            index += 1
            continue

        if recent_id == working.first_line:
            # No new section has begun, so there is nothing to cut at.
            index += 1
            continue
        if working.extra_number < 1 or level != working.extra_number:
            working.last_line = recent_id - 1
            objects.append(working)
            working = Block()
            clear_block(working)
            index = recent_id
            continue
        index += 1

    if working.first_line >= 0:
        working.last_line = len(lines) - 1
        working.replace = working.extra_number > 0
        objects.append(working)
    return True


def gather_scattered_objects(lines: List[str], objects: List[Block]) -> None:
    """The second classification pass: the later objects of a candidate's
    level are parts of the candidate and move in front of its last line."""
    if not any(block.replace for block in objects):
        return
    texts = [lines[block.first_line:block.last_line + 1] for block in objects]
    assert sum(len(text) for text in texts) == len(lines)

    candidate = 0
    while candidate < len(objects):
        if objects[candidate].replace:
            later = candidate + 1
            while later < len(objects):
                if (objects[later].extra_number
                        == objects[candidate].extra_number):
                    own = texts[candidate]
                    texts[candidate] = own[:-1] + texts[later] + own[-1:]
                    del texts[later]
                    del objects[later]
                else:
                    later += 1
        candidate += 1

    lines.clear()
    for block, text in zip(objects, texts):
        block.first_line = len(lines)
        lines.extend(text)
        block.last_line = len(lines) - 1


def read_shape_references(lines: List[str], objects: List[Block]) -> None:
    for block in objects:
        if not block.replace or block.first_line > block.last_line:
            continue
        section = Section()
        largest = 0
        for line in lines[block.first_line:block.last_line + 1]:
            fields = split_fields(line)
            if line.startswith("LIB"):
                block.shape_file = field_at(fields, 1).replace(".lib", ".plb")
                block.init_text = field_at(fields, 3)
                block.image_object = field_at(fields, 4)
                block.replace = block.init_text != ""
            elif line.startswith("ID;"):
                section.enter(fields)
            elif line.startswith("PSDV"):
                rect = rect_of_fields(fields)
                take_icon_rect(block, rect, section)
                if block.rect3.left == -99999 and block.rect3.top == -99999:
                    block.rect3 = block.rect3._replace(left=rect.left,
                                                       top=rect.top)
                largest = take_largest_rect(block, rect, section, fields,
                                            largest)


# ---------------------------------------------------------------------------
# Rewriting the lines of a shape
# ---------------------------------------------------------------------------


def replace_path_prefix(text: str, from_prefix: str, to_prefix: str) -> str:
    if text.startswith("System:"):
        return text
    if text.startswith(from_prefix):
        return to_prefix + text[len(from_prefix):]
    return text


def shift_reference_fields(fields: List[str], shift: int) -> str:
    for index in (4, 5):
        set_field(fields, index, str(wrap(number_at(fields, index) + shift)))
    return join_fields(fields)


def place_shape_lines(lines: List[str], target: Block, shape: Block) -> None:
    dx = wrap(target.rect.left - shape.rect.left)
    dy = wrap(target.rect.top - shape.rect.top)
    cx = wrap(centre(target.rect.left, target.rect.right)
              - centre(shape.rect.left, shape.rect.right))
    cy = wrap(centre(target.rect.top, target.rect.bottom)
              - centre(shape.rect.top, shape.rect.bottom))

    for index, line in enumerate(lines):
        if line.startswith("PNT;"):
            fields = split_fields(line)
            count = len(fields)
            if count > 3 and count - 3 == wrap(2 * number_at(fields, 1)):
                for k in range(3, count, 2):
                    fields[k] = str(wrap(to_int(fields[k]) + dx))
                    fields[k + 1] = str(wrap(to_int(fields[k + 1]) + dy))
            lines[index] = join_fields(fields)
        elif line.startswith("PSDV"):
            rebuilt = ""
            for text in split_fields(line)[:13]:
                rebuilt += text + ";"
            if target.extra_text != "":
                rebuilt += target.extra_text
            else:
                rebuilt = rebuilt[:-1]
            fields = split_fields(rebuilt)
            if len(fields) > 11:
                width = wrap(number_at(fields, 3) - number_at(fields, 1))
                height = wrap(number_at(fields, 4) - number_at(fields, 2))
                x1 = wrap(cx + number_at(fields, 1))
                if x1 < 0:
                    # Only the left edge is kept inside of the image.
                    x1 = 0
                y1 = wrap(cy + number_at(fields, 2))
                fields[1] = str(x1)
                fields[2] = str(y1)
                fields[3] = str(wrap(x1 + width))
                fields[4] = str(wrap(y1 + height))
                fields[11] = str(target.extra_number)
            lines[index] = join_fields(fields)


# Prefix of the line and the fields that are file references.
REFERENCE_FIELDS: List[Tuple[str, List[int]]] = [
    ("LIB", []),
    ("IVG;", [1]),
    ("IBG;", [1]),
    ("ITC;", [1]),
    ("IVGN", [2]),
    ("IBGN", [2]),
    ("ITCN", [2]),
    ("ITA", [1]),
    ("IDMS", [1]),
    ("ITX1", [1, 2, 3]),
    ("ITX2", [1, 2, 3, 4, 5, 6]),
    ("ITXN", [2]),
    ("IIK1", [1]),
    ("IIK2", [1, 2]),
    ("IIKN", [2]),
    ("ISB", [1]),
    ("ISA", [1, 2, 4, 6, 8, 14, 29, 20]),
    ("IX1", [1]),
    ("IX2", [1]),
    ("IY1", [1]),
    ("IY2", [1]),
    ("IBW", [7]),
]


def rebase_shape_lines(lines: List[str], from_prefix: str, to_prefix: str,
                       x_shift: int, y_shift: int) -> None:
    for index, line in enumerate(lines):
        for prefix, references in REFERENCE_FIELDS:
            if not line.startswith(prefix):
                continue
            fields = split_fields(line)

            def rebase(k: int) -> None:
                set_field(fields, k, replace_path_prefix(
                    field_at(fields, k), from_prefix, to_prefix))

            for k in references:
                rebase(k)
            if prefix == "LIB":
                set_field(fields, 3, to_prefix)
            if prefix == "ITXN":
                count = number_at(fields, 1)
                for k in range(5, len(fields), 3):
                    if k <= 3 * count + 2:
                        rebase(k)
            if prefix in ("IX1", "IX2", "IY1", "IY2"):
                for k in (2, 3, 4, 5):
                    if ":" in field_at(fields, k):
                        rebase(k)
                shift = x_shift if prefix in ("IX1", "IX2") else y_shift
                lines[index] = shift_reference_fields(fields, shift)
            else:
                lines[index] = join_fields(fields)
            break


# ---------------------------------------------------------------------------
# One image file
# ---------------------------------------------------------------------------


class Output:
    """The temp file that receives the converted lines."""

    def __init__(self, path: str) -> None:
        self.file = open(fs(path), "wb")

    def write(self, lines: Iterable[str]) -> None:
        for line in lines:
            self.file.write(to_latin1(line) + b"\n")

    def close(self) -> None:
        self.file.close()


def own_lines(lines: List[str], block: Block) -> List[str]:
    if block.first_line > block.last_line:
        return []
    return lines[block.first_line:block.last_line + 1]


def report_shape_file_error(run: Run, output: Output, block: Block,
                            image_lines: List[str], name: str,
                            error: str) -> None:
    block.status = 2
    block.error = error
    block.replace = False
    if name not in run.failed_shape_files:
        run.failed_shape_files.append(name)
    completed = error.replace("Shape File", arg("Shape File %1", name))
    emit_log(run, 3, completed)
    emit_report(run, block)
    output.write(own_lines(image_lines, block))


def read_objects(path: str, lines: List[str],
                 objects: List[Block]) -> Tuple[bool, str]:
    """Everything up to the question which objects may be replaced."""
    ok, error = read_image_file(path, lines)
    if not ok:
        read_shape_references(lines, objects)
        return False, error
    ok, error = check_image_lines(lines)
    if not ok:
        return False, error
    if not split_objects(path, lines, objects):
        return False, error
    gather_scattered_objects(lines, objects)
    read_shape_references(lines, objects)
    return True, ""


def convert_image_file(run: Run, path: str, temp_path: str) -> None:
    image_lines: List[str] = []
    shape_lines: List[str] = []
    objects: List[Block] = []

    ok, error = read_objects(path, image_lines, objects)
    if not ok:
        report_image_file_error(run, path, error)
        return

    if not any(block.replace for block in objects):
        block = Block()
        clear_block(block)
        block.image_file = path
        block.status = 1
        emit_report(run, block)
        copy_file(path, temp_path)
        return

    try:
        output = Output(temp_path)
    except (OSError, ValueError):
        error = arg("Could not open Temp File %1", temp_path)
        block = Block()
        clear_block(block)
        block.image_file = path
        block.status = 2
        block.error = error
        emit_report(run, block)
        emit_log(run, 3, error)
        return

    for block in objects:
        convert_object(run, output, block, image_lines, shape_lines)
    output.close()


def convert_object(run: Run, output: Output, block: Block,
                   image_lines: List[str], shape_lines: List[str]) -> None:
    if not block.replace:
        output.write(own_lines(image_lines, block))
        return
    if (not run.filter_names
            or block.shape_file.lower() not in run.filter_names):
        output.write(own_lines(image_lines, block))
        return

    shape_path = shape_path_of(run.project_dir, block.shape_file)
    shape = Block()
    # A first pass over the lines that the object before has left.
    parse_shape_lines(run.project_dir, shape_lines, shape)
    place_shape_lines(shape_lines, copy_block(block), copy_block(shape))

    ok, error = open_shape_file(run, shape_path, shape_lines)
    if not ok:
        report_shape_file_error(run, output, block, image_lines,
                                block.shape_file, error)
        return
    ok, error = check_shape_lines(shape_lines, run.shape_line_offset)
    if not ok:
        report_shape_file_error(run, output, block, image_lines,
                                shape_path, error)
        return

    parse_shape_lines(run.project_dir, shape_lines, shape)
    place_shape_lines(shape_lines, copy_block(block), copy_block(shape))
    dx = wrap(centre(block.rect.left, block.rect.right)
              - centre(shape.rect.left, shape.rect.right))
    dy = wrap(centre(block.rect.top, block.rect.bottom)
              - centre(shape.rect.top, shape.rect.bottom))
    rebase_shape_lines(shape_lines, shape.image_object, block.init_text,
                       dx, dy)
    block.shape_object = shape.image_object
    output.write(shape_lines)
    emit_report(run, block)
    for icon in shape.missing_icons:
        report_shape_file_error(run, output, block, image_lines, icon,
                                arg("Ikon %1 does not exist", icon))


# ---------------------------------------------------------------------------
# The run over a project
# ---------------------------------------------------------------------------

COPY_BACK_MESSAGE = ("!!! Could not copy all files from \\scr_temp folder to "
                     "\\scr. Copy them manually !!!")


def save_files_without_backup(run: Run, files: List[FileInfo]) -> bool:
    """Nothing may be removed from the image folder that the backup does not
    hold; what is missing there is copied now."""
    ok = True
    for info in files:
        below = info.file_path[len(run.project_dir):]
        target = run.project_dir + below.replace("/scr", "/scr_bak")
        content = read_bytes(info.file_path)
        if content is not None and content == read_bytes(target):
            continue
        make_dir(os.path.dirname(target), True)
        try:
            if os.path.lexists(fs(target)):
                os.remove(fs(target))
        except OSError:
            pass
        if not copy_file(info.file_path, target):
            ok = False
    return ok


def convert(run: Run) -> None:
    project_dir = run.project_dir
    files: List[FileInfo] = []
    find_image_files(project_dir + "/scr", files)
    run.log_file_name = create_log_file_name(project_dir)
    count = len(files)

    for index, info in enumerate(files):
        temp_folder = info.absolute_path.replace("/scr", "/scr_temp")
        if not dir_exists(temp_folder):
            make_dir(temp_folder, run.make_folders)
        temp_path = info.file_path.replace("/scr", "/scr_temp")
        if run.stop_before is not None and index >= run.stop_before:
            run.events.append({"kind": "end"})
            return
        run.events.append({"kind": "progress", "count": count,
                           "index": index})
        run.events.append({"kind": "file", "path": info.file_path})
        convert_image_file(run, info.file_path, temp_path)

    remove_dir(project_dir + "/scr_bak")
    move_image_files("/scr", "/scr_bak", project_dir, run.make_folders)

    left_in_place: List[FileInfo] = []
    find_image_files(project_dir + "/scr", left_in_place)
    ok = move_image_files("/scr_temp", "/scr", project_dir, run.make_folders)
    if not ok:
        if save_files_without_backup(run, left_in_place):
            remove_dir(project_dir + "/scr")
            ok = move_image_files("/scr_temp", "/scr", project_dir,
                                  run.make_folders)
        if not ok:
            emit_log(run, 1, COPY_BACK_MESSAGE)

    run.events.append({"kind": "progress", "count": count, "index": count})
    run.events.append({"kind": "end"})


def all_shape_names(project_dir: str) -> List[str]:
    """The shape files that the candidates of the project refer to."""
    files: List[FileInfo] = []
    find_image_files(project_dir + "/scr", files)
    names: List[str] = []
    for info in files:
        lines: List[str] = []
        objects: List[Block] = []
        ok, _ = read_objects(info.file_path, lines, objects)
        if not ok:
            continue
        for block in objects:
            if block.replace and block.shape_file not in names:
                names.append(block.shape_file)
    return sorted(names)


# ---------------------------------------------------------------------------
# Command line
# ---------------------------------------------------------------------------


def names_of_file(path: str) -> List[str]:
    with open(path, "r", encoding="utf-8", newline="") as file:
        return [name for name in file.read().split("\n") if name != ""]


def write_events(events: List[Dict[str, Any]], path: str) -> None:
    with open(path, "w", encoding="ascii", newline="\n") as file:
        for event in events:
            file.write(json.dumps(event, sort_keys=True) + "\n")


def main(arguments: List[str]) -> int:
    parser = argparse.ArgumentParser(
        description="Convert a project in place, slowly and obviously.")
    parser.add_argument("project", help="project folder, absolute")
    parser.add_argument("--shape", action="append", nargs="+", default=[],
                        metavar="NAME", help="shape file to take part")
    parser.add_argument("--shapes-file", metavar="FILE",
                        help="file with one shape file name per line")
    parser.add_argument("--all-shapes", action="store_true",
                        help="every shape file that a candidate refers to")
    parser.add_argument("--make-folders", action="store_true",
                        help="make temp and target folders with parents")
    parser.add_argument("--stop-before", type=int, metavar="N",
                        help="stop before the image file with this index")
    parser.add_argument("--report", required=True, metavar="FILE",
                        help="file that receives the events")
    options = parser.parse_args(arguments)

    run = Run(options.project, make_folders=options.make_folders,
              stop_before=options.stop_before)
    names = [name for group in options.shape for name in group]
    if options.shapes_file is not None:
        names += names_of_file(options.shapes_file)
    if options.all_shapes:
        names += all_shape_names(options.project)
    set_filter_names(run, names)
    convert(run)
    write_events(run.events, options.report)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
