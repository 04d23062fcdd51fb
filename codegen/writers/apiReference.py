"""Writes the reference of the API objects."""

from codegen.model import attributeKinds as kinds
from codegen.model import classNames as names
from codegen.writers.output import markdown_notice

PAGE = markdown_notice("data/api") + """\
# The objects of the array's API

The names in C++ follow from those below: the class of the object `TsDisk` is `APITsDisk`, that of its command `Get`
is `APITsDisk::APITsDiskGetMethod`, that of its association `Enclosure` is
`APITsDisk::APITsDiskEnclosureAssociation`, and the attribute `Name` has the accessors `SetName` and `GetName`.

{contents}

{objects}

# Structured arguments

{method_objects}
"""

OBJECT = """\
## {name}

{text}.

{header}

{parts}"""

ATTRIBUTE_HEAD = "| attribute | label | value |\n|---|---|---|"
COMMAND_HEAD = "| command | effect | privilege | arguments |\n|---|---|---|---|"


def cell(text):
    """Escapes characters that have a meaning in Markdown."""
    for sign in "\\|<>*_":
        text = text.replace(sign, "\\" + sign)
    return text


def row(*cells):
    return "| " + " | ".join(cells) + " |"


def attribute_row(attribute):
    words = kinds.in_words(attribute)
    if "object" in attribute.rules:
        words += f": {attribute.rules['object']}"
    return row(f"`{attribute.name}`", cell(attribute.label), cell(words))


def attribute_table(attributes):
    return "\n".join([ATTRIBUTE_HEAD] + list(map(attribute_row, attributes)))


def argument_words(argument):
    return f"`{argument.name}`" if argument.needed else f"[`{argument.name}`]"


def command_table(commands):
    return "\n".join([COMMAND_HEAD] + [
        row(f"`{each.name}`", "changes" if each.changes_state else "reads", each.privilege,
            " ".join(map(argument_words, each.arguments)) or "none") for each in commands])


def render_object(each):
    associations = "Associations: " + ", ".join(f"`{name}`" for name in each.associations) + "."
    header = f"`#include \"{names.UNIT_FOLDER}{names.unit(each.name)}.h\"`"
    parts = [command_table(each.commands), associations, attribute_table(each.attributes + each.inherited())]
    return OBJECT.format(name=each.name, text=each.text, header=header, parts="\n\n".join(parts))


def render_method_object(each):
    return f"## {each.name}\n\n{each.text}.\n\n{attribute_table(each.attributes)}"


def render(catalogue):
    contents = "\n".join(f"- [{each.name}](#{each.name.lower()}): {each.text}" for each in catalogue.objects)
    return PAGE.format(contents=contents, objects="\n\n".join(map(render_object, catalogue.objects)),
                       method_objects="\n\n".join(map(render_method_object, catalogue.method_objects)))
