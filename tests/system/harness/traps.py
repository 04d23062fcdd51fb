"""Which notification an event must give, worked out from the array's objects alone. Of the project's list of columns
only names, OIDs and types are read."""

from collections import namedtuple

from . import mib
from .ber import Notification
from .expected import Expectation, leading_number
from .manager import Binding
from .trapLists import ADDRESSES, COMPONENTS, FAN_INDEX, LISTS, OBJECTS, PLAIN_TEXT

UPTIME, TRAP_OID, TRAP_ENTERPRISE = "1.3.6.1.2.1.1.3.0", "1.3.6.1.6.3.1.1.4.1.0", "1.3.6.1.6.3.1.1.4.3.0"
COLD_START = "1.3.6.1.6.3.1.1.5.1"
COLD_START_ENTERPRISE = mib.ENTERPRISE + ".250.255"
NOTIFICATIONS = mib.ENTERPRISE + ".251"

# On the wire an enumeration is an unsigned value, which it is not in the answer to a GET.
WIRE_TYPE = {"string": "STRING", "integer": "INTEGER", "enumeration": "Gauge32", "unsigned": "Gauge32"}

LONGEST_COMMAND = 500
LONGEST_TEXT = 255


class Event(namedtuple("Event", "ids number a b c d text", defaults=(0, 0, 0, 0, ""))):
    """text may hold what the daemon cuts off."""

    def numbers(self):
        return " ".join(map(str, (*self.ids, self.number, self.a, self.b, self.c, self.d))) + " "

    def command(self):
        return self.numbers() + self.text

    def seen_text(self):
        """The octets of the text that the daemon looks at."""
        return octets(self.command())[len(self.numbers()):LONGEST_COMMAND]


def arguments(objects, number, component, element):
    """The first three arguments of the event about an object of the array. component: 0 for whole objects."""
    def row(found):
        return [each.get("Index") for each in found].index(element.get("Index")) + 1

    if number == 211:
        return 1, 0, 0
    if not component:
        return row(objects["TsControllerCacheCard"]) if number == 210 else int(element["Index"]), 0, 0
    siblings = objects[mib.api_kind(COMPONENTS[number, component].kind)]
    if number == 204:
        parent = [each["Index"] for each in objects["TsController"]].index(element["ControllerIndex"]) + 1
        siblings = [each for each in siblings if each["ControllerIndex"] == element["ControllerIndex"]]
    else:
        parent = int(element["EnclosureIndex"])
        siblings = [each for each in siblings if each["EnclosureIndex"] == element["EnclosureIndex"]]
    return parent, component, int(element["Index"]) - 1 if (number, component) == (204, 1) else row(siblings)


def octets(text):
    return text.encode() if isinstance(text, str) else text


