"""The status over time of every object that has notifications, and the events about it."""

import bisect
import threading
from collections import defaultdict, namedtuple
from dataclasses import dataclass

from harness import mib
from harness.expected import STATUS, truth_value
from harness.mib import KIND_OF_TABLE
from harness.trapLists import COMPONENTS, OBJECTS

UP = 1
ARRAY = ""  # replaces the array's name, which no notification contains
# Number of the notification of a component's parent, and the attribute that contains the parent's index.
PARENTS = {204: (203, "ControllerIndex"), 206: (205, "EnclosureIndex")}
ATTRIBUTES = {entry.column.number: entry.attribute for refresh in mib.MIB.refreshes for entry in refresh.entries}
KINDS = {number: KIND_OF_TABLE[mib.MIB.columns[trap.status].table.name] for number, trap in OBJECTS.items()}
PARTS = {KIND_OF_TABLE[mib.MIB.columns[row.status].table.name]: key for key, row in COMPONENTS.items()}

# Notifications for which the status of the object is fetched alone, by the status column.
FETCHED_SINGLY = {OBJECTS[number].status: number for number in (202, 207, 208, 209)}

# An object, by the number of its notification and its name.
Subject = namedtuple("Subject", "number name")
# shown_as: the name by which a notification refers to the object; parent: None for whole objects.
ObjectState = namedtuple("ObjectState", "kind element status shown_as parent")


class Track:
    """A value over time: its changes in order. absent_until: when there may have been a value for the first time."""

    def __init__(self, absent_until=0):
        self.times, self.values = ([0], [None]) if absent_until else ([], [])

    def put(self, value, since):
        self.times.append(since)
        self.values.append(value)

    def become(self, value, since):
        """Adds the value unless it is the latest already. Returns whether it is a change."""
        is_change = not self.values or self.values[-1] != value
        if is_change:
            self.put(value, since)
        return is_change

    def latest(self):
        return self.values[-1] if self.values else None

    def between(self, begin, end):
        """Returns all values within a period."""
        first = max(bisect.bisect_right(self.times, begin) - 1, 0)
        return self.values[first:bisect.bisect_right(self.times, end)]


@dataclass
class Change:
    """A status that an object had from begin to until (None: still). reported: the array sent an event."""
    subject: Subject
    status: int
    begin: float
    reported: bool
    until: float = None


# An event about an object. is_repeat: it reports no change.
SentEvent = namedtuple("SentEvent", "moment subject is_repeat")


def object_states(objects):
    """Returns {subject: ObjectState} of all objects that have a row."""
    found = {}
    for number, kind in KINDS.items():
        for each in objects.get(kind, []):
            name = ARRAY if number == 211 else each["Name"]
            status = truth_value(each["PortsBalanced"]) if number == 211 else STATUS[each["Status"]]
            found[Subject(number, name)] = ObjectState(kind, each, status, (number, name), None)
    for kind, (number, component) in PARTS.items():
        owner, tag = PARENTS[number]
        names = {each["Index"]: each["Name"] for each in objects.get(KINDS[owner], [])}
        shown = ATTRIBUTES[COMPONENTS[number, component].name]
        for each in objects.get(kind, []):
            if each[tag] in names:
                parent = names[each[tag]]
                found[Subject(number, each["Name"])] = ObjectState(
                    kind, each, STATUS[each["Status"]], (number, parent, component, each[shown]),
                    Subject(owner, parent))
    return found


class States:
    def __init__(self):
        self.lock = threading.Lock()
        self.tracks = {}  # the status of each subject; None while it has no row
        self.current = {}
        self.known = {}  # the latest ObjectState of each subject, also of removed ones
        self.shown = {}  # subjects by the names that notifications use
        self.changes, self.sent_events = [], []
        self.orders, self.moves = {}, defaultdict(list)  # indexes of each list, and when the list changed

    def record(self, objects, since, reported):
        """Records the array's present objects. reported: the array sends events about changes."""
        found = object_states(objects)
        with self.lock:
            for subject in found.keys() | self.current.keys():
                self.take(subject, found.get(subject), since, reported)
            self.current = found
            for kind in KINDS.values():
                order = [each.get("Index") for each in objects.get(kind, [])]
                if self.orders.get(kind, order) != order:
                    self.moves[kind].append(since)
                self.orders[kind] = order

    def take(self, subject, state, since, reported):
        track = self.tracks.setdefault(subject, Track(since))
        if state:
            self.known[subject] = state
            self.shown[state.shown_as] = subject
        status = state and state.status
        before = track.latest()
        if not track.become(status, since):
            return
        latest = next((each for each in reversed(self.changes) if each.subject == subject), None)
        if latest and latest.until is None:
            latest.until = since
        if before is not None and status is not None:
            self.changes.append(Change(subject, status, since, reported))
            if reported:
                self.sent_events.append(SentEvent(since, subject, False))

    def repeat(self, subject, moment):
        """Records an event that reports the status of a subject once more."""
        with self.lock:
            self.sent_events.append(SentEvent(moment, subject, True))

    def between(self, subject, begin, end):
        """Returns all statuses within a period, None included."""
        return self.tracks[subject].between(begin, end) if subject in self.tracks else [None]

    def was_all_the_time(self, subject, begin, end, status=None):
        """Returns whether it had a row, and a status if one is given, from begin to end."""
        found = self.between(subject, begin, end)
        return None not in found if status is None else found == [status]

    def has_moved(self, number, begin, end):
        """Returns whether rows of its kind of object were added, removed or moved."""
        return any(begin <= moment <= end for moment in self.moves[KINDS[number]])
