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

# Fields of CatalogueRow, in its order, by the keyword of the data files.
RULES = {"table": "table", "object": "object", "invalid": "invalid", "min": "min", "max": "max",
         "minLength": "min_length", "maxLength": "max_length"}


def row(what, indent, **fields):
    texts = [f".{key} = {c_string(value) if isinstance(value, str) else value}" for key, value in fields.items()]
    return " " * indent + "{" + ", ".join([f".what = {what}", *texts]) + "},"


def attribute_row(what, indent, attribute):
    rules = {field: attribute.rules[key] for key, field in RULES.items() if key in attribute.rules}
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
