"""Checks of whole objects, and across files."""

import os

from codegen.model import classNames
from codegen.model.catalogue import FILTER_COMMAND

# Accessors of these would hide functions of the base classes.
RESERVED_IN_OBJECTS = ("Attribute", "AttributeList", "ObjectName")
RESERVED_IN_METHODS = ("Attribute", "AttributeList", "CommandName", "LiteObj", "ObjectName", "RequiredPrivilege")


def check_file_name(each):
    wanted = each.name[0].lower() + each.name[1:] + ".def"
    if os.path.basename(each.place.file) != wanted:
        raise each.place.error(f"the file of object '{each.name}' must be {wanted}")


def check_command(command):
    names = [argument.name for argument in command.arguments]
    if command.is_list() != ("Filter" in names):
        raise command.place.error(f"{FILTER_COMMAND}, and no other command, requires 'Filter'")
    if command.is_list() and command.changes_state:
        raise command.place.error(f"{FILTER_COMMAND} must be 'reads'")
    for argument in command.arguments:
        if argument.name in RESERVED_IN_METHODS:
            raise argument.attribute.place.error(f"an accessor for '{argument.name}' would hide one of the base class")


def check_order(each):
    """Commands must come last, because their arguments take label and width from the attributes."""
    for command in each.commands:
        late = next((a for a in each.attributes if a.place.line > command.place.line), None)
        if late:
            raise late.place.error("attributes must come before commands")


def check_references(attribute, catalogue, tables):
    table, method_object = attribute.rules.get("table"), attribute.rules.get("object")
    if table and table not in tables:
        raise attribute.place.error(f"unknown enumeration '{table}'")
    if method_object and catalogue.method_object(method_object) is None:
        raise attribute.place.error(f"unknown method object '{method_object}'")
    if attribute.kind.startswith("METHODOBJECT") and not method_object:
        raise attribute.place.error(f"kind {attribute.kind} requires object=")


def check_method_classes(objects):
    """Class names must be unique: a factory would silently keep only the last class of a name."""
    owners = {}
    for each in objects:
        for command in each.commands:
            cls = classNames.method_class(each.name, command.name)
            if cls in owners:
                raise command.place.error(f"duplicate class {cls}; first defined in {owners[cls]}")
            owners[cls] = each.place.file


def check_catalogue(catalogue, tables):
    """tables: the names of the enumerations. Raises DataError."""
    taken = {}
    for each in catalogue.objects + catalogue.method_objects:
        if each.name in taken:
            raise each.place.error(f"duplicate '{each.name}'; first defined in {taken[each.name].file}")
        taken[each.name] = each.place
        if not each.attributes:
            raise each.place.error(f"'{each.name}' has no attributes")
        for attribute in each.attributes:
            if attribute.name in RESERVED_IN_OBJECTS:
                raise attribute.place.error(f"an accessor for '{attribute.name}' would hide one of the base class")
            check_references(attribute, catalogue, tables)
    for each in catalogue.objects:
        check_file_name(each)
        check_order(each)
        for command in each.commands:
            check_command(command)
            for argument in command.arguments:
                check_references(argument.attribute, catalogue, tables)
    check_method_classes(catalogue.objects)
