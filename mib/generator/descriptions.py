"""What the descriptions say for people, read and held against the columns and the notifications."""

import os
import re
from dataclasses import dataclass, field

from apiMgmt.common.generator import reader
from apiMgmt.common.generator.reader import DataError, Place
from apiMgmt.snmpSubagent.snmpSubagentMibParser.generator.model import parse_count

MODULE = re.compile(r"[A-Z](?:-?[A-Z0-9])*$")
TYPE = re.compile(r"[A-Z][A-Za-z0-9]*$")
NAME = re.compile(r"[a-z][A-Za-z0-9]*$")
DATE = re.compile(r"\d{12}Z$")
HINT = re.compile(r"\d+[at]$")
ENTERPRISES = (1, 3, 6, 1, 4, 1)

# The options that may stand behind the name in a head line.
OPTIONS = {"scalar": ("syntax", "units"), "column": ("syntax", "units"), "notification": (),
           "table": ("refreshed", "object", "identity"), "convention": ("hint", "from", "api", "components")}


@dataclass
class Entry:
    """A thing and what is said of it. texts: as they stand; an empty one parts two paragraphs."""
    place: Place
    name: str
    options: dict = field(default_factory=dict)
    texts: list = field(default_factory=list)
    kind: str = ""

    def option(self, key):
        return self.options.get(key, "")

    def paragraphs(self):
        paragraphs = [[]]
        for text in self.texts:
            if text:
                paragraphs[-1].append(text)
            else:
                paragraphs.append([])
        return [" ".join(each) for each in paragraphs if each]


@dataclass
class Value:
    number: int
    label: str
    meaning: str
    texts: list


@dataclass
class Convention(Entry):
    values: list = field(default_factory=list)

    def is_text(self):
        return bool(self.option("hint"))


@dataclass
class Node(Entry):
    parent: str = ""
    oid: tuple = ()


@dataclass
class Module(Entry):
    identity: str = ""
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
    columns: dict = field(default_factory=dict)
    tables: dict = field(default_factory=dict)
    notifications: dict = field(default_factory=dict)

    def text_convention(self):
        """The one that texts have unless a line says otherwise."""
        return next(each for each in self.conventions.values() if each.is_text())


def parse_number(line, text):
    if not re.match(r"-?\d+$", text) or not -(2**31) <= int(text) < 2**31:
        raise line.error(f"'{text}' is no number of 32 bits")
    return int(text)


def parse_options(line, words, keys):
    options = {}
    for word in words:
        key, found, value = word.partition("=")
        if not found or key not in keys or not value:
            allowed = ", ".join(key + "=" for key in keys) or "nothing"
            raise line.error(f"'{word}' stands where only {allowed} may stand")
        if key in options:
            raise line.error(f"{key}= stands there twice")
        options[key] = value
    return options


def check_text(line, text):
    if '"' in text or any(not 32 <= ord(char) < 127 for char in text):
        raise line.error("a text of the MIB has printable ASCII characters only, and no double quotes")
    return text


def check_name(line, name, pattern, what):
    if not pattern.match(name) or len(name) > 64:
        raise line.error(f"'{name}' is no name of {what}")
    return name


class Reader:
    def __init__(self):
        self.found = Descriptions()
        self.current = None

    def read(self, lines):
        for line in lines:
            if line.indented:
                self.read_below(line)
            else:
                self.read_head(line)

    def add(self, where, entry):
        if entry.name in where:
            raise entry.place.error(f"'{entry.name}' is described already at {where[entry.name].place}")
        where[entry.name] = self.current = entry

    def read_head(self, line):
        words, found, self.current = line.words, self.found, None
        if words[0] in OPTIONS and len(words) > 1:
            self.read_entry(line)
        elif words[0] == "node" and len(words) == 4:
            self.add(found.nodes, self.read_node(line))
        elif words[0] == "module" and len(words) == 4:
            found.module = self.current = Module(line.place, check_name(line, words[1], MODULE, "a module"),
                                                 identity=words[2], organization=check_text(line, words[3]))
        elif words[0] == "older" and len(words) == 4:
            found.older = self.current = Module(line.place, check_name(line, words[1], MODULE, "a module"),
                                                identity=check_name(line, words[2], NAME, "a node"),
                                                arc=parse_count(line, words[3], 1))
        elif words[0] == "contact" and len(words) == 2:
            found.contact = check_text(line, words[1])
        elif words[0] == "revision" and len(words) == 3 and DATE.match(words[1]):
            found.revisions.append((words[1], check_text(line, words[2])))
        elif words[0] in ("notifications", "conformance") and len(words) == 2:
            setattr(found, {"notifications": "events"}.get(words[0], words[0]), words[1])
        else:
            raise line.error(f"no such line: '{' '.join(words)}'")

    def read_node(self, line):
        name, parent = check_name(line, line.words[1], NAME, "a node"), line.words[2]
        if parent not in self.found.nodes and parent != "enterprises":
            raise line.error(f"there is no node '{parent}' above this line")
        above = self.found.nodes[parent].oid if parent in self.found.nodes else ENTERPRISES
        return Node(line.place, name, parent=parent, oid=above + (parse_count(line, line.words[3], 1),))

    def read_entry(self, line):
        kind, name = line.words[:2]
        options = parse_options(line, line.words[2:], OPTIONS[kind])
        if kind == "convention":
            check_name(line, name, TYPE, "a textual convention")
            if options.get("hint") and not HINT.match(options["hint"]):
                raise line.error(f"'{options['hint']}' is no display hint for texts")
            self.add(self.found.conventions, Convention(line.place, name, options))
        else:
            for text in options.values():
                check_text(line, text)
            where = {"table": self.found.tables, "notification": self.found.notifications}
            self.add(where.get(kind, self.found.columns), Entry(line.place, name, options, kind=kind))

    def read_below(self, line):
        words = line.words
        if self.current is None:
            raise line.error("the line stands below nothing that takes a text")
        if len(words) == 1:
            self.current.texts.append(check_text(line, words[0]))
        elif words[0] == "value" and len(words) > 3 and isinstance(self.current, Convention):
            self.read_value(line)
        else:
            raise line.error(f"no such line here: '{' '.join(words)}'")

    def read_value(self, line):
        words, convention = line.words, self.current
        if convention.is_text() or convention.option("components"):
            raise line.error(f"'{convention.name}' takes no values")
        texts = []
        for word in words[4:]:
            if not word.startswith("text=") or word == "text=":
                raise line.error(f"'{word}' stands where only text= may stand")
            texts.append(word[len("text="):])
        value = Value(parse_number(line, words[1]), check_name(line, words[2], NAME, "a value"),
                      check_text(line, words[3]), texts)
        if convention.values and value.number <= convention.values[-1].number:
            raise line.error(f"{value.number} does not come after {convention.values[-1].number}")
        if any(value.label == other.label for other in convention.values):
            raise line.error(f"'{value.label}' stands there twice")
        if texts and not convention.option("from"):
            raise line.error("text= is for conventions with from=")
        convention.values.append(value)


def read_folder(folder):
    """The lines of all .def files of a folder, in the order of the files' names."""
    names = sorted(name for name in os.listdir(folder) if name.endswith(".def"))
    if not names:
        raise DataError(f"{folder} holds no .def file")
    return [line for name in names for line in reader.read_lines(os.path.join(folder, name))]


def read(lines):
    """What the lines say; not yet held against the columns. Raises DataError."""
    one = Reader()
    one.read(lines)
    return one.found
