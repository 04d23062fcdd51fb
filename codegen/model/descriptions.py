"""The prose of the MIB module: descriptions, textual conventions, and the module itself."""

import re
from dataclasses import dataclass, field

from codegen.reader import Place

MODULE = re.compile(r"[A-Z](?:-?[A-Z0-9]){0,63}$")
TYPE = re.compile(r"[A-Z][A-Za-z0-9]{0,63}$")
NAME = re.compile(r"[a-z][A-Za-z0-9]{0,63}$")
DATE = re.compile(r"\d{12}Z$")
HINT = re.compile(r"\d+[at]$")
ENTERPRISES = (1, 3, 6, 1, 4, 1)


def check_text(line, text):
    if '"' in text or any(not 32 <= ord(char) < 127 for char in text):
        raise line.error("a MIB string must be printable ASCII without double quotes")
    return text


def is_text(line):
    """Returns whether a line is part of a description, that is, has only one word."""
    return len(line.words) == 1


@dataclass(kw_only=True)
class Described:
    """An item with a description. texts: its parts as entered; an empty one separates two paragraphs."""

    place: Place
    name: str
    texts: list = field(default_factory=list)

    def read_texts(self, line):
        """Stores the description below the line. Returns the other lines below it."""
        self.texts = [check_text(below, below.words[0]) for below in line.below if is_text(below)]
        return [below for below in line.below if not is_text(below)]

    def read_texts_only(self, line):
        for below in self.read_texts(line):
            raise below.unknown()
        return self

    def paragraphs(self):
        paragraphs = [[]]
        for text in self.texts:
            if text:
                paragraphs[-1].append(text)
            else:
                paragraphs.append([])
        return [" ".join(each) for each in paragraphs if each]

    def check_described(self, kind):
        if not any(self.texts):
            raise self.place.error(f"{kind} '{self.name}' has no description")


@dataclass
class Value:
    number: int
    label: str
    meaning: str
    texts: list


@dataclass(kw_only=True)
class Convention(Described):
    options: dict = field(default_factory=dict)
    values: list = field(default_factory=list)

    def option(self, key):
        return self.options.get(key, "")

    def is_text(self):
        return bool(self.option("hint"))


@dataclass(kw_only=True)
class Node(Described):
    parent: str
    oid: tuple


@dataclass(kw_only=True)
class Module(Described):
    identity: str
    organization: str = ""
    arc: int = 0  # below enterprises; of the older module only


@dataclass
class Descriptions:
    module: Module = None
    older: Module = None
    contact: str = ""
    revisions: list = field(default_factory=list)
    nodes: dict = field(default_factory=dict)
    events: str = ""
    conformance: str = ""
    conventions: dict = field(default_factory=dict)

    def text_convention(self):
        """Returns the convention of all strings that do not name another."""
        return next(each for each in self.conventions.values() if each.is_text())


def read_node(line, nodes):
    name, parent = line.name(line.words[1], NAME, "a node"), line.words[2]
    if parent not in nodes and parent != "enterprises":
        raise line.error(f"unknown node '{parent}'; define it above this line")
    above = nodes[parent].oid if parent in nodes else ENTERPRISES
    return Node(place=line.place, name=name, parent=parent, oid=above + (line.number(line.words[3], 1),))


def read_module_line(line, found):
    word, *rest = line.words
    if word == "module" and len(rest) == 3:
        found.module = Module(place=line.place, name=line.name(rest[0], MODULE, "a module"), identity=rest[1],
                              organization=check_text(line, rest[2])).read_texts_only(line)
    elif word == "older" and len(rest) == 3:
        found.older = Module(place=line.place, name=line.name(rest[0], MODULE, "a module"),
                             identity=line.name(rest[1], NAME, "a node"),
                             arc=line.number(rest[2], 1)).read_texts_only(line)
    elif word == "node" and len(rest) == 3:
        node = read_node(line, found.nodes).read_texts_only(line)
        line.add_to(found.nodes, node.name, node, "node")
    elif word == "contact" and len(rest) == 1:
        found.contact = check_text(line, rest[0])
    elif word == "revision" and len(rest) == 2 and DATE.match(rest[0]):
        found.revisions.append((rest[0], check_text(line, rest[1])))
    elif word == "notifications" and len(rest) == 1:
        found.events = rest[0]
    elif word == "conformance" and len(rest) == 1:
        found.conformance = rest[0]
    else:
        raise line.unknown()


def read_value(line, convention):
    words = line.words
    if words[0] != "value" or len(words) < 4 or not re.match(r"-?\d{1,9}$", words[1]):
        raise line.unknown()
    if convention.is_text() or convention.option("components"):
        raise line.error(f"'{convention.name}' must not have values")
    texts = [text for word in words[4:] for text in line.options([word], ("text",)).values()]
    value = Value(int(words[1]), line.name(words[2], NAME, "a value"), check_text(line, words[3]), texts)
    if convention.values and value.number <= convention.values[-1].number:
        raise line.error(f"{value.number} must be greater than {convention.values[-1].number} above")
    if any(value.label == other.label for other in convention.values):
        raise line.error(f"duplicate value '{value.label}'")
    if texts and not convention.option("from"):
        raise line.error("text= requires a convention with from=")
    convention.values.append(value)


def read_convention(line, found):
    if line.words[0] != "convention" or len(line.words) < 2:
        raise line.unknown()
    name = line.name(line.words[1], TYPE, "a textual convention")
    options = line.options(line.words[2:], ("hint", "from", "api", "components"))
    if "hint" in options and not HINT.match(options["hint"]):
        raise line.error(f"'{options['hint']}' is not a display hint for strings")
    convention = Convention(place=line.place, name=name, options=options)
    line.add_to(found.conventions, name, convention, "convention")
    for below in convention.read_texts(line):
        read_value(below, convention)


def read(data):
    """Returns the module and its conventions, not yet checked against the columns. Raises DataError."""
    found = Descriptions()
    for line in data.lines("mib/module.def"):
        read_module_line(line, found)
    for line in data.lines("mib/conventions.def"):
        read_convention(line, found)
    return found
