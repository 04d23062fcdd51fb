"""Writes the reference of the API objects."""

from codegen.model import attributeKinds as kinds
from codegen.model import classNames as names
from codegen.writers.output import markdown_notice

PAGE = markdown_notice("data/api") + """\
# The objects of the array's API

The names in C++ follow from those below: the class of the object `TsDisk` is `APITsDisk`, that of its command `Get`
is `APITsDisk::APITsDiskGetMethod`, that of its association `Enclosure` is
`APITsDisk::APITsDiskEnclosureAssociation`, and the attribute `Name` has the accessors `SetName` and `GetName` and the
descriptor `NameAttribute()`. [apiLibrary.md](apiLibrary.md) explains how to use them.

Each attribute has a column with the operators that conditions on it support: `Where(APITsDisk::SizeAttribute()) >
"1 TB"`, `Where(APITsDisk::NameAttribute()).Contains("01-")`. Lists, references and structured arguments support none.
An argument in brackets is optional.

{contents}
- [Structured arguments](#structured-arguments)
- [Enumerations](#enumerations)

{objects}

# Structured arguments

{method_objects}

# Enumerations

Documents, filters and getters contain the identifiers. Setters take the ID.

{tables}
"""

OBJECT = """\
## {name}

{text}.

{header}

{parts}"""

ATTRIBUTE_HEAD = "| attribute | label | value | operators |\n|---|---|---|---|"
FIELD_HEAD = "| field | label | value |\n|---|---|---|"
COMMAND_HEAD = "| command | effect | privilege | arguments |\n|---|---|---|---|"
ARGUMENT_HEAD = "| argument | value | commands |\n|---|---|---|"
ROW_HEAD = "| ID | identifier | readable name |\n|---|---|---|"


def cell(text):
    """Escapes characters that have a meaning in Markdown."""
    for sign in "\\|<>*_":
        text = text.replace(sign, "\\" + sign)
    return text


def row(*cells):
    return "| " + " | ".join(cells) + " |"


def table(head, rows):
    return "\n".join([head, *rows])


def link(name, heading=None):
    anchor = (heading or name).lower().replace(" ", "-").replace("(", "").replace(")", "")
    return f"[{name}](#{anchor})"


def table_heading(name):
    """Returns the heading of an enumeration, which may have the name of an object."""
    return f"{name} (enumeration)"


def value_words(attribute):
    """Describes the legal values, with links to structured types and enumerations."""
    rules = attribute.rules
    if "table" in rules:
        words = "an identifier of " if attribute.kind == "ENUM" else "identifiers of "
        return words + link(rules["table"], table_heading(rules["table"]))
    if attribute.kind.startswith("ENUM"):
        return "an identifier" if attribute.kind == "ENUM" else "identifiers"
    words = cell(kinds.in_words(attribute)).replace(", null for none", "")
    return f"{words}: {link(rules['object'])}" if "object" in rules else words


def operator_words(attribute):
    return " ".join(f"`{operator}`" for operator in kinds.KINDS[attribute.kind].operators)


def attribute_table(attributes):
    return table(ATTRIBUTE_HEAD, [row(f"`{each.name}`", cell(each.label), value_words(each), operator_words(each))
                                  for each in attributes])


def field_table(attributes):
    return table(FIELD_HEAD, [row(f"`{each.name}`", cell(each.label), value_words(each)) for each in attributes])


def argument_words(argument):
    return f"`{argument.name}`" if argument.is_required else f"[`{argument.name}`]"


def command_table(commands):
    return table(COMMAND_HEAD, [
        row(f"`{each.name}`", "changes" if each.changes_state else "reads", each.privilege,
            " ".join(map(argument_words, each.arguments)) or "none") for each in commands])


def argument_table(commands):
    """Lists each argument once, with the commands that take it with the same rules."""
    users = {}
    for command in commands:
        for argument in command.arguments:
            users.setdefault((argument.name, value_words(argument.attribute)), []).append(f"`{command.name}`")
    return table(ARGUMENT_HEAD, [row(f"`{name}`", words, " ".join(names))
                                 for (name, words), names in sorted(users.items())])


def render_object(each):
    associations = "Associations: " + ", ".join(f"`{name}`" for name in each.associations) + "."
    header = f"`#include \"{names.UNIT_FOLDER}{names.unit(each.name)}.h\"`"
    parts = [command_table(each.commands), argument_table(each.commands), associations,
             attribute_table(each.attributes + each.inherited())]
    return OBJECT.format(name=each.name, text=each.text, header=header, parts="\n\n".join(parts))


def render_method_object(each):
    return f"## {each.name}\n\n{each.text}.\n\n{field_table(each.attributes)}"


def render_table(each):
    rows = [row(str(item.value), f"`{item.description}`", cell(item.ui_string)) for item in each.rows]
    return f"## {table_heading(each.name)}\n\n{table(ROW_HEAD, rows)}"


def render(catalogue, tables):
    contents = "\n".join(f"- {link(each.name)}: {each.text}" for each in catalogue.objects)
    return PAGE.format(contents=contents, objects="\n\n".join(map(render_object, catalogue.objects)),
                       method_objects="\n\n".join(map(render_method_object, catalogue.method_objects)),
                       tables="\n\n".join(map(render_table, sorted(tables, key=lambda each: each.name))))
