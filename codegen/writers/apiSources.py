"""Writes the sources of the API library: descriptors, lists and accessors, which only call hand-written code."""

from codegen.model import attributeKinds as kinds
from codegen.model import classNames as names
from codegen.model.catalogue import BASES
from codegen.writers.cppLayout import head, joined, operation
from codegen.writers.output import c_string, notice

OBJECT_SOURCE = notice("{file}") + """\
#include "{folder}{unit}.h"

{includes}

namespace {{

/** The source that errors name. */
constexpr char kSourceFile[] = "{folder}{unit}";

}}  // namespace

{cls}::{cls}() : {base}(ObjectName()) {{}}

{names}

{list}

const ATTRIBUTEList& {cls}::GetAttributeList() const {{
    return Attributes();
}}

void {cls}::InitMetaData() const {{
{init}
}}

{attributes}

{methods}
"""

METHOD_OBJECTS_SOURCE = notice("{file}") + """\
#include "{folder}{unit}.h"

{includes}

{classes}
"""

METHOD_OBJECT = """\
{names}

{list}

const ATTRIBUTEList& {cls}::GetAttributeList() const {{
    return Attributes();
}}

{attributes}
"""

NAMES = """\
const std::string& {cls}::ObjectName() {{
    static const auto& name = *new std::string("{name}");
    return name;
}}

const std::string& {cls}::GetObjectName() const {{
    return ObjectName();
}}"""

LIST = """\
const ATTRIBUTEList& {cls}::Attributes() {{
{list}
    return list;
}}"""

DESCRIPTOR = """\
{head}
{attribute}
    return attribute;
}}"""

DESCRIPTION = """\
{head}
    static const auto& description = *new METHODDescription{{
        .objectName = ObjectName(),
        .commandName = "{command}",
        .changesState = {changes},
        .privilege = {privilege},
{required}
{attributes}
        .sourceFile = kSourceFile,
        .sourceLine = __LINE__,
    }};
    return description;
}}"""

BASE_FOLDER = "apiMgmt/apiStub/base/apiObjects/base/"
LIST_INDENT = " " * 8


def bound(attribute, key):
    return str(attribute.rules.get(key, -1))


def descriptor_arguments(attribute):
    arguments = [c_string(attribute.name), str(attribute.width), "true" if attribute.flagged else "false"]
    if attribute.kind == "NAME":
        arguments.append("false")
    if kinds.KINDS[attribute.kind].rules == kinds.BOUNDS:
        arguments += [bound(attribute, "min"), bound(attribute, "max")]
    if kinds.LENGTHS[0] in kinds.KINDS[attribute.kind].rules:
        arguments += [bound(attribute, "minLength"), bound(attribute, "maxLength")]
    if "invalid" in attribute.rules:
        arguments += [c_string(attribute.rules["invalid"]), '""']
    arguments.append(c_string(attribute.label))
    if "table" in attribute.rules:
        arguments.append(names.table(attribute.rules["table"]))
    return arguments


def render_descriptor(scope, attribute):
    kind = names.attribute_class(attribute.kind)
    line = joined(f"    static const auto& attribute = *new {kind}(", descriptor_arguments(attribute), ");", LIST_INDENT)
    accessor = f"{scope}::{names.accessor(attribute.name)}"
    return DESCRIPTOR.format(head=head(f"const {kind}&", accessor, "", " {"), attribute=line)


def setter_body(attribute):
    accessor, value = f"{names.accessor(attribute.name)}()", kinds.parameter(attribute)
    if "table" in attribute.rules and attribute.kind == "ENUM":
        return f"SetEnumId(*this, {accessor}, {names.table(attribute.rules['table'])}, {value});"
    return f"SetTyped(*this, {accessor}, {value});"


def getter_body(attribute):
    if attribute.kind == "METHODOBJECT":
        return f'return ReadMethodObject<{kinds.gives(attribute)}>(GetAttribute("{attribute.name}"));'
    if attribute.kind == "METHODOBJECTARRAY":
        item = names.object_class(attribute.rules["object"])
        return f'return ReadMethodObjects<{item}>(GetAttribute("{attribute.name}"));'
    return f"return GetTyped(*this, {names.accessor(attribute.name)}());"


def render_accessors(scope, attribute, described=True):
    """Without a descriptor, an attribute is a string that is stored verbatim."""
    setter = setter_body(attribute) if described else f'SetAttribute("{attribute.name}", {kinds.parameter(attribute)});'
    getter = getter_body(attribute) if described else f'return GetAttribute("{attribute.name}");'
    return (operation("void", f"{scope}::Set{attribute.name}", kinds.takes(attribute), "", setter) + "\n" +
            operation(kinds.gives(attribute), f"{scope}::Get{attribute.name}", "", " const", getter))


