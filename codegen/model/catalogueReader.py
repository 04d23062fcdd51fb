"""Parses the API objects and structured arguments, with all checks of single lines."""

import re

from codegen.model import catalogueChecks, enumerations
from codegen.model.attributeKinds import ATTRIBUTE_KINDS, KINDS
from codegen.model.catalogue import (BASES, INHERITED, PRIVILEGES, Argument, ArrayObject, Attribute, Catalogue, Command,
                                     MethodObject)
from codegen.reader import DataError

# Names become parts of C++ names and XML elements.
NAME = re.compile(r"[A-Z][A-Za-z0-9]*$")
LABEL = re.compile(r"[ -~]*$")
NUMBER = re.compile(r"\d{1,18}$")
WORD_BORDER = re.compile(r"(?<=[a-z0-9])(?=[A-Z])")
NUMBER_RULES = ("min", "max", "minLength", "maxLength")
DEFAULT_WIDTH = 20
GREATEST_WIDTH = 200

# Arguments that have no kind in the data: their kind and rules, and whether the method class has a descriptor.
KNOWN_ARGUMENTS = {
    "InstanceId": ("INSTANCEID", {}, False),
    "Filter": ("GETLISTFILTER", {}, True),
    "HistoricalFilter": ("METHODOBJECT", {"object": "HistoricalFilter"}, True),
}


def read_name(line, word, what):
    if not NAME.match(word):
        raise line.error(f"invalid name '{word}' of {what}; use a capital letter, then letters and digits")
    return word


def read_text(line, word, what):
    if not LABEL.match(word):
        raise line.error(f"{what} contains a character outside printable ASCII")
    if "*/" in word:
        raise line.error(f"{what} must not contain '*/'")
    return word


def read_kind(line, word):
    if word not in ATTRIBUTE_KINDS:
        raise line.error(f"unknown kind '{word}'; expected one of {', '.join(ATTRIBUTE_KINDS)}")
    return word


def read_rule(line, key, value):
    if key in NUMBER_RULES:
        if not NUMBER.match(value):
            raise line.error(f"'{value}' of {key} is not a number of at most 18 digits")
        return int(value)
    if key in ("table", "object"):
        return read_name(line, value, "an enumeration" if key == "table" else "a method object")
    return read_text(line, value, key)


def read_rules(line, kind, words):
    rules = {key: read_rule(line, key, value) for key, value in line.options(words, KINDS[kind].rules).items()}
    for low, high in (("min", "max"), ("minLength", "maxLength")):
        if low in rules and high in rules and rules[low] > rules[high]:
            raise line.error(f"{low} is greater than {high}")
    if kind == "STRING" and rules.get("minLength") == rules.get("maxLength") == 0:
        raise line.error("minLength=0 maxLength=0 would disable all checks")
    return rules


def read_attribute(line, taken):
    """Parses attribute NAME KIND WIDTH LABEL [RULE...] [flagged]. taken: the attributes that the class already has."""
    words = line.words[1:]
    if len(words) < 4:
        raise line.error('expected: attribute NAME KIND WIDTH "LABEL" [RULE...]')
    name, kind = read_name(line, words[0], "an attribute"), read_kind(line, words[1])
    for other in taken:
        if other.name == name:
            where = f"at {other.place}" if other.place.line else "in the base class"
            raise line.error(f"duplicate attribute '{name}'; first defined {where}")
    if not NUMBER.match(words[2]) or not 0 < int(words[2]) <= GREATEST_WIDTH:
        raise line.error(f"'{words[2]}' is not a width from 1 to {GREATEST_WIDTH}")
    rules, flagged = words[4:], False
    if rules and rules[-1] == "flagged":
        rules, flagged = rules[:-1], True
    return Attribute(line.place, name, kind, int(words[2]), read_text(line, words[3], "the label"),
                     read_rules(line, kind, rules), flagged)


def label_of(name):
    """Returns the label of an argument if no attribute of the object has the same name."""
    return WORD_BORDER.sub(" ", name)


