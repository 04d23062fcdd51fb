"""Writes the API catalogue as rows for apiClient."""

from codegen.writers.output import c_string, notice

TABLE = notice("data/api") + """\
#include "tools/apiClient/catalogueTable.h"

namespace apiclient {{

namespace {{

using enum CatalogueRow::What;

constexpr CatalogueRow kRows[] = {{
{rows}
}};

}}  // namespace

const std::span<const CatalogueRow> kCatalogueRows(kRows);

}}  // namespace apiclient
"""

# The rules that the library's descriptors do not name; they are fields of CatalogueRow.
RULES = ("table", "object")


def row(what, indent, **fields):
    texts = [f".{key} = {c_string(value)}" for key, value in fields.items()]
    return " " * indent + "{" + ", ".join([f".what = {what}", *texts]) + "},"


def attribute_row(what, indent, attribute):
    rules = {key: attribute.rules[key] for key in RULES if key in attribute.rules}
    return row(what, indent, name=attribute.name, text=attribute.label, kind=attribute.kind, **rules)


def object_rows(each):
    yield row("kObject", 4, name=each.name, text=each.text)
    for attribute in each.attributes + each.inherited():
        yield attribute_row("kAttribute", 8, attribute)
    for command in each.commands:
        yield row("kChange" if command.changes_state else "kRead", 8, name=command.name, text=command.privilege)
        for argument in command.arguments:
            yield attribute_row("kNeeded" if argument.needed else "kTaken", 12, argument.attribute)
    for name in each.associations:
        yield row("kAssociation", 8, name=name)


def method_object_rows(each):
    yield row("kMethodObject", 4, name=each.name, text=each.text)
    for attribute in each.attributes:
        yield attribute_row("kAttribute", 8, attribute)


def render(catalogue):
    rows = [line for each in catalogue.objects for line in object_rows(each)]
    rows += [line for each in catalogue.method_objects for line in method_object_rows(each)]
    return TABLE.format(rows="\n".join(rows))
