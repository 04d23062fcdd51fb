"""Parses the columns of the MIB and what fills them, with the checks that need no other data."""

import re
from dataclasses import dataclass, field

from codegen.model.descriptions import Described, check_text
from codegen.reader import DataError, Place

TYPES = ("string", "integer", "unsigned", "enumeration")
# The sources of a column: number of arguments for a scalar and for a column of a table; None if not allowed.
SOURCES = {"row": (None, 0), "attribute": (1, 1), "force": (None, 0), "computed": (1, 0), "constant": (1, None),
           "copy": (1, None), "process": (0, None)}
PARENT_ITEMS = ("controller", "enclosure")
REQUESTS = ("list", "instance")
PACES = ("seconds", "minutes")
NAME = re.compile(r"[A-Za-z][A-Za-z0-9]*$")
OPERATION = re.compile(r"[A-Za-z_][A-Za-z0-9_]*$")
# A ForceTrap column is filled with the name of its object, which the post-process turns into the value of a GET.
FORCE_ATTRIBUTE, FORCE_POST_PROCESS = "Name", "force_trap"


@dataclass(kw_only=True)
class Column(Described):
    oid: tuple
    type: str
    source: str
    argument: str = ""
    post_process: str = ""
    after: str = ""
    set_fn: str = ""
    syntax: str = ""
    units: str = ""
    catalogued: bool = True
    table: object = None
    number: int = -1

    def is_first_of_table(self):
        return self.table is not None and self.table.columns[0] is self

    def is_filled(self):
        """Returns whether an attribute of an API object fills it."""
        return self.source in ("attribute", "force")


@dataclass(kw_only=True)
class Table(Described):
    """parent: the table by whose rows the rows are grouped, or None. item: what one row is. pace: how often it is
    read from the array, or the name of the table that it is filled with."""

    oid: tuple
    parent: object
    rows: int
    minimum: int
    object_name: str
    pace: str
    item: str
    identity: str
    columns: list = field(default_factory=list)
    refresh: object = None

    @property
    def parents(self):
        return self.parent.rows if self.parent else 0

    @property
    def parent_item(self):
        return self.parent.item if self.parent else ""


@dataclass
class MapEntry:
    attribute: str
    column: Column
    post_process: str


@dataclass
class Refresh:
    """How the list of an API object fills a table. entries: in the order in which they are stored."""

    object_name: str
    table: Table
    entries: list = field(default_factory=list)


@dataclass
class Request:
    """A call that the daemon can make: the list of an API object, or an instance."""

    place: Place
    object_name: str
    kind: str


@dataclass
class Mib:
    columns: list = field(default_factory=list)
    tables: list = field(default_factory=list)
    refreshes: list = field(default_factory=list)
    requests: list = field(default_factory=list)  # in addition to those of tables and notifications

    def total_variables(self):
        return sum(max(c.table.parents, 1) * c.table.rows if c.table else 1 for c in self.columns)

    def column(self, name):
        return next((column for column in self.columns if column.name == name), None)

    def table(self, name):
        return next((table for table in self.tables if table.name == name), None)


def parse_oid(line, text, root):
    if text == "R" or text.startswith("R."):
        if root is None:
            raise line.error("R is used before the line 'root R OID'")
        text = ".".join(map(str, root)) + text[1:]
    if not re.match(r"\d{1,10}(\.\d{1,10})*$", text) or any(int(arc) > 4294967295 for arc in text.split(".")):
        raise line.error(f"'{text}' is not an OID")
    return tuple(map(int, text.split(".")))


def read_source(line, words, table):
    """Parses SOURCE [ARGUMENT]. Returns both and the remaining words."""
    if not words or words[0] not in SOURCES:
        raise line.error(f"the source must be one of {', '.join(SOURCES)}")
    source, wanted = words[0], SOURCES[words[0]][table is not None]
    if wanted is None:
        raise line.error(f"source '{source}' is only for {'scalars' if table else 'columns of tables'}")
    if len(words) < 1 + wanted or wanted and "=" in words[1]:
        raise line.error(f"source '{source}' requires an argument")
    return source, words[1] if wanted else "", words[1 + wanted:]


def check_source(line, column):
    if column.source == "computed" and column.argument:
        line.name(column.argument, OPERATION, "an operation")
    if column.source == "constant" and column.type != "string" and not re.match(r"-?\d+$", column.argument):
        raise line.error(f"'{column.argument}' is not a number for a column of type {column.type}")
    if column.set_fn and column.type != "string":
        raise line.error("only a string column can be writable")
    if (column.post_process or column.after) and column.source != "attribute":
        raise line.error("post= and after= require the source 'attribute'")
    if column.post_process:
        line.name(column.post_process, OPERATION, "a post-process")
    if bool(column.after) != (column.source == "attribute" and column.table is None):
        raise line.error("after= is required for scalars with source 'attribute', and only there")


def read_column(line, oid, table):
    name, words = line.name(line.words[1], NAME, "a column"), line.words[3:]
    if not words or words[0] not in TYPES:
        raise line.error(f"the type must be one of {', '.join(TYPES)}")
    source, argument, rest = read_source(line, words[1:], table)
    writable = source == "force" or "writable" in rest
    options = line.options([word for word in rest if word != "writable"], ("post", "after", "syntax", "units",
                                                                                  "catalogue"))
    column = Column(place=line.place, name=name, oid=oid, type=words[0], source=source, argument=argument,
                    post_process=options.get("post", ""), after=options.get("after", ""),
                    set_fn=f"{name}_set" if writable else "", syntax=options.get("syntax", ""),
                    units=check_text(line, options.get("units", "")),
                    catalogued=options.get("catalogue", "yes") != "no", table=table)
    check_source(line, column)
    return column.read_texts_only(line)