def read_argument(line, owner, command):
    """Parses needs|takes NAME [KIND [RULE...]]. Label and width are those of the object's attribute of that name."""
    words = line.words
    if words[0] not in ("needs", "takes") or len(words) < 2:
        raise line.error("expected: needs|takes NAME [KIND [RULE...]]")
    name, needed = read_name(line, words[1], "an attribute"), words[0] == "needs"
    for other in command.arguments:
        if other.name == name:
            raise line.error(f"duplicate argument '{name}'; first defined at {other.attribute.place}")
    if needed and command.arguments and not command.arguments[-1].needed:
        raise line.error("'needs' lines must come before 'takes' lines")
    if name in KNOWN_ARGUMENTS:
        if len(words) != 2:
            raise line.error(f"'{name}' must not have a kind")
        kind, rules, described = KNOWN_ARGUMENTS[name]
    elif len(words) == 2:
        raise line.error(f"'{name}' requires a kind")
    else:
        kind, described = read_kind(line, words[2]), True
        rules = read_rules(line, kind, words[3:])
    twin = next((each for each in owner.attributes + owner.inherited() if each.name == name), None)
    width, label = (twin.width, twin.label) if twin else (DEFAULT_WIDTH, label_of(name))
    return Argument(Attribute(line.place, name, kind, width, label, dict(rules)), needed, described)


def read_command(line, owner):
    words = line.words
    if len(words) != 4 or words[2] not in ("reads", "changes"):
        raise line.error("expected: command NAME reads|changes PRIVILEGE")
    name = read_name(line, words[1], "a command")
    for other in owner.commands:
        if other.name == name:
            raise line.error(f"duplicate command '{name}'; first defined at {other.place}")
    if words[3] not in PRIVILEGES:
        raise line.error(f"the privilege must be one of {', '.join(PRIVILEGES)}")
    command = Command(line.place, name, words[2] == "changes", words[3])
    for below in line.below:
        command.arguments.append(read_argument(below, owner, command))
    return command


def read_association(line, owner):
    if len(line.words) != 2:
        raise line.error("expected: association NAME")
    name = read_name(line, line.words[1], "an association")
    if name in owner.associations:
        raise line.error(f"duplicate association '{name}'")
    return name


def read_object_head(line):
    words = line.words
    if len(words) != 4 or words[0] != "object" or words[2] not in BASES:
        raise line.error(f'expected: object NAME {"|".join(BASES)} "TEXT"')
    return ArrayObject(line.place, read_name(line, words[1], "an object"), words[2],
                       read_text(line, words[3], "the text"))


def read_object(lines):
    """Parses an object file: an object line, then its attributes, commands and associations."""
    each = read_object_head(lines[0])
    for line in lines[1:]:
        if line.words[0] == "attribute":
            each.attributes.append(read_attribute(line, each.attributes + INHERITED[each.base]))
        elif line.words[0] == "command":
            each.commands.append(read_command(line, each))
        elif line.words[0] == "association":
            each.associations.append(read_association(line, each))
        else:
            raise line.unknown()
        if line.words[0] != "command" and line.below:
            raise line.below[0].unknown()
    return each


def read_method_objects(lines):
    """Parses lines methodObject NAME "TEXT", each with its attributes below."""
    found = {}
    for line in lines:
        if line.words[0] != "methodObject" or len(line.words) != 3:
            raise line.error('expected: methodObject NAME "TEXT", with attribute lines below it')
        name = read_name(line, line.words[1], "a method object")
        each = MethodObject(line.place, name, read_text(line, line.words[2], "the text"))
        line.add_to(found, name, each, "method object")
        for below in line.below:
            if below.words[0] != "attribute":
                raise below.unknown()
            each.attributes.append(read_attribute(below, each.attributes))
    return list(found.values())


def read(data):
    """Returns the catalogue and the enumerations of data/api, checked. Raises DataError."""
    objects = []
    for name in data.files("api/objects"):
        lines = data.lines(name)
        if not lines:
            raise DataError(f"{data.shown(name)}:1: missing object line")
        objects.append(read_object(lines))
    catalogue = Catalogue(objects, read_method_objects(data.lines("api/methodObjects.def")))
    tables = enumerations.read(data)
    catalogueChecks.check_catalogue(catalogue, {table.name for table in tables})
    return catalogue, tables
