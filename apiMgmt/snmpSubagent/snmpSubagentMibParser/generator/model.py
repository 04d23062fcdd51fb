"""The MIB as the data files describe it, with every check that they must pass."""

import re
from dataclasses import dataclass, field

from apiMgmt.common.generator.reader import DataError, Place

TYPES = ("string", "integer", "unsigned", "enumeration")
PARENTS = ("none", "controller", "enclosure")
SOURCES = ("row", "attribute", "computed", "constant", "copy", "process")
NAME = re.compile(r"[A-Za-z][A-Za-z0-9]*$")
OPERATION = re.compile(r"[A-Za-z_][A-Za-z0-9_]*$")


@dataclass
class Column:
    place: Place
    name: str
    oid: tuple
    type: str
    source: str
    argument: str
    set_fn: str
    table: object = None
    number: int = -1

    def is_first_of_table(self):
        return self.table is not None and self.table.columns[0] is self


@dataclass
class Table:
    place: Place
    name: str
    oid: tuple
    parent: str
    parents: int
    rows: int
    minimum: int
    columns: list = field(default_factory=list)
    refresh: object = None


@dataclass
class MapEntry:
    place: Place
    attribute: str
    column: Column
    post_process: str


@dataclass
class Refresh:
    place: Place
    object_name: str
    table: Table
    entries: list = field(default_factory=list)


@dataclass
class Mib:
    columns: list = field(default_factory=list)
    tables: list = field(default_factory=list)
    refreshes: list = field(default_factory=list)

    def total_variables(self):
        return sum(max(c.table.parents, 1) * c.table.rows if c.table else 1 for c in self.columns)


def parse_oid(line, text, root):
    if text == "R" or text.startswith("R."):
        if root is None:
            raise line.error("R is used before the line 'root R OID'")
        text = ".".join(map(str, root)) + text[1:]
    try:
        oid = tuple(int(arc) for arc in text.split("."))
    except ValueError:
        raise line.error(f"'{text}' is no OID") from None
    if any(arc < 0 or arc > 4294967295 for arc in oid):
        raise line.error(f"'{text}' is no OID")
    return oid


def parse_count(line, text, least=0):
    if not text.isdigit() or int(text) < least:
        raise line.error(f"'{text}' is no number of at least {least}")
    return int(text)


def check_operation(line, name, what="an operation"):
    """What becomes a C++ name as it stands."""
    if not OPERATION.match(name):
        raise line.error(f"'{name}' is no name of {what}")


def parse_column(line, words, oid, table):
    """words: the words behind name and OID."""
    if not words or words[0] not in TYPES:
        raise line.error(f"the type must be one of {', '.join(TYPES)}")
    column_type, words = words[0], words[1:]
    set_fn = ""
    if words and words[-1].startswith("set="):
        set_fn, words = words[-1][4:], words[:-1]
        check_operation(line, set_fn)
    if not words or words[0] not in SOURCES:
        raise line.error(f"the source must be one of {', '.join(SOURCES)}")
    source, arguments = words[0], words[1:]
    wanted = {"constant": 1, "copy": 1, "process": 1, "row": 0, "attribute": 0}.get(source, None)
    if wanted is None:
        wanted = 0 if table else 1
    if len(arguments) != wanted:
        raise line.error(f"source '{source}' takes {wanted} word(s) here, not {len(arguments)}")
    argument = arguments[0] if arguments else ""
    if argument and source in ("process", "computed"):
        check_operation(line, argument, "a variable" if source == "process" else "an operation")
    if source == "constant" and column_type != "string" and not re.match(r"-?\d+$", argument):
        raise line.error(f"'{argument}' is no number for a column of type {column_type}")
    if set_fn and column_type != "string":
        raise line.error("only a string column can be set")
    if table and source in ("constant", "copy", "process"):
        raise line.error(f"source '{source}' is for scalars")
    return Column(line.place, line.words[1], oid, column_type, source, argument, set_fn, table)


def add_column(line, mib, column):
    if not NAME.match(column.name):
        raise line.error(f"'{column.name}' is no name of a column")
    for other in mib.columns:
        if other.name == column.name:
            raise line.error(f"column '{column.name}' stands already at line {other.place.line}")
    if mib.columns and column.oid <= mib.columns[-1].oid:
        raise line.error(f"the OID of '{column.name}' does not come after that of '{mib.columns[-1].name}'")
    if mib.columns and column.oid[: len(mib.columns[-1].oid)] == mib.columns[-1].oid:
        raise line.error(f"the OID of '{column.name}' lies below that of '{mib.columns[-1].name}'")
    column.number = len(mib.columns)
    mib.columns.append(column)