def add_column(line, mib, column):
    line.add_to({other.name: other for other in mib.columns}, column.name, column, "column")
    if mib.columns and column.oid <= mib.columns[-1].oid:
        raise line.error(f"the OID of '{column.name}' must come after that of '{mib.columns[-1].name}'")
    if mib.columns and column.oid[: len(mib.columns[-1].oid)] == mib.columns[-1].oid:
        raise line.error(f"the OID of '{column.name}' must not begin with that of '{mib.columns[-1].name}'")
    column.number = len(mib.columns)
    mib.columns.append(column)


def read_table(line, mib, root):
    name, options = line.words[1], line.options(line.words[3:], ("rows", "min", "parent", "list", "pace", "item",
                                                                 "identity"))
    for key in ("rows", "min", "pace", "item"):
        if key not in options:
            raise line.error(f"missing {key}=")
    parent = None
    if "parent" in options:
        parent = mib.table(options["parent"])
        if parent is None or parent.item not in PARENT_ITEMS:
            raise line.error(f"unknown parent '{options['parent']}'; define a table of controllers or enclosures above")
    table = Table(place=line.place, name=line.name(name, NAME, "a table"), oid=parse_oid(line, line.words[2], root),
                  parent=parent, rows=line.number(options["rows"], 1), minimum=line.number(options["min"]),
                  object_name=options.get("list", ""), pace=options["pace"], item=check_text(line, options["item"]),
                  identity=options.get("identity", ""))
    line.add_to({other.name: other for other in mib.tables}, name, table, "table")
    mib.tables.append(table.read_texts_only(line))
    return table


def read_columns(mib, lines):
    root, table = None, None
    for line in lines:
        words = line.words
        if words[0] == "root" and len(words) == 3 and words[1] == "R":
            root = parse_oid(line, words[2], None)
        elif words[0] == "request" and len(words) == 3 and words[2] in REQUESTS:
            mib.requests.append(Request(line.place, *words[1:]))
        elif words[0] == "scalar" and len(words) >= 3:
            table = None
            add_column(line, mib, read_column(line, parse_oid(line, words[2], root), None))
        elif words[0] == "table" and len(words) >= 3:
            table = read_table(line, mib, root)
        elif words[0] == "column" and len(words) >= 3:
            if table is None:
                raise line.error("a column line must follow a table line")
            column = read_column(line, table.oid + (1, line.number(words[2], 1)), table)
            if column.source == "row" and table.columns:
                raise line.error("only the first column of a table may have the source 'row'")
            add_column(line, mib, column)
            table.columns.append(column)
        else:
            raise line.unknown()


def fill_order(table, mib):
    """Returns the table's columns in order, ForceTrap columns last, and each scalar after the column or scalar named in
    its after=. A post-process may rely on everything that was filled before it."""
    own = [column for column in table.columns if column.source == "attribute"]
    order = own + [column for column in table.columns if column.source == "force"]
    waiting = [column for column in mib.columns if column.after]
    while waiting:
        ready = [column for column in waiting if any(other.name == column.after for other in order)]
        if not ready:
            break
        for column in ready:
            place = next(i for i, other in enumerate(order) if other.name == column.after)
            order.insert(place + 1, column)
            waiting.remove(column)
    return order


def add_refreshes(mib):
    for table in mib.tables:
        filled = fill_order(table, mib)
        if filled and not table.object_name:
            raise filled[0].place.error(f"table '{table.name}' requires list=, to fill '{filled[0].name}'")
        if not table.object_name:
            continue
        table.refresh = Refresh(table.object_name, table)
        mib.refreshes.append(table.refresh)
        for column in filled:
            forced = column.source == "force"
            table.refresh.entries.append(MapEntry(FORCE_ATTRIBUTE if forced else column.argument, column,
                                                  FORCE_POST_PROCESS if forced else column.post_process))


def check_whole(mib):
    filled = {entry.column.name for refresh in mib.refreshes for entry in refresh.entries}
    for column in mib.columns:
        if column.is_filled() and column.name not in filled:
            raise column.place.error(f"after= names '{column.after}', which no table fills")
        if column.source == "copy":
            source = mib.column(column.argument)
            if source is None or source.table is None or source.type != "string":
                raise column.place.error(f"'{column.argument}' is not a string column of a table")
    for table in mib.tables:
        if not table.columns:
            raise table.place.error(f"table '{table.name}' has no columns")
        if table.pace not in PACES and mib.table(table.pace) is None:
            raise table.place.error(f"pace= must be one of {', '.join(PACES)}, or the table that this one is filled "
                                    "with")
        if table.identity and mib.column(table.identity) is None:
            raise table.place.error(f"unknown column '{table.identity}'")
    if len(mib.columns) > 256:
        raise DataError("more than 256 columns; a column number must fit in one byte")


def read(data):
    """Returns the columns, tables and refreshes of mib/columns.def. Raises DataError."""
    mib = Mib()
    read_columns(mib, data.lines("mib/columns.def"))
    add_refreshes(mib)
    check_whole(mib)
    return mib
