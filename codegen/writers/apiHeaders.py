"""Writes the headers of the API library."""

from codegen.model import attributeKinds as kinds
from codegen.model import classNames as names
from codegen.model.catalogue import BASES, FILTER_COMMAND
from codegen.writers.cppLayout import WIDTH, comment
from codegen.writers.output import notice

OBJECT_HEADER = notice("{file}") + """\
#pragma once

{includes}

{text}
class {cls} : public {base} {{
  public:
    {cls}();

    const std::string& GetObjectName() const override;
    const ATTRIBUTEList& GetAttributeList() const override;
    void InitMetaData() const override;

    /** Returns "{name}". */
    static const std::string& ObjectName();
    static const ATTRIBUTEList& Attributes();

{accessors}

    // Descriptors, in the order of Attributes().
{descriptors}

{calls}
}};
"""

ASSOCIATIONS = """\
    // Associations: calls that return the objects related to an instance.
{associations}
"""

METHOD = """\
{text}
{head}
      public:
        using DESCRIBEDApiMethod::DESCRIBEDApiMethod;
        static const METHODDescription& Description();
{accessors}    }};
"""

METHOD_OBJECTS_HEADER = notice("{file}") + """\
#pragma once

{includes}

{classes}
"""

METHOD_OBJECT = """\
{text}
class {cls} : public BASEApiMethodObject {{
  public:
    const std::string& GetObjectName() const override;
    const ATTRIBUTEList& GetAttributeList() const override;

    static const std::string& ObjectName();
    static const ATTRIBUTEList& Attributes();

{accessors}

    // Descriptors, in the order of Attributes().
{descriptors}
}};
"""

ATTRIBUTE_FOLDER = "apiMgmt/apiStub/base/apiAttributes/"
BASE_FOLDER = "apiMgmt/apiStub/base/apiObjects/base/"
# The base classes' headers include these.
ALWAYS_THERE = ("numberApiAttributes.h", "textApiAttributes.h")


def include_lines(attributes, always, others):
    """others: headers that are needed for attributes of all kinds."""
    headers = {kinds.HEADER_OF_KIND[attribute.kind] for attribute in attributes} - set(always)
    local = sorted({ATTRIBUTE_FOLDER + header for header in headers} | set(others))
    standard = ["cstdint", "string"]
    if any(attribute.kind == "OBJECT" or attribute.kind.endswith("ARRAY") for attribute in attributes):
        standard.insert(1, "memory")
    if any(attribute.kind.endswith("ARRAY") or attribute.kind == "ENUMMASK" for attribute in attributes):
        standard.append("vector")
    return "\n".join([f"#include <{header}>" for header in standard] + [""] +
                     [f'#include "{header}"' for header in local])


def render_accessors(attribute, indent):
    lines = [comment(f'"{attribute.label}": {kinds.in_words(attribute)}.', indent),
             f"{indent}void Set{attribute.name}({kinds.takes(attribute)});",
             f"{indent}{kinds.gives(attribute)} Get{attribute.name}() const;"]
    return "\n".join(lines)


def render_descriptor(attribute, indent):
    return f"{indent}static const {names.attribute_class(attribute.kind)}& {names.accessor(attribute.name)}();"


def method_text(command):
    """Describes effect, privilege and arguments."""
    effect = "Changes the array." if command.changes_state else "Changes nothing."
    needed = [argument.name for argument in command.arguments if argument.is_required]
    taken = [argument.name for argument in command.arguments if not argument.is_required]
    text = f"{effect} Required privilege: {command.privilege}."
    if needed:
        text += f" Required: {', '.join(needed)}."
    if taken:
        text += f" Optional: {', '.join(taken)}."
    return text


def method_head(cls, base):
    """Returns the first lines of the class, wrapped if they are too long: they contain its name twice."""
    line = f"    class {cls} : public DESCRIBEDApiMethod<{base}, {cls}> {{"
    if len(line) > WIDTH:
        line = line.replace(" : public", "\n        : public")
    if len(line.split("\n")[-1]) > WIDTH:
        line = line.replace(f"<{base}, ", f"<{base},\n{' ' * 36}")
    return line


def render_method(owner, command):
    indent = " " * 8
    cls = names.method_class(owner.name, command.name)
    accessors, own = [], []
    for argument in command.arguments:
        if argument.name == "Filter":
            continue
        accessors.append(render_accessors(argument.attribute, indent))
        if argument.described and not owner.shares(argument.attribute):
            own.append(render_descriptor(argument.attribute, indent))
    body = "".join(f"\n{text}" for text in accessors) + ("\n" if accessors else "")
    if own:
        body += "\n" + "\n".join(own) + "\n"
    base = "GETLISTApiMethod" if command.is_list() else "BASEApiMethod"
    return METHOD.format(text=comment(method_text(command), "    "), head=method_head(cls, base), accessors=body)


def render_association(owner, association):
    cls = names.association_class(owner.name, association)
    line = f"    using {cls} = NAMEDApiAssociation<{names.object_class(owner.name)}, \"{association}\">;"
    return line if len(line) <= WIDTH else line.replace(" = ", " =\n        ")


def render_aliases(each):
    """Returns names of the calls that all objects have, for templates."""
    lines = [f"    using {command.name}Method = {names.method_class(each.name, command.name)};"
             for command in each.commands if command.name in ("Get", FILTER_COMMAND)]
    return "\n".join(["    // The same for all objects, for templates.", *lines, ""]) if lines else ""


def render_calls(each):
    blocks = [render_method(each, command) for command in each.commands] + [render_aliases(each)]
    if each.associations:
        associations = "\n".join(render_association(each, name) for name in each.associations)
        blocks.append(ASSOCIATIONS.format(associations=associations))
    return "\n".join(blocks).rstrip("\n")


def all_attributes(each):
    return each.attributes + [argument.attribute for command in each.commands for argument in command.arguments
                              if argument.name != "Filter"]


def object_includes(each):
    others = [BASE_FOLDER + header for header in ("describedApiMethod.h", "tsBaseApiObject.h")]
    others.append(names.UNIT_FOLDER + "namedApiAssociation.h")
    if any(command.is_list() for command in each.commands):
        others.append(BASE_FOLDER + "getListApiMethod.h")
    if any("object" in attribute.rules for attribute in all_attributes(each)):
        others.append(f"{names.UNIT_FOLDER}{names.METHOD_OBJECT_UNIT}.h")
    return include_lines(all_attributes(each), ALWAYS_THERE, others)


def render_object(each):
    indent = "    "
    return OBJECT_HEADER.format(
        file=each.place.file, includes=object_includes(each), text=comment(each.text + "."), name=each.name,
        cls=names.object_class(each.name), base=BASES[each.base],
        accessors="\n".join(render_accessors(attribute, indent) for attribute in each.attributes),
        descriptors="\n".join(render_descriptor(attribute, indent) for attribute in each.attributes),
        calls=render_calls(each))


def render_method_object(each):
    indent = "    "
    return METHOD_OBJECT.format(
        text=comment(each.text + "."), cls=names.object_class(each.name),
        accessors="\n".join(render_accessors(attribute, indent) for attribute in each.attributes),
        descriptors="\n".join(render_descriptor(attribute, indent) for attribute in each.attributes))


def render_method_objects(method_objects):
    attributes = [attribute for each in method_objects for attribute in each.attributes]
    return METHOD_OBJECTS_HEADER.format(
        file=method_objects[0].place.file,
        includes=include_lines(attributes, (), [BASE_FOLDER + "baseApiMethodObject.h"]),
        classes="\n".join(map(render_method_object, method_objects)).rstrip("\n"))
