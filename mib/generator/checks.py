"""Holds the descriptions against the columns, the refreshes and the notifications: nothing is left out, nothing is
about what does not exist, and types fit."""

from apiMgmt.common.generator.reader import DataError

from .descriptions import Value

PACES = ("seconds", "minutes")
NUMBER_TYPES = ("integer", "enumeration")


def check_described(kind, things, entries):
    """things: what exists, by name. entries: what is described, by name."""
    for name, entry in entries.items():
        if name not in things:
            raise entry.place.error(f"there is no {kind} '{name}'")
        if not any(entry.texts):
            raise entry.place.error(f"nothing is said about {kind} '{name}'")
    for name, thing in things.items():
        if name not in entries:
            raise thing.place.error(f"nothing is said about {kind} '{name}'")


def check_module(mib, found):
    for word, value in (("module", found.module), ("older", found.older), ("contact", found.contact),
                        ("revision", found.revisions), ("notifications", found.events),
                        ("conformance", found.conformance)):
        if not value:
            raise DataError(f"the descriptions have no line '{word}'")
    for name in (found.module.identity, found.events, found.conformance):
        if name not in found.nodes:
            raise found.module.place.error(f"there is no node '{name}'")
    root = mib.tables[0].oid[:-1]
    if all(node.oid != root for node in found.nodes.values()):
        raise found.module.place.error(f"there is no node at {'.'.join(map(str, root))}, where the tables are")
    if found.revisions != sorted(found.revisions, reverse=True):
        raise found.module.place.error("the latest revision stands first")


def fill_component_values(convention, traps):
    """The kinds of component, by their numbers, behind a value 0 that takes the word of the option."""
    values = {0: Value(0, convention.option("components"), "none so far", [])}
    for each in traps.components:
        head, *rest = each.word.split("-")
        label = head + "".join(map(str.capitalize, rest))
        if values.setdefault(each.number, Value(each.number, label, each.description, [])).label != label:
            raise each.place.error(f"component {each.number} has another word at another notification")
    convention.values = [values[number] for number in sorted(values)]


def check_convention(convention, traps):
    if not any(convention.texts):
        raise convention.place.error(f"nothing is said about convention '{convention.name}'")
    if convention.option("components"):
        fill_component_values(convention, traps)
    if convention.is_text() == bool(convention.values):
        raise convention.place.error("a convention has either hint= or values")
    if convention.option("from") and sum(not value.texts for value in convention.values) != 1:
        raise convention.place.error("with from= exactly one value has no text=: that of all other texts")


def check_syntax(column, entry, conventions):
    syntax = entry.option("syntax")
    if not syntax:
        if column.type == "enumeration":
            raise entry.place.error(f"column '{column.name}' is an enumeration and needs syntax=")
        return
    if syntax not in conventions:
        raise entry.place.error(f"there is no convention '{syntax}'")
    fitting = ("string",) if conventions[syntax].is_text() else NUMBER_TYPES
    if column.type not in fitting:
        raise entry.place.error(f"'{syntax}' does not fit a column of type {column.type}")


def check_post_processes(mib, found):
    """The numbers that a post-process makes are those of one convention, and the columns that it fills have it."""
    convention_of = {each.option("from"): each for each in found.conventions.values() if each.option("from")}
    post_process_of = {entry.column.name: entry.post_process for refresh in mib.refreshes for entry in refresh.entries}
    for post_process, convention in convention_of.items():
        if post_process not in post_process_of.values():
            raise convention.place.error(f"no line of refresh.def has the post-process '{post_process}'")
    for name, entry in found.columns.items():
        convention = convention_of.get(post_process_of.get(name))
        own = found.conventions.get(entry.option("syntax"))
        if convention is not None and convention is not own:
            raise entry.place.error(f"column '{name}' gets its numbers as {convention.name}: syntax= must say so")
        if convention is None and own is not None and own.option("from"):
            raise entry.place.error(f"column '{name}' does not get its numbers from '{own.option('from')}'")


def check_table(entry, mib):
    tables = {table.name for table in mib.tables}
    if entry.option("refreshed") not in PACES and entry.option("refreshed") not in tables:
        raise entry.place.error(f"refreshed= must be one of {', '.join(PACES)}, or the table that this one follows")
    if not entry.option("object"):
        raise entry.place.error("object= is needed: what one row is")
    identity = entry.option("identity")
    if identity and all(column.name != identity for column in mib.columns):
        raise entry.place.error(f"there is no column '{identity}'")


def check(mib, traps, found):
    """Raises DataError at the first thing that is missing, unknown or does not fit."""
    check_module(mib, found)
    columns = {column.name: column for column in mib.columns}
    check_described("column", columns, found.columns)
    check_described("table", {table.name: table for table in mib.tables}, found.tables)
    check_described("notification", {each.name: each for each in traps.notifications}, found.notifications)
    for name, entry in found.columns.items():
        if (entry.kind == "scalar") != (columns[name].table is None):
            raise entry.place.error(f"'{name}' is a {'scalar' if columns[name].table is None else 'column'}")
        check_syntax(columns[name], entry, found.conventions)
    for convention in found.conventions.values():
        check_convention(convention, traps)
    if not any(convention.is_text() for convention in found.conventions.values()):
        raise DataError("the descriptions have no convention with hint=, which texts have")
    check_post_processes(mib, found)
    for entry in found.tables.values():
        check_table(entry, mib)
