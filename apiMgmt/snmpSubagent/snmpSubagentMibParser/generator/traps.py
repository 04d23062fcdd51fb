"""The notifications as traps.def describes them, with every check that they must pass."""

import re
from dataclasses import dataclass, field

from apiMgmt.common.generator.reader import Place

from .model import parse_count

MAX_COLUMNS = 16
WORD = re.compile(r"[a-z][a-z0-9-]*$")
INDEX_RULES = ("index", "bounded-index", "next-index")
OBJECT_RULES = ("index", "bounded-index", "controller", "row", "one-or-two")
COMPONENT_RULES = ("next-index", "row")
FRESH_RULES = ("table", "table-first", "instance")
FORCE_RULES = ("row", "controller", "index", "component")

# How many "%d" each text holds.
OBJECT_TEXTS = {"no-index": 0, "unknown": 1, "too-large": 1, "missing": 1, "not-up": 1, "unhealthy": 0}
COMPONENT_TEXTS = {"unknown": 1, "too-large": 2, "missing": 1, "unhealthy": 0, "down": 0, "degraded": 0}


@dataclass
class State:
    find: str = ""
    index_column: object = None
    status: object = None
    owner: object = None
    verify: object = None
    texts: dict = field(default_factory=dict)


@dataclass
class Notification:
    place: Place
    number: int
    name: str
    word: str
    description: str
    argument: str = ""
    columns: list = field(default_factory=list)
    state: State = None
    fresh: str = ""
    api_name: str = ""
    rows: list = field(default_factory=list)
    clears_when_up: bool = False


@dataclass
class Component:
    place: Place
    trap: int
    number: int
    word: str
    description: str
    argument: str = ""
    state: State = field(default_factory=State)
    levels: dict = field(default_factory=dict)


@dataclass
class Force:
    place: Place
    column: object
    trap: int
    rule: str
    component: int
    index_column: object
    event_id: str
    word: str


@dataclass
class Traps:
    plain: list = field(default_factory=list)
    notifications: list = field(default_factory=list)
    components: list = field(default_factory=list)
    forces: list = field(default_factory=list)

    def notification(self, number):
        return next((each for each in self.notifications if each.number == number), None)

    def component(self, trap, number):
        return next((each for each in self.components if (each.trap, each.number) == (trap, number)), None)