def render_attribute(scope, attribute):
    return render_descriptor(scope, attribute) + "\n" + render_accessors(scope, attribute)


def render_names(each):
    return NAMES.format(cls=names.object_class(each.name), name=each.name)


def accessor_list(attributes):
    return [f"&{names.accessor(attribute.name)}()" for attribute in attributes]


def render_object_list(each):
    base = BASES[each.base]
    line = joined("    static const auto& list = *new ATTRIBUTEList(JoinAttributeLists({",
                  accessor_list(each.attributes), f"}}, {base}::Attributes()));", LIST_INDENT)
    return LIST.format(cls=names.object_class(each.name), list=line)


def render_init(each):
    calls = ["    Attributes();"]
    calls += [f"    {names.method_class(each.name, command.name)}::Description();" for command in each.commands]
    used = {argument.attribute.rules["object"] for command in each.commands for argument in command.arguments
            if "object" in argument.attribute.rules}
    return "\n".join(calls + [f"    {names.object_class(name)}::Attributes();" for name in sorted(used)])


def method_descriptor(attribute):
    if attribute.kind == "GETLISTFILTER":
        return "&GETLISTApiMethod::FilterAttribute()"
    return f"&{names.accessor(attribute.name)}()"


def render_description(each, scope, command):
    required = joined(LIST_INDENT + ".required = {", [c_string(name) for name in command.required()], "},",
                      LIST_INDENT + "    ")
    attributes = joined(LIST_INDENT + ".attributes = {", list(map(method_descriptor, command.descriptors())),
                        "},", LIST_INDENT + "    ")
    return DESCRIPTION.format(head=head("const METHODDescription&", f"{scope}::Description", "", " {"),
                              command=command.name,
                              changes="true" if command.changes_state else "false",
                              privilege=names.privilege(command.privilege), required=required, attributes=attributes)


def render_method(each, command):
    scope = f"{names.object_class(each.name)}::{names.method_class(each.name, command.name)}"
    parts = [render_description(each, scope, command)]
    for argument in command.arguments:
        if argument.name == "Filter":
            continue
        attribute = argument.attribute
        if argument.described and not each.shares(attribute):
            parts.append(render_attribute(scope, attribute))
        else:
            parts.append(render_accessors(scope, attribute, argument.described))
    return "\n\n".join(parts)


def include_lines(attributes, filter_descriptor):
    """Returns the includes after the unit's own header."""
    headers = [BASE_FOLDER + "typedAccess.h"]
    if any("table" in attribute.rules for attribute in attributes):
        headers.append(names.UNIT_FOLDER + "apiEnumsIDStrList.h")
    if any(attribute.kind.startswith("METHODOBJECT") for attribute in attributes):
        headers.append(names.UNIT_FOLDER + "methodObjectText.h")
    if filter_descriptor:
        headers.append("apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h")
    return "\n".join(f'#include "{header}"' for header in sorted(headers))


def render_object(each):
    cls = names.object_class(each.name)
    attributes = each.attributes + [argument.attribute for command in each.commands for argument in command.arguments]
    return OBJECT_SOURCE.format(
        file=each.place.file, folder=names.UNIT_FOLDER, unit=names.unit(each.name), cls=cls, base=BASES[each.base],
        includes=include_lines(attributes, any(command.is_list() for command in each.commands)),
        names=render_names(each), list=render_object_list(each), init=render_init(each),
        attributes="\n\n".join(render_attribute(cls, attribute) for attribute in each.attributes),
        methods="\n\n".join(render_method(each, command) for command in each.commands))


def render_method_object(each):
    cls = names.object_class(each.name)
    line = joined("    static const auto& list = *new ATTRIBUTEList{", accessor_list(each.attributes), "};", LIST_INDENT)
    return METHOD_OBJECT.format(
        names=render_names(each), cls=cls, list=LIST.format(cls=cls, list=line),
        attributes="\n\n".join(render_attribute(cls, attribute) for attribute in each.attributes))


def render_method_objects(method_objects):
    attributes = [attribute for each in method_objects for attribute in each.attributes]
    return METHOD_OBJECTS_SOURCE.format(
        file=method_objects[0].place.file, folder=names.UNIT_FOLDER, unit=names.METHOD_OBJECT_UNIT,
        includes=include_lines(attributes, False),
        classes="\n".join(map(render_method_object, method_objects)).rstrip("\n"))
