"""All of data/mib as one checked model: everything has a description, and types match."""

from dataclasses import dataclass

from codegen.model import descriptions, mib, moduleNames, notifications
from codegen.reader import DataError

NUMBER_TYPES = ("integer", "enumeration")
SYNTAX = {"string": "OCTET STRING", "integer": "Integer32", "unsigned": "Unsigned32"}


@dataclass
class Snmp:
    mib: mib.Mib
    traps: notifications.Traps
    found: descriptions.Descriptions

    def syntax(self, column):
        """Returns the name of a column's type in the MIB module."""
        return column.syntax or (self.found.text_convention().name if column.type == "string" else SYNTAX[column.type])

    def convention(self, column):
        """Returns the textual convention of a column, or None."""
        return self.found.conventions.get(self.syntax(column))

    def events(self):
        return self.found.nodes[self.found.events].oid


def check_module(columns, found):
    for word, value in (("module", found.module), ("older", found.older), ("contact", found.contact),
                        ("revision", found.revisions), ("notifications", found.events),
                        ("conformance", found.conformance)):
        if not value:
            raise DataError(f"module.def: missing line '{word}'")
    for name in (found.module.identity, found.events, found.conformance):
        if name not in found.nodes:
            raise found.module.place.error(f"unknown node '{name}'")
    root = columns.tables[0].oid[:-1]
    if all(node.oid != root for node in found.nodes.values()):
        raise found.module.place.error(f"missing node at {'.'.join(map(str, root))}, where the tables are")
    if found.revisions != sorted(found.revisions, reverse=True):
        raise found.module.place.error("the latest revision must be first")


def fill_component_values(convention, traps):
    """Makes values of the kinds of component, by number, after a value 0 with the label of the option."""
    values = {0: descriptions.Value(0, convention.option("components"), "no such notification since the SNMP service started", [])}
    for each in traps.components:
        head, *rest = each.word.split("-")
        label = head + "".join(map(str.capitalize, rest))
        value = descriptions.Value(each.number, label, each.description, [])
        if values.setdefault(each.number, value).label != label:
            raise each.place.error(f"component {each.number} has a different word in another notification")
    convention.values = [values[number] for number in sorted(values)]


def check_convention(convention, traps):
    convention.check_described("convention")
    if convention.option("components"):
        fill_component_values(convention, traps)
    if convention.is_text() == bool(convention.values):
        raise convention.place.error("a convention must have either hint= or values")
    if convention.option("from") and sum(not value.texts for value in convention.values) != 1:
        raise convention.place.error("with from=, exactly one value must have no text=")


def check_syntax(column, conventions):
    if not column.syntax:
        if column.type == "enumeration":
            raise column.place.error(f"column '{column.name}' is an enumeration and requires syntax=")
        return
    if column.syntax not in conventions:
        raise column.place.error(f"unknown convention '{column.syntax}'")
    fitting = ("string",) if conventions[column.syntax].is_text() else NUMBER_TYPES
    if column.type not in fitting:
        raise column.place.error(f"'{column.syntax}' does not fit a column of type {column.type}")


def check_post_processes(columns, found):
    """Checks that exactly the columns with the post-process of a convention have that convention."""
    convention_of = {each.option("from"): each for each in found.conventions.values() if each.option("from")}
    used = {column.post_process for column in columns}
    for post_process, convention in convention_of.items():
        if post_process not in used:
            raise convention.place.error(f"no column has the post-process '{post_process}'")
    for column in columns:
        convention, own = convention_of.get(column.post_process), found.conventions.get(column.syntax)
        if convention is not None and convention is not own:
            raise column.place.error(f"post={column.post_process} requires syntax={convention.name}")
        if convention is None and own is not None and own.option("from"):
            raise column.place.error(f"syntax={own.name} requires post={own.option('from')}")


def check_attributes(model, catalogue):
    """Checks that the objects of the API have the attributes that fill the columns. The simulated array would not reveal
    a misspelled one, because it is generated from the same columns."""
    objects = {each.name.lower(): each for each in catalogue.objects}
    for refresh in model.mib.refreshes:
        found = objects.get(refresh.object_name.lower())
        if found is None:
            raise refresh.table.place.error(f"unknown object '{refresh.object_name}'")
        names = {each.name for each in (*found.attributes, *found.inherited())}
        for entry in refresh.entries:
            if (entry.attribute not in names) == entry.column.catalogued:
                raise entry.column.place.error(
                    f"'{found.name}' has no attribute '{entry.attribute}'" if entry.column.catalogued else
                    f"'{found.name}' has the attribute '{entry.attribute}'; remove catalogue=no")


def check(model):
    """Raises DataError for the first error."""
    columns, found = model.mib.columns, model.found
    check_module(model.mib, found)
    for kind, things in (("column", columns), ("table", model.mib.tables)):
        for each in things:
            each.check_described(kind)
    for column in columns:
        check_syntax(column, found.conventions)
    for convention in found.conventions.values():
        check_convention(convention, model.traps)
    if not any(convention.is_text() for convention in found.conventions.values()):
        raise DataError("conventions.def: missing convention with hint=, for strings")
    check_post_processes(columns, found)
    moduleNames.check(model)


def read(data):
    """Returns the checked model. Raises DataError."""
    columns = mib.read(data)
    model = Snmp(columns, notifications.read(data, columns), descriptions.read(data))
    check(model)
    return model
