"""The reference page of the objects."""

from codegen.model import attributeKinds as kinds
from codegen.model import classNames as names
from codegen.writers.output import markdown_notice

PAGE = markdown_notice("data/api") + """\
# The objects of the array's API

What a call or an attribute is in C++ follows from its name: the class of an object `TsDisk` is `APITsDisk`, its
command `Get` the class `APITsDisk::APITsDiskGetMethod`, its association `Enclosure` the class
`APITsDisk::APITsDiskEnclosureAssociation`, and an attribute `Name` has `SetName` and `GetName`.

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

ATTRIBUTE_HEAD = "| attribute | label | a value is |\n|---|---|---|"
COMMAND_HEAD = "| command | does | privilege | arguments |\n|---|---|---|---|"


def cell(text):
    """Signs that mean something in Markdown stand as themselves."""
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
