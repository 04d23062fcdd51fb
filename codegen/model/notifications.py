"""Parses and checks the notifications, their object rules and the ForceTrap columns."""

import re
from dataclasses import dataclass, field

from codegen.model.descriptions import Described
from codegen.reader import Place

MAX_COLUMNS = 16
WORD = re.compile(r"[a-z][a-z0-9-]*$")
SEVERITIES = ("ok", "warning", "critical")
INDEX_RULES = ("index", "bounded-index", "next-index")
OBJECT_RULES = ("index", "bounded-index", "controller", "row", "one-or-two")
COMPONENT_RULES = ("next-index", "row")
FRESH_RULES = ("table", "table-first", "instance")
FORCE_RULES = ("row", "controller", "index", "component")

# The number of "%d" in each message.
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


@dataclass(kw_only=True)
class Notification(Described):
    """severity: only for a notification without a state."""

    number: int
    word: str
    description: str
    severity: str = ""
    argument: str = ""
    columns: list = field(default_factory=list)
    state: State = None
    fresh: str = ""
    api_name: str = ""
    rows: list = field(default_factory=list)
    clears_when_up: bool = False

    def state_column(self):
        """Returns the variable that holds the state of the object, or None."""
        shown = {column.name: column for column in self.columns}
        return self.state and (shown.get("trapCompStatus") or shown.get(self.state.status.name))


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

    def column(self, line, name):
        if name not in self.columns:
            raise line.error(f"unknown column '{name}'")
        return self.columns[name]

    def read(self, lines):
        readers = {"notification": (self.read_notification, range(5, 7)), "component": (self.read_component, (5,)),
                   "force": (self.read_force, range(5, 10))}
        for line in lines:
            reader, lengths = readers.get(line.words[0], (None, ()))
            if line.words[0] == "plain":
                self.traps.plain += [line.number(word, 1) for word in line.words[1:]]
            elif len(line.words) in lengths:
                reader(line)
            else:
                raise line.unknown()
        for each in self.traps.notifications:
            check_notification(each, self.traps)
        for each in self.traps.components:
            check_component(each)
        for column in self.columns.values():
            if column.source == "force" and all(force.column is not column for force in self.traps.forces):
                raise column.place.error(f"missing force line for '{column.name}' in notifications.def")
        return self.traps

    def read_notification(self, line):
        options = line.options(line.words[5:], ("severity",))
        each = Notification(place=line.place, number=line.number(line.words[1], 200), name=line.words[2],
                            word=line.name(line.words[3], WORD, "a kind on command lines"), description=line.words[4],
                            severity=options.get("severity", ""))
        for other in self.traps.notifications:
            if each.number == other.number or each.name == other.name or each.word == other.word:
                raise line.error(f"duplicate number, name or word; first used at {other.place}")
        self.traps.notifications.append(each)
        for below in each.read_texts(line):
            self.read_rule(below, each)

    def read_component(self, line):
        each = Component(line.place, line.number(line.words[1]), line.number(line.words[2], 1), line.words[3],
                         line.words[4])
        parent = self.traps.notification(each.trap)
        if parent is None or parent.state is None or "not-up" not in parent.state.texts:
            raise line.error(f"notification {each.trap} has no components")
        for other in self.traps.components:
            if other.trap == each.trap and (other.number == each.number or other.word == each.word):
                raise line.error(f"duplicate number or word; first used at {other.place}")
        self.traps.components.append(each)
        for below in line.below:
            if not self.read_common_rule(below, each, COMPONENT_TEXTS, COMPONENT_RULES):
                self.read_level(below, each)

    def read_rule(self, line, owner):
        """Parses a line below a notification."""
        words = line.words
        if words[0] == "shows":
            owner.columns = [self.column(line, name) for name in words[1:]]
            if len(owner.columns) > MAX_COLUMNS:
                raise line.error(f"a notification carries at most {MAX_COLUMNS} variables")
            return
        if owner.state is None and words[0] != "argument":
            owner.state = State()
        if self.read_common_rule(line, owner, OBJECT_TEXTS, OBJECT_RULES):
            return
        if words[0] == "rows":
            owner.rows = [self.column(line, name) for name in words[1:]]
        elif words[0] == "fresh" and len(words) == (3 if words[1] == "instance" else 2):
            owner.fresh, owner.api_name = words[1], words[2] if len(words) == 3 else ""
            if owner.fresh not in FRESH_RULES:
                raise line.error(f"fresh must be one of {', '.join(FRESH_RULES)}")
        elif words == ["clears", "when-up"]:
            owner.clears_when_up = True
        else:
            raise line.unknown()

    def read_common_rule(self, line, owner, texts, rules):
        """Parses a line that notifications and components share. Returns False for any other."""
        words = line.words
        if words[0] in texts and len(words) == 2:
            self.read_text(line, owner.state, texts[words[0]])
        elif words[0] == "argument" and len(words) == 2:
            owner.argument = words[1]
        elif words[0] == "find" and len(words) in (2, 3):
            self.read_find(line, owner.state, rules)
        elif words[0] == "judge" and len(words) == 4:
            self.read_judge(line, owner.state)
        else:
            return False
        return True

    def read_level(self, line, owner):
        words = line.words
        if words[0] not in ("low", "high") or len(words) != 4:
            raise line.unknown()
        owner.levels[words[0]] = (self.column(line, words[1]), self.column(line, words[2]), words[3])

    def read_text(self, line, state, numbers):
        key, text = line.words
        if text.count("%d") != numbers or text.count("%") != numbers:
            raise line.error(f"the message '{key}' must contain \"%d\" {numbers} time(s)")
        state.texts[key] = text

    def read_find(self, line, state, rules):
        rule = line.words[1]
        if rule not in rules:
            raise line.error(f"find must be one of {', '.join(rules)}")
        if (rule in INDEX_RULES) != (len(line.words) == 3):
            raise line.error(f"'{rule}' {'requires' if rule in INDEX_RULES else 'must not have'} a column")
        state.find = rule
        state.index_column = self.column(line, line.words[2]) if rule in INDEX_RULES else None

    def read_judge(self, line, state):
        options = line.options(line.words[2:], ("owner", "verify"))
        state.status = self.column(line, line.words[1])
        state.owner, state.verify = (self.column(line, options[key]) for key in ("owner", "verify"))

    def read_force(self, line):
        words = line.words
        column, trap, rule, rest = self.column(line, words[1]), line.number(words[2]), words[3], words[4:]
        if rule not in FORCE_RULES:
            raise line.error(f"the rule must be one of {', '.join(FORCE_RULES)}")
        if column.source != "force":
            raise line.error(f"column '{column.name}' does not have the source 'force'")
        component, index_column = 0, None
        if rule == "component":
            component, rest = line.number(rest[0]), rest[1:]
            if self.traps.component(trap, component) is None:
                raise line.error(f"unknown component {component} of notification {trap}")
            if rest and rest[0] == "index":
                index_column, rest = self.column(line, rest[1]), rest[2:]
        elif self.traps.notification(trap) is None:
            raise line.error(f"unknown notification {trap}")
        elif rule == "index":
            index_column, rest = self.column(line, rest[0]), rest[1:]
        wanted = 2 if rule == "index" else 1
        if len(rest) != wanted or not re.match(r"\d+ \d+ \d+$", rest[0]):
            raise line.error("the line must end with an event ID of three numbers" +
                             (" and the object's name in log lines" if wanted == 2 else ""))
        self.traps.forces.append(Force(line.place, column, trap, rule, component, index_column, rest[0],
                                       rest[1] if wanted == 2 else ""))