class Reader:
    def __init__(self, mib):
        self.columns = {column.name: column for column in mib.columns}
        self.traps = Traps()
        self.current = None

    def column(self, line, name):
        if name not in self.columns:
            raise line.error(f"there is no column '{name}'")
        return self.columns[name]

    def read(self, lines):
        for line in lines:
            if line.indented:
                self.read_attribute(line)
            else:
                self.read_head(line)
        for each in self.traps.notifications:
            check_notification(each, self.traps)
        for each in self.traps.components:
            check_component(each)
        for column in self.columns.values():
            if column.set_fn.endswith("ForceTrap_set") and all(f.column is not column for f in self.traps.forces):
                raise column.place.error(f"no force line of traps.def tells what a SET of '{column.name}' does")
        return self.traps

    def read_head(self, line):
        words, self.current = line.words, None
        shapes = {"notification": (5,), "component": (5,), "force": range(5, 10)}
        if words[0] == "plain":
            self.traps.plain += [parse_count(line, word, 1) for word in words[1:]]
        elif words[0] not in shapes or len(words) not in shapes[words[0]]:
            raise line.error(f"no such line: '{' '.join(words)}'")
        elif words[0] == "notification":
            self.current = self.read_notification(line)
        elif words[0] == "component":
            self.current = self.read_component(line)
        else:
            self.read_force(line)

    def read_notification(self, line):
        number, name, word = parse_count(line, line.words[1], 200), line.words[2], line.words[3]
        if not WORD.match(word):
            raise line.error(f"'{word}' is no word for command lines")
        for other in self.traps.notifications:
            if number == other.number or name == other.name or word == other.word:
                raise line.error(f"number, name or word stand already at line {other.place.line}")
        notification = Notification(line.place, number, name, word, line.words[4])
        self.traps.notifications.append(notification)
        return notification

    def read_component(self, line):
        trap, number, word = parse_count(line, line.words[1]), parse_count(line, line.words[2], 1), line.words[3]
        parent = self.traps.notification(trap)
        if parent is None or parent.state is None or "not-up" not in parent.state.texts:
            raise line.error(f"notification {trap} has no components")
        for other in self.traps.components:
            if other.trap == trap and (other.number == number or other.word == word):
                raise line.error(f"number or word stand already at line {other.place.line}")
        component = Component(line.place, trap, number, word, line.words[4])
        self.traps.components.append(component)
        return component

    def read_attribute(self, line):
        words, owner = line.words, self.current
        if owner is None or len(words) < 2:
            raise line.error("the line stands below no notification or component")
        is_component = isinstance(owner, Component)
        if not is_component and owner.state is None and words[0] not in ("argument", "shows"):
            owner.state = State()
        texts = COMPONENT_TEXTS if is_component else OBJECT_TEXTS
        if words[0] in texts and len(words) == 2:
            self.read_text(line, owner.state, texts[words[0]])
        elif words[0] == "argument" and len(words) == 2:
            owner.argument = words[1]
        elif words[0] == "find" and len(words) <= 3:
            self.read_find(line, owner.state, COMPONENT_RULES if is_component else OBJECT_RULES)
        elif words[0] == "judge" and len(words) == 4:
            self.read_judge(line, owner.state)
        elif is_component and words[0] in ("low", "high") and len(words) == 4:
            owner.levels[words[0]] = (self.column(line, words[1]), self.column(line, words[2]), words[3])
        elif not is_component and words[0] == "shows":
            owner.columns = [self.column(line, name) for name in words[1:]]
            if len(owner.columns) > MAX_COLUMNS:
                raise line.error(f"a notification carries at most {MAX_COLUMNS} variables")
        elif not is_component and words[0] == "rows":
            owner.rows = [self.column(line, name) for name in words[1:]]
        elif not is_component and words[0] == "fresh" and len(words) == (3 if words[1] == "instance" else 2):
            owner.fresh, owner.api_name = words[1], words[2] if len(words) == 3 else ""
            if owner.fresh not in FRESH_RULES:
                raise line.error(f"fresh must be one of {', '.join(FRESH_RULES)}")
        elif not is_component and words == ["clears", "when-up"]:
            owner.clears_when_up = True
        else:
            raise line.error(f"no such line here: '{' '.join(words)}'")

    def read_text(self, line, state, numbers):
        key, text = line.words
        if text.count("%d") != numbers or text.count("%") != numbers:
            raise line.error(f"the text of '{key}' must hold \"%d\" {numbers} time(s)")
        state.texts[key] = text

    def read_find(self, line, state, rules):
        rule = line.words[1]
        if rule not in rules:
            raise line.error(f"find must be one of {', '.join(rules)}")
        if (rule in INDEX_RULES) != (len(line.words) == 3):
            raise line.error(f"'{rule}' takes {'a' if rule in INDEX_RULES else 'no'} column")
        state.find = rule
        state.index_column = self.column(line, line.words[2]) if rule in INDEX_RULES else None

    def read_judge(self, line, state):
        words = line.words
        if not words[2].startswith("owner=") or not words[3].startswith("verify="):
            raise line.error("expected: judge STATUS owner=COLUMN verify=COLUMN")
        state.status = self.column(line, words[1])
        state.owner = self.column(line, words[2][len("owner="):])
        state.verify = self.column(line, words[3][len("verify="):])

    def read_force(self, line):
        words = line.words
        column, trap, rule, rest = self.column(line, words[1]), parse_count(line, words[2]), words[3], words[4:]
        if rule not in FORCE_RULES:
            raise line.error(f"the rule must be one of {', '.join(FORCE_RULES)}")
        if column.set_fn != f"{column.name}_set":
            raise line.error(f"columns.def must say set={column.name}_set")
        component, index_column = 0, None
        if rule == "component":
            component, rest = parse_count(line, rest[0]), rest[1:]
            if self.traps.component(trap, component) is None:
                raise line.error(f"notification {trap} has no component {component}")
            if rest and rest[0] == "index":
                index_column, rest = self.column(line, rest[1]), rest[2:]
        elif self.traps.notification(trap) is None:
            raise line.error(f"there is no notification {trap}")
        elif rule == "index":
            index_column, rest = self.column(line, rest[0]), rest[1:]
        wanted = 2 if rule == "index" else 1
        if len(rest) != wanted or not re.match(r"\d+ \d+ \d+$", rest[0]):
            raise line.error("the line must end with an event id of three numbers" +
                             (" and the object's name in log lines" if wanted == 2 else ""))
        self.traps.forces.append(Force(line.place, column, trap, rule, component, index_column, rest[0],
                                       rest[1] if wanted == 2 else ""))


def check_state(place, state, tables_agree):
    if not state.find or state.status is None:
        raise place.error("a find and a judge line are needed")
    columns = [state.status, state.owner, state.verify, state.index_column, *tables_agree]
    if any(column is not None and column.table is not state.status.table for column in columns):
        raise place.error("the columns belong to different tables")
    for text in ("missing",):
        if text not in state.texts:
            raise place.error(f"a text '{text}' is needed")


def check_notification(each, traps):
    if not each.columns:
        raise each.place.error("a line 'shows' is needed")
    if each.state is None:
        return
    # A row number of another table may be shown beside the object: disks and their configuration.
    check_state(each.place, each.state, [])
    if not each.fresh or not each.rows:
        raise each.place.error("lines 'fresh' and 'rows' are needed")
    if "not-up" in each.state.texts and all(component.trap != each.number for component in traps.components):
        raise each.place.error("there is no component line for it")


def check_component(each):
    check_state(each.place, each.state, [column for low_high in each.levels.values() for column in low_high[:2]])


def build(mib, lines):
    """The whole catalogue; raises DataError."""
    return Reader(mib).read(lines)