def parse_table(line, root):
    words = line.words
    if len(words) != 7:
        raise line.error("a table line is: table NAME OID parent=P parents=N rows=N min=N")
    values = {}
    for word, key in zip(words[3:], ("parent", "parents", "rows", "min")):
        if not word.startswith(key + "="):
            raise line.error(f"'{word}' stands where {key}=... is expected")
        values[key] = word[len(key) + 1 :]
    if values["parent"] not in PARENTS:
        raise line.error(f"the parent must be one of {', '.join(PARENTS)}")
    parents = parse_count(line, values["parents"])
    if (values["parent"] == "none") != (parents == 0):
        raise line.error("a table has parents=0 exactly when it has parent=none")
    if not NAME.match(words[1]):
        raise line.error(f"'{words[1]}' is no name of a table")
    return Table(line.place, words[1], parse_oid(line, words[2], root), values["parent"], parents,
                 parse_count(line, values["rows"], 1), parse_count(line, values["min"]))


def read_columns(mib, lines):
    root, table = None, None
    for line in lines:
        words = line.words
        if words[0] == "root" and len(words) == 3 and words[1] == "R":
            root = parse_oid(line, words[2], None)
        elif words[0] == "scalar" and len(words) >= 3:
            table = None
            add_column(line, mib, parse_column(line, words[3:], parse_oid(line, words[2], root), None))
        elif words[0] == "table":
            table = parse_table(line, root)
            if any(other.name == table.name for other in mib.tables):
                raise line.error(f"table '{table.name}' stands there twice")
            mib.tables.append(table)
        elif words[0] == "column" and len(words) >= 3:
            if table is None:
                raise line.error("a column line stands below no table")
            oid = table.oid + (1, parse_count(line, words[2], 1))
            column = parse_column(line, words[3:], oid, table)
            if (column.source == "row") != (not table.columns) and table.columns:
                raise line.error("only a table's first column holds the row number")
            add_column(line, mib, column)
            table.columns.append(column)
        else:
            raise line.error(f"no such line: '{' '.join(words)}'")
    for each in mib.tables:
        if not each.columns:
            raise each.place.error(f"table '{each.name}' has no columns")


def read_refreshes(mib, lines):
    by_name = {column.name: column for column in mib.columns}
    refresh = None
    for line in lines:
        words = line.words
        if not line.indented:
            if words[0] != "refresh" or len(words) != 3:
                raise line.error("expected: refresh OBJECT TABLE")
            table = next((t for t in mib.tables if t.name == words[2]), None)
            if table is None:
                raise line.error(f"there is no table '{words[2]}'")
            if table.refresh:
                raise line.error(f"table '{table.name}' is filled already at line {table.refresh.place.line}")
            refresh = Refresh(line.place, words[1], table)
            table.refresh = refresh
            mib.refreshes.append(refresh)
            continue
        if refresh is None:
            raise line.error("an attribute line stands below no refresh line")
        if len(words) not in (2, 3):
            raise line.error("expected: ATTRIBUTE COLUMN [POST-PROCESS]")
        column = by_name.get(words[1])
        if column is None:
            raise line.error(f"there is no column '{words[1]}'")
        if column.source != "attribute":
            raise line.error(f"column '{column.name}' does not have the source 'attribute'")
        if column.table not in (None, refresh.table):
            raise line.error(f"column '{column.name}' belongs to another table")
        for other in (entry for each in mib.refreshes for entry in each.entries):
            if other.column is column:
                raise line.error(f"column '{column.name}' is filled already at line {other.place.line}")
        if len(words) == 3:
            check_operation(line, words[2])
        refresh.entries.append(MapEntry(line.place, words[0], column, words[2] if len(words) == 3 else ""))


def check_whole(mib):
    by_name = {column.name: column for column in mib.columns}
    filled = {id(entry.column) for refresh in mib.refreshes for entry in refresh.entries}
    for column in mib.columns:
        if column.source == "attribute" and id(column) not in filled:
            raise column.place.error(f"no line of refresh.def fills column '{column.name}'")
        if column.source == "copy":
            source = by_name.get(column.argument)
            if source is None or source.table is None or source.type != "string":
                raise column.place.error(f"'{column.argument}' is no string column of a table")
    if len(mib.columns) > 256:
        raise DataError("a column number must fit one byte: there are more than 256 columns")


def build(column_lines, refresh_lines):
    """The whole MIB from the lines of both files; raises DataError."""
    mib = Mib()
    read_columns(mib, column_lines)
    read_refreshes(mib, refresh_lines)
    check_whole(mib)
    return mib
