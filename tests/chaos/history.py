"""The value of every instance over time, and hence the values that a manager may read at a moment."""

import threading
from collections import defaultdict

from harness import mib
from harness.expected import Expectation
from harness.mib import KIND_OF_TABLE, MIB
from harness.trapLists import OBJECTS

from .states import FETCHED_SINGLY, Subject, Track

# A large table is fetched when it is two to three minutes old and the scan of all columns comes to it. Values that are
# copied from another table follow one scan later. Disturbed time does not count.
STALE_S = 300

# Derived from other tables some time after the start-up of a daemon.
DERIVED = ("globalStatus", "worstAlertNbr", "sysContact", "sysName", "sysLocation")
DERIVED_S = 180
UNDERIVED = (b"", 0, 3, None)  # 3: no open alert seen so far
STICKY = "worstAlertNbr"  # keeps the row of the latest alert
SYSTEM = ("sysContact", "sysName", "sysLocation")  # snmpd has its own values while no daemon is running


def column_of(oid):
    """Returns the column of an instance under the current enterprise number, or None outside the MIB."""
    arcs = mib.arcs(oid)
    for length in range(len(arcs) - 1, 0, -1):
        if arcs[:length] in BY_ARCS:
            return BY_ARCS[arcs[:length]]
    return None


BY_ARCS = {tuple(column.oid): column for column in mib.MIB.columns}


class FalseReport:
    """False values that the array reported about a kind of object. absent: it left something out."""

    def __init__(self, kind, begin, columns=(), values=(), absent=False):
        self.kind, self.begin, self.end = kind, begin, float("inf")
        self.columns, self.values, self.absent = columns, values, absent

    def covers(self, column, begin, end):
        return (column.table is not None and KIND_OF_TABLE.get(column.table.name) == self.kind and
                self.begin <= end and begin <= self.end)


PARENTS = ("TsController", "TsEnclosure")
PARENTS_STALE_S = 3 * STALE_S  # of real time; a part of it may be disturbed


def numbering(objects):
    """Returns the order of the parents, which determines the parent numbers in the instances of their parts."""
    return tuple(tuple(each["Index"] for each in objects.get(kind, [])) for kind in PARENTS)


class Parts(Expectation):
    """The expected values of only those instances that contain the number of a parent."""

    @staticmethod
    def refreshes():
        return [refresh for refresh in MIB.refreshes if refresh.table.parent]

    def add_folder_usage(self):
        pass

    def add_scalars(self):
        pass


class History:
    def __init__(self, timeline, states):
        self.timeline, self.states = timeline, states
        self.lock = threading.Lock()
        self.tracks = {}  # values of the array; None: no such instance
        self.parents = {}  # by numbering: the parents, and when it changed (None: current)
        self.renumbered = defaultdict(dict)  # by old numbering: tracks of the parts
        self.set_values = {}  # values that managers have set
        self.false_reports = []

    # --- changes

    def record(self, objects, since):
        """Records the array's current objects, which it may have had since a moment; 0: always."""
        values = Expectation(objects).values
        with self.lock:
            for oid in self.tracks.keys() | values.keys():
                value = values.get(oid)
                self.tracks.setdefault(oid, Track(since)).become(value, since)
            self.record_renumbered(objects, since)

    def record_renumbered(self, objects, since):
        """The daemon numbers parts by its latest refresh of the parents, which may be some minutes old."""
        present = numbering(objects)
        for key, (parents, gone) in list(self.parents.items()):
            if key == present:
                continue
            if gone is None:
                self.parents[key] = parents, since
            elif since - gone > PARENTS_STALE_S:
                del self.parents[key], self.renumbered[key]
                continue
            values, tracks = Parts({**objects, **parents}).values, self.renumbered[key]
            for oid in tracks.keys() | values.keys():
                tracks.setdefault(oid, Track()).become(values.get(oid), since)
        self.parents[present] = {kind: objects.get(kind, []) for kind in PARENTS}, None

    def record_set(self, oid, value, since):
        with self.lock:
            self.set_values.setdefault(oid, Track()).put(("STRING", value), since)

    def add_false_report(self, report):
        with self.lock:
            self.false_reports.append(report)

    def was_falsely_reported(self, kind, begin, end):
        with self.lock:
            return any(each.kind == kind and each.begin <= end and begin <= each.end for each in self.false_reports)

    # --- allowed values

    def oldest(self, sent):
        """Returns the age limit: the store contains no values from before this moment."""
        return max(self.timeline.undisturbed_before(sent, STALE_S), self.timeline.latest_start(sent))

    def allows(self, oid, read, sent, ended):
        """Returns whether (type, value), or None for no such instance, is allowed in an exchange at these times."""
        column = column_of(oid)
        if column is None:
            return read is None
        if read is None and self.timeline.is_disturbed("requests", sent, ended):
            return True
        oldest = self.oldest(sent) if column.name != STICKY else self.timeline.latest_start(sent)
        if self.is_exempt(column, read, sent, ended):
            return True
        with self.lock:
            sources = (self.tracks, self.set_values, *self.previous_numberings(oldest))
            values = [value for tracks in sources if oid in tracks for value in tracks[oid].between(oldest, ended)]
            if oid not in self.tracks:
                values.append(None)
            if read in values or self.is_of_previous_row(column, oid, read, oldest, ended):
                return True
            return any(each.covers(column, oldest, ended) and self.is_in(each, column, read)
                       for each in self.false_reports)

    def previous_numberings(self, begin):
        return [self.renumbered[key] for key, (_, gone) in self.parents.items() if gone is not None and gone >= begin]

    def is_of_previous_row(self, column, oid, read, begin, end):
        """Returns whether the value is the current status, fetched for an event, of an earlier object of this row."""
        number = FETCHED_SINGLY.get(column.number)
        if number is None or read is None:
            return False
        name = mib.oid(mib.MIB.columns[OBJECTS[number].name].name, mib.arcs(oid)[-1])
        names = self.tracks[name].between(begin, end) if name in self.tracks else []
        return any(read[1] in self.states.between(Subject(number, each[1].decode()), begin, end)
                   for each in names if each)

    @staticmethod
    def is_in(report, column, read):
        if read is None:
            return report.absent
        return (not report.columns or column.name in report.columns) and read[1] in report.values

    def is_exempt(self, column, read, sent, ended):
        value = read and read[1]
        if column.source == "process":
            return True
        if column.name.endswith("ForceTrap") and value in (b"Empty", b"ForceTrap"):
            return True
        if column.name in SYSTEM and self.timeline.is_disturbed("requests", sent, ended):
            return True
        # The daemon that responds may have started after the request was sent for the first time.
        return (column.name in DERIVED and value in UNDERIVED and
                ended - self.timeline.latest_start(ended) < DERIVED_S)

    def constant_instances(self, begin, end):
        """Returns the instances that a walk within a period must contain."""
        oldest = self.oldest(begin)
        with self.lock:
            return [oid for oid, track in self.tracks.items() if None not in track.between(oldest, end)]

    def oids(self):
        """Returns the OIDs of all instances that the array has or had."""
        with self.lock:
            return list(self.tracks)