class Model:
    """Of an array that has an address of version 4, and whose components are up or down."""

    def __init__(self, objects):
        self.array = Expectation(objects)

    def column(self, column_id, *instance):
        return self.array.value(mib.MIB.columns[column_id].name, *instance)

    def find_row(self, column_id, number, *parent):
        row = 1
        while self.column(column_id, *parent, row) is not None:
            if self.column(column_id, *parent, row) == number:
                return row
            row += 1
        return None

    # --- the values that a notification is built from: {column id: (row, value)}

    def values(self, event):
        _, found, alert = event.seen_text().rpartition(b"@@@")
        alert = alert if found else b""
        values = {12: (0, ",".join(map(str, event.ids))), 13: (0, self.column(13, 0)), 14: (0, self.column(14, 0)),
                  15: (0, event.seen_text()[:LONGEST_TEXT]), 172: (0, "no action needed"),
                  175: (0, 1 if event.d == 5 else 2),
                  173: (0, (b"Alert Cleared - " if event.d == 5 else b"") + alert)}
        self.take_row(values, ADDRESSES, 1)
        if event.number in OBJECTS:
            self.add_object(values, event)
        elif event.number in (204, 206):
            self.add_component(values, event)
        return values

    def take_row(self, values, columns, row):
        values.update({column: (row, self.column(column, row)) for column in columns})

    def row_of(self, event):
        trap = OBJECTS[event.number]
        if event.number == 203:
            indexes = [leading_number(each["Index"], "integer") for each in self.array.elements("tsController")]
            return indexes.index(event.a) + 1
        if trap.index is None:
            return 1 if event.number == 211 else event.a
        return self.find_row(trap.index, event.a)

    def add_object(self, values, event):
        trap, row = OBJECTS[event.number], self.row_of(event)
        self.take_row(values, trap.columns, row)
        if self.column(trap.status, row) != 1:
            values[172] = (0, trap.advice)
            if event.number == 212:
                values[175] = (0, 2)
        if event.number == 202:
            self.add_enclosure_of_disk(values, row)

    def add_enclosure_of_disk(self, values, disk_row):
        number = self.column(29, disk_row).decode().partition("-")[0]
        self.take_row(values, (39,), self.find_row(46, leading_number(number, "integer")))

    def place_of_component(self, event):
        """(row of the parent, row) of the component that an event names."""
        parent = event.a if event.number == 204 else self.find_row(46, event.a)
        is_fan = (event.number, event.b) == (204, 1)
        return parent, self.find_row(FAN_INDEX, event.c + 1, parent) if is_fan else event.c

    def add_component(self, values, event):
        component = COMPONENTS[event.number, event.b]
        parent, row = self.place_of_component(event)
        self.take_row(values, (16, 18) if event.number == 204 else (37, 39), parent)
        status, name = self.column(component.status, parent, row), self.column(component.name, parent, row)
        element = self.element(component.kind, parent, row)
        values.update({170: (0, event.b), 168: (0, name), 167: (0, status), 169: (0, name),
                       171: (0, element["Status"])})
        if status != 1:
            values[172] = (0, component.advice)

    def element(self, kind, parent, row):
        table = next(each.table for each in mib.MIB.refreshes if each.object_name == kind)
        return dict(self.array.groups(table, self.array.elements(kind)))[(parent,)][row - 1]

    # --- the notification

    def list_of(self, event):
        values = self.values(event)
        found = []
        for column_id in LISTS[event.number] + ADDRESSES:
            column, (row, value) = mib.MIB.columns[column_id], values[column_id]
            kind = WIRE_TYPE[column.type]
            value = octets(value) if kind == "STRING" else value & 0xFFFFFFFF if kind == "Gauge32" else value
            found.append(Binding(".".join(map(str, column.oid + (row,))), kind, value))
        return found

    def identity(self, number):
        return Binding(TRAP_OID, "OID", f"{NOTIFICATIONS}.0.{number}")

    def notification(self, event, version, community):
        """version: as in the daemon's configuration. Times are None: they are not the array's."""
        if event.number == 0:
            own = [Binding(TRAP_OID, "OID", COLD_START), Binding(TRAP_ENTERPRISE, "OID", COLD_START_ENTERPRISE)]
        elif event.number in PLAIN_TEXT:
            own, text = [self.identity(event.number)], event.seen_text()[:LONGEST_TEXT]
            if text.startswith(b" @@@") and len(text) > 4:
                own.append(Binding(NOTIFICATIONS, "STRING", text[4:]))
        else:
            own = ([] if version == 1 else [self.identity(event.number)]) + self.list_of(event)
        if version == 1:
            return Notification("1", community, "trap", None, NOTIFICATIONS, self.column(139, 1).decode(),
                                0 if event.number == 0 else 6, event.number, None, own)
        return Notification("2c", community, "trap2" if version == 2 else "inform", None, None, None, None, None, None,
                            [Binding(UPTIME, "Timeticks", None), *own])


def differences(wanted, got, uptimes):
    """A line for each thing that differs. uptimes: the machine's in hundredths, before and after."""
    time = got.time if got.version == "1" else got.bindings[0].value
    lines = [] if uptimes[0] <= time <= uptimes[1] else [f"time {time} is not within {uptimes}"]
    for name in wanted._fields[:-1]:
        if getattr(wanted, name) != getattr(got, name) and name not in ("time", "request_id"):
            lines.append(f"{name}: wanted {getattr(wanted, name)}, got {getattr(got, name)}")
    pairs = list(zip(wanted.bindings, got.bindings))
    lines += [f"binding {place}: wanted {one}, got {other}" for place, (one, other) in enumerate(pairs, 1)
              if one != (other if one.oid != UPTIME else other._replace(value=None))]
    for one in wanted.bindings[len(pairs):]:
        lines.append(f"missing: {one}")
    for other in got.bindings[len(pairs):]:
        lines.append(f"too much: {other}")
    return lines
