"""Lines of the data files -> catalogue, with the checks that one line allows."""

import re

from .kinds import ATTRIBUTE_KINDS, KINDS
from .model import BASES, INHERITED, PRIVILEGES, Argument, ArrayObject, Attribute, Command, MethodObject

# Names become parts of C++ names and XML elements.
NAME = re.compile(r"[A-Z][A-Za-z0-9]*$")
LABEL = re.compile(r"[ -~]*$")
TABLE = re.compile(r"[A-Z][A-Za-z0-9]*$")
NUMBER = re.compile(r"\d{1,18}$")
WORD_BORDER = re.compile(r"(?<=[a-z0-9])(?=[A-Z])")
NUMBER_RULES = ("min", "max", "minLength", "maxLength")
DEFAULT_WIDTH = 20
GREATEST_WIDTH = 200

# Arguments that stand by their name alone: kind, rules, and whether a method class describes them. Which
# instance a call is for is no matter of a single class.
KNOWN_ARGUMENTS = {
    "InstanceId": ("INSTANCEID", {}, False),
    "Filter": ("GETLISTFILTER", {}, True),
    "HistoricalFilter": ("METHODOBJECT", {"object": "HistoricalFilter"}, True),
}


def read_name(line, word, what):
    if not NAME.match(word):
        raise line.error(f"'{word}' is no name of {what}: a capital letter, then letters and digits")
    return word


def read_text(line, word, what):
    if not LABEL.match(word):
        raise line.error(f"{what} holds a character outside printable ASCII")
    if "*/" in word:
        raise line.error(f"{what} would end a comment")
    return word


def read_kind(line, word):
    if word not in ATTRIBUTE_KINDS:
        raise line.error(f"'{word}' is no kind of attribute: {', '.join(ATTRIBUTE_KINDS)}")
    return word


def read_rule(line, kind, word):
    key, equals, value = word.partition("=")
    if not equals or key not in KINDS[kind].rules:
        legal = ", ".join(f"{rule}=" for rule in KINDS[kind].rules) or "no rules"
        raise line.error(f"'{word}' is no rule here: kind {kind} takes {legal}")
    if key in NUMBER_RULES:
        if not NUMBER.match(value):
            raise line.error(f"'{value}' of {key} is no number of at most 18 digits")
        return key, int(value)
    if key in ("table", "object") and not TABLE.match(value):
        raise line.error(f"'{value}' is no name of {'a table' if key == 'table' else 'a method object'}")
    if not value:
        raise line.error(f"{key} is empty")
    return key, read_text(line, value, key)


def read_rules(line, kind, words):
    rules = {}
    for word in words:
        key, value = read_rule(line, kind, word)
        if key in rules:
            raise line.error(f"{key} stands there twice")
        rules[key] = value
    for low, high in (("min", "max"), ("minLength", "maxLength")):
        if low in rules and high in rules and rules[low] > rules[high]:
            raise line.error(f"{low} is greater than {high}")
    if kind == "STRING" and rules.get("minLength") == rules.get("maxLength") == 0:
        raise line.error("lengths of 0 and 0 would turn all checks of the text off")
    return rules


def read_attribute(line, taken):
    """attribute NAME KIND WIDTH LABEL [RULE...] [flagged]; taken: what the class has already."""
    words = line.words[1:]
    if len(words) < 4:
        raise line.error('expected: attribute NAME KIND WIDTH "LABEL" [RULE...]')
    name, kind = read_name(line, words[0], "an attribute"), read_kind(line, words[1])
    for other in taken:
        if other.name == name:
            where = f"at line {other.place.line}" if other.place.line else "in the base class"
            raise line.error(f"attribute '{name}' stands already {where}")
    if not NUMBER.match(words[2]) or not 0 < int(words[2]) <= GREATEST_WIDTH:
        raise line.error(f"'{words[2]}' is no width from 1 to {GREATEST_WIDTH}")
    rules, flagged = words[4:], False
    if rules and rules[-1] == "flagged":
        rules, flagged = rules[:-1], True
    return Attribute(line.place, name, kind, int(words[2]), read_text(line, words[3], "the label"),
                     read_rules(line, kind, rules), flagged)


def label_of(name):
    """A label for an argument that no attribute of the object shares its name with."""
    return WORD_BORDER.sub(" ", name)


def read_argument(line, owner, command):
    """needs|takes NAME [KIND [RULE...]]: label and width are those of the object's attribute of that name."""
    words = line.words
    if len(words) < 2:
        raise line.error("expected: needs|takes NAME [KIND [RULE...]]")
    name, needed = read_name(line, words[1], "an attribute"), words[0] == "needs"
    for other in command.arguments:
        if other.name == name:
            raise line.error(f"'{name}' stands already at line {other.attribute.place.line}")
    if needed and command.arguments and not command.arguments[-1].needed:
        raise line.error("the lines 'needs' come before the lines 'takes'")
    if name in KNOWN_ARGUMENTS:
        if len(words) != 2:
            raise line.error(f"'{name}' stands by its name alone")
        kind, rules, described = KNOWN_ARGUMENTS[name]
    elif len(words) == 2:
        raise line.error(f"'{name}' needs a kind")
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
            raise line.error(f"command '{name}' stands already at line {other.place.line}")
    if words[3] not in PRIVILEGES:
        raise line.error(f"the privilege must be one of {', '.join(PRIVILEGES)}")
    return Command(line.place, name, words[2] == "changes", words[3])


def read_association(line, owner):
    if len(line.words) != 2:
        raise line.error("expected: association NAME")
    name = read_name(line, line.words[1], "an association")
    if name in owner.associations:
        raise line.error(f"association '{name}' stands there twice")
    return name


def read_object_head(line):
    words = line.words
    if len(words) != 4 or words[0] != "object" or words[2] not in BASES:
        raise line.error(f'expected: object NAME {"|".join(BASES)} "TEXT"')
    return ArrayObject(line.place, read_name(line, words[1], "an object"), words[2],
                       read_text(line, words[3], "the text"))


def read_object(lines):
    """One object file. Its first line says which object; the rest may stand in any order."""
    each, command = read_object_head(lines[0]), None
    for line in lines[1:]:
        word = line.words[0]
        if line.indented and word in ("needs", "takes"):
            if command is None:
                raise line.error(f"'{word}' stands below no command")
            command.arguments.append(read_argument(line, each, command))
            continue
        command = None
        if line.indented:
            raise line.error(f"no such line below a command: '{' '.join(line.words)}'")
        if word == "attribute":
            each.attributes.append(read_attribute(line, each.attributes + INHERITED[each.base]))
        elif word == "command":
            command = read_command(line, each)
            each.commands.append(command)
        elif word == "association":
            each.associations.append(read_association(line, each))
        else:
            raise line.error(f"no such line: '{' '.join(line.words)}'")
    return each


def read_method_objects(lines):
    """methodObject NAME "TEXT", each with its attributes below."""
    found = []
    for line in lines:
        words = line.words
        if not line.indented and words[0] == "methodObject" and len(words) == 3:
            name = read_name(line, words[1], "a method object")
            for other in found:
                if other.name == name:
                    raise line.error(f"method object '{name}' stands already at line {other.place.line}")
            found.append(MethodObject(line.place, name, read_text(line, words[2], "the text")))
        elif line.indented and words[0] == "attribute" and found:
            found[-1].attributes.append(read_attribute(line, found[-1].attributes))
        else:
            raise line.error('expected: methodObject NAME "TEXT", and below it attribute lines')
    return found
