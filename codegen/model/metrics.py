"""How monitoring systems use each column: parsed from metrics.def and checked against the MIB."""

import re
from dataclasses import dataclass, field

from codegen.model import moduleNames as names
from codegen.reader import DataError, Place

WORDS = {"module": 4, "light": 5, "scalars": 3, "table": 4, "states": 2, "info": 2, "decimal": 2, "text": 2, "leave": 2}
INTERVAL = re.compile(r"[1-4]m$")
GAUGE, STATES, INFO, TEXT, DECIMAL = "gauge", "states", "info", "text", "decimal"


@dataclass
class Module:
    """Columns that are scraped together at an interval. columns: those of a light module, which has no name labels."""
    interval: str
    text: str
    columns: list = field(default_factory=list)

    def timeout(self):
        """Returns the interval without 5 s, which the exporter needs for its own work."""
        return f"{60 * int(self.interval[:-1]) - 5}s"


@dataclass
class Plan:
    """How the rows of a table, or the scalars, are shown."""
    place: Place
    numbers: str
    texts: str
    labels: list = field(default_factory=list)


@dataclass
class Metric:
    """A column as a time series. labels: those that distinguish its rows, without own_label()."""
    column: object
    kind: str
    module: str
    convention: object = None
    labels: tuple = ()

    @property
    def name(self):
        return self.column.name + ("_info" if self.kind == INFO else "")

    def own_label(self):
        """Returns the label that contains the state or string; empty for plain numbers."""
        return self.column.name if self.kind in (STATES, INFO, TEXT) else ""

    def all_labels(self):
        return (*self.labels, *filter(None, [self.own_label()]))


@dataclass
class Metrics:
    modules: dict = field(default_factory=dict)  # name: Module
    plans: dict = field(default_factory=dict)    # table, None for the scalars: Plan
    kinds: dict = field(default_factory=dict)    # convention: STATES or INFO
    special: dict = field(default_factory=dict)  # column: DECIMAL, TEXT or "leave"
    all: list = field(default_factory=list)      # every Metric, in the order of the columns

    def by_name(self):
        return {each.name: each for each in self.all}

    def of(self, column):
        """Returns the metric of a column, or None."""
        return next((each for each in self.all if each.column is column), None)


def put(line, where, key, value):
    if key in where:
        raise line.error(f"duplicate '{key}'")
    where[key] = value


class Reader:
    def __init__(self, snmp):
        self.columns = {column.name: column for column in snmp.mib.columns}
        self.tables = {table.name: table for table in snmp.mib.tables}
        self.conventions = snmp.found.conventions
        self.metrics = Metrics()

    def known(self, line, where, name, what):
        if name not in where:
            raise line.error(f"unknown {what} '{name}'")
        return name

    def read(self, lines):
        for line in lines:
            word, *rest = line.words
            if word not in WORDS or len(line.words) < WORDS[word]:
                raise line.unknown()
            if word == "module":
                put(line, self.metrics.modules, rest[0], self.module(line, *rest[1:]))
            elif word == "light":
                columns = [self.known(line, self.columns, name, "column") for name in rest[3:]]
                put(line, self.metrics.modules, rest[0], self.module(line, *rest[1:3], columns=columns))
            elif word == "scalars":
                put(line, self.metrics.plans, None, self.plan(line, rest))
            elif word == "table":
                table = self.known(line, self.tables, rest[0], "table")
                put(line, self.metrics.plans, table, self.plan(line, rest[1:]))
            elif word in (STATES, INFO):
                for name in rest:
                    put(line, self.metrics.kinds, self.known(line, self.conventions, name, "convention"), word)
            else:
                for name in rest:
                    put(line, self.metrics.special, self.known(line, self.columns, name, "column"), word)
        return self.metrics

    @staticmethod
    def module(line, interval, *texts, columns=()):
        if not INTERVAL.match(interval) or len(texts) != 1:
            raise line.error("expected: module NAME INTERVALm TEXT, with an interval of 1m to 4m")
        return Module(interval, texts[0], list(columns))

    def plan(self, line, words):
        numbers, texts = (self.known(line, self.metrics.modules, name, "module") for name in words[:2])
        return Plan(line.place, numbers, texts, [self.known(line, self.columns, name, "column") for name in words[2:]])


def row_table(table, mib):
    """Returns the table that defines the rows of this one: itself, or the one that it is filled with."""
    return mib.table(table.pace) or table


def indexes(table, mib):
    """Returns the tables whose row numbers index this one, the parent first."""
    return [each for each in (table.parent, row_table(table, mib)) if each]


def lookups(table, mib, plans):
    """Returns (row labels, column) of each label that another column provides; of a parent, only its first label."""
    parents = indexes(table, mib)
    rows = [names.row(each) for each in parents]
    of_parent = [(rows[:1], plans[each.name].labels[0]) for each in parents[:-1] if plans[each.name].labels]
    return of_parent + [(rows, name) for name in plans[parents[-1].name].labels]


class Builder:
    def __init__(self, snmp, metrics):
        self.snmp, self.mib, self.metrics = snmp, snmp.mib, metrics

    def is_left(self, column):
        """Row numbers are labels instead, and data of the latest notification are not a state of the array."""
        return (column.is_first_of_table() or column.source in ("force", "process") or
                column.name in self.labels_of(column.table) or self.metrics.special.get(column.name) == "leave")

    def labels_of(self, table):
        return self.metrics.plans[table.name].labels if table else []

    def kind(self, column):
        special = self.metrics.special.get(column.name)
        if special:
            return special
        convention = self.snmp.convention(column)
        if convention is None or column.type == "string":
            return TEXT if column.type == "string" else GAUGE
        if convention.name not in self.metrics.kinds:
            raise column.place.error(f"metrics.def: no states or info for '{convention.name}' of '{column.name}'")
        return self.metrics.kinds[convention.name]

    def build(self, column):
        plan, kind, table = self.metrics.plans[column.table and column.table.name], self.kind(column), column.table
        labels = ()
        if table:
            rows = [names.row(each) for each in indexes(table, self.mib)]
            labels = (*rows, *(name for _, name in lookups(table, self.mib, self.metrics.plans)))
        convention = self.snmp.convention(column) if kind in (STATES, INFO) else None
        return Metric(column, kind, plan.texts if kind == TEXT else plan.numbers, convention, labels)

    def build_all(self):
        for name in (None, *(table.name for table in self.mib.tables)):
            if name not in self.metrics.plans:
                raise DataError(f"metrics.def: missing line '{'table ' + name if name else 'scalars'}'")
        self.metrics.all = [self.build(column) for column in self.mib.columns if not self.is_left(column)]
        shown = {each.column.name for each in self.metrics.all}
        for name, module in self.metrics.modules.items():
            if not shown.issuperset(module.columns):
                raise DataError(f"metrics.def: a column of module '{name}' is not shown")
        used = {each.convention.name for each in self.metrics.all if each.convention}
        for name in self.metrics.kinds:
            if name not in used:
                raise DataError(f"metrics.def: no shown column has the convention '{name}'")
        return self.metrics


def read(data, snmp):
    """Returns all metrics of the MIB as monitoring/metrics.def defines them. Raises DataError."""
    return Builder(snmp, Reader(snmp).read(data.lines("monitoring/metrics.def"))).build_all()