def check_state(place, state, tables_agree):
    if not state.find or state.status is None:
        raise place.error("the lines 'find' and 'judge' are required")
    columns = [state.status, state.owner, state.verify, state.index_column, *tables_agree]
    if any(column is not None and column.table is not state.status.table for column in columns):
        raise place.error("the columns belong to different tables")
    if "missing" not in state.texts:
        raise place.error("the line 'missing' is required")


def check_notification(each, traps):
    if not each.columns:
        raise each.place.error("the line 'shows' is required")
    if each.state is not None:
        # `rows` may name a column of another table, as for disks and their configuration.
        check_state(each.place, each.state, [])
        if not each.fresh or not each.rows:
            raise each.place.error("the lines 'fresh' and 'rows' are required")
        if "not-up" in each.state.texts and all(component.trap != each.number for component in traps.components):
            raise each.place.error("'not-up' requires a component line for this notification")
    if bool(each.state_column()) == bool(each.severity) or each.severity not in ("", *SEVERITIES):
        raise each.place.error(f"severity= must be one of {', '.join(SEVERITIES)} if no variable is the object's "
                               "state, and is not allowed otherwise")
    each.check_described("notification")


def check_component(each):
    check_state(each.place, each.state, [column for low_high in each.levels.values() for column in low_high[:2]])


def read(data, mib):
    """Returns the contents of mib/notifications.def. Raises DataError."""
    return Reader(mib).read(data.lines("mib/notifications.def"))
