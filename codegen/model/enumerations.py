"""Parses and checks the enumerations of the API."""

import re
from dataclasses import dataclass, field

from codegen.reader import Place

NAME = re.compile(r"[A-Z][A-Za-z0-9]*$")
DESCRIPTION = re.compile(r"[A-Za-z][A-Za-z0-9_]*$")
VALUE = re.compile(r"-?\d+$")


@dataclass
class Row:
    place: Place
    value: int
    description: str
    ui_string: str


@dataclass
class Table:
    place: Place
    name: str
    size: int
    rows: list = field(default_factory=list)


def parse_head(line):
    words = line.words
    if words[0] != "enumeration" or len(words) != 3 or not re.match(r"rows=[1-9]\d*$", words[2]):
        raise line.error("expected: enumeration NAME rows=N")
    return Table(line.place, line.name(words[1], NAME, "an enumeration"), int(words[2][len("rows="):]))


def check_ui_string(line, text, description):
    if text == description:
        raise line.error("the text equals the identifier; omit it")
    try:
        text.encode("iso-8859-1")
    except UnicodeEncodeError:
        raise line.error(f"'{text}' contains a character outside ISO-8859-1") from None
    if not text.isprintable() or not text.strip():
        raise line.error("the text must be printable and not only spaces")


def parse_row(line):
    words = line.words
    if len(words) not in (2, 3):
        raise line.error('expected: VALUE IDENTIFIER ["TEXT"]')
    if not VALUE.match(words[0]) or not -2**31 <= int(words[0]) < 2**31:
        raise line.error(f"'{words[0]}' is not a signed 32-bit number")
    line.name(words[1], DESCRIPTION, "a row")
    if len(words) == 3:
        check_ui_string(line, words[2], words[1])
    return Row(line.place, int(words[0]), words[1], words[-1])


def add_row(table, row):
    if table.rows and row.value <= table.rows[-1].value:
        raise row.place.error(f"{row.value} must be greater than {table.rows[-1].value} above")
    for other in table.rows:
        if other.description.lower() == row.description.lower():
            raise row.place.error(f"duplicate '{row.description}'; first defined at {other.place}")
    table.rows.append(row)


def read_table(line):
    table = parse_head(line)
    for below in line.below:
        add_row(table, parse_row(below))
    if len(table.rows) != table.size:
        raise table.place.error(f"'{table.name}' has {len(table.rows)} rows, not {table.size}")
    return table


def read(data):
    """Returns all tables of data/api/enumerations, by file name. Raises DataError."""
    by_name = {}
    for name in data.files("api/enumerations"):
        for line in data.lines(name):
            table = read_table(line)
            line.add_to(by_name, table.name, table, "enumeration")
    return list(by_name.values())
