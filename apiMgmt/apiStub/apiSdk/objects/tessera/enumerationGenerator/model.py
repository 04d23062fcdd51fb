"""The enumerations as the data files hold them, with every check that they must pass."""

import glob
import os
import re
from dataclasses import dataclass, field

from apiMgmt.common.generator import reader

NAME = re.compile(r"[A-Z][A-Za-z0-9]*$")
DESCRIPTION = re.compile(r"[A-Za-z][A-Za-z0-9_]*$")
NUMBER = re.compile(r"-?\d+$")


@dataclass
class Row:
    place: reader.Place
    value: int
    description: str
    ui_string: str


@dataclass
class Table:
    place: reader.Place
    name: str
    size: int
    rows: list = field(default_factory=list)


def parse_head(line):
    words = line.words
    if words[0] != "enumeration" or len(words) != 3 or not re.match(r"rows=[1-9]\d*$", words[2]):
        raise line.error("expected: enumeration NAME rows=N")
    if not NAME.match(words[1]):
        raise line.error(f"'{words[1]}' is no name of an enumeration")
    return Table(line.place, words[1], int(words[2][len("rows="):]))


def check_ui_string(line, text, description):
    if text == description:
        raise line.error("the text for people is the identifier itself: leave it out")
    try:
        text.encode("iso-8859-1")
    except UnicodeEncodeError:
        raise line.error(f"'{text}' holds a letter outside ISO-8859-1") from None
    if not text.isprintable() or not text.strip():
        raise line.error("the text for people must be printable and not blank")


def parse_row(line):
    words = line.words
    if len(words) not in (2, 3):
        raise line.error('expected: VALUE IDENTIFIER ["TEXT FOR PEOPLE"]')
    if not NUMBER.match(words[0]) or not -2**31 <= int(words[0]) < 2**31:
        raise line.error(f"'{words[0]}' is no number of 32 bits")
    if not DESCRIPTION.match(words[1]):
        raise line.error(f"'{words[1]}' is no identifier")
    if len(words) == 3:
        check_ui_string(line, words[2], words[1])
    return Row(line.place, int(words[0]), words[1], words[-1])


def add_row(table, row):
    if table.rows and row.value <= table.rows[-1].value:
        raise row.place.error(f"the id {row.value} does not come after {table.rows[-1].value}")
    for other in table.rows:
        if other.description.lower() == row.description.lower():
            raise row.place.error(f"'{row.description}' stands already at line {other.place.line}")
    table.rows.append(row)


def read_tables(lines):
    """The tables of one file, in its order."""
    tables = []
    for line in lines:
        if not line.indented:
            tables.append(parse_head(line))
        elif tables:
            add_row(tables[-1], parse_row(line))
        else:
            raise line.error("a row stands below no enumeration line")
    for table in tables:
        if len(table.rows) != table.size:
            raise table.place.error(f"'{table.name}' has {len(table.rows)} rows, not {table.size}")
    return tables


def build(files):
    """All tables, from the lines of each file; raises DataError."""
    by_name = {}
    for table in (table for lines in files for table in read_tables(lines)):
        if table.name in by_name:
            raise table.place.error(f"'{table.name}' stands already at {by_name[table.name].place}")
        by_name[table.name] = table
    return list(by_name.values())


def read_folder(folder):
    """All tables of the *.def files of a folder, file by file in the order of their names."""
    paths = sorted(glob.glob(os.path.join(folder, "*.def")))
    if not paths:
        raise reader.DataError(f"{folder}: there are no data files")
    return build(reader.read_lines(path) for path in paths)
