"""Received notifications: marks, which must be reported exactly once, and a Notice for each about an object."""

import re
import threading
import time
from collections import namedtuple
from dataclasses import dataclass

from harness import array, ber, machine, management, mib, waiting
from harness.trapLists import OBJECTS
from harness.traps import COLD_START, NOTIFICATIONS, TRAP_OID

from .history import column_of
from .timeline import EVENTS

MARK = re.compile(rb"chaos-(\d+)-")
COMMUNITY = "watch.tower"
# The daemon sends all waiting notifications within this number of undisturbed seconds.
DELIVERY_S = 20
TRACE_LINE = re.compile(r"event\s+delivered\s.*(?:chaos-|device of type )(\d+)\b")
ALERT_STATE, ALERT_TEXT, COMPONENT, COMPONENT_STATUS, COMPONENT_NAME = 175, 173, 170, 167, 168  # columns


@dataclass
class Mark:
    """An event that must be reported exactly once. accepted: when the daemon received it; None if unknown."""
    number: int
    sent: float
    accepted: float = None
    notified: int = 0


# A notification about an object. instances: (OID, (type, value)) in its table, as a GET would return them.
Notice = namedtuple("Notice", "arrival number shown_as status alert_state text instances")


def notice_of(arrival, number, notification):
    """Returns the Notice of one of the notifications 202 to 212."""
    values, instances = {}, []
    for each in notification.bindings:
        column = column_of(each.oid)
        if column is None:
            continue
        type_, value = each.type, each.value
        if column.type == "enumeration":
            type_, value = "INTEGER", value - (2**32 if value >= 2**31 else 0)  # unsigned on the wire
        if column.table:
            instances.append((each.oid, (type_, value)))
        values[column.number] = value.decode() if isinstance(value, bytes) else value
    if number in OBJECTS:
        trap = OBJECTS[number]
        shown_as, status = (number, values.get(trap.name, "")), values[trap.status]
    else:
        component, parent = values[COMPONENT], OBJECTS[number - 1].name
        shown_as, status = (number, values[parent], component, values[COMPONENT_NAME]), values[COMPONENT_STATUS]
    return Notice(arrival, number, shown_as, status, values[ALERT_STATE], values.get(ALERT_TEXT, ""), instances)


class Notices:
    def __init__(self, timeline, receiver):
        self.timeline, self.receiver = timeline, receiver
        self.lock = threading.Lock()
        self.marks, self.about_objects, self.forced, self.malformed = {}, [], [], []
        self.received = self.cold_starts = 0
        threading.Thread(target=self.collect, daemon=True).start()

    # --- events

    def new_mark(self):
        with self.lock:
            mark = Mark(len(self.marks) + 1, time.monotonic())
            self.marks[mark.number] = mark
        return mark, f"chaos-{mark.number}- something has changed"

    def send(self, count=1):
        """Sends events as the array application does, over one connection. Returns None if nobody accepts them."""
        pairs = [self.new_mark() for _ in range(count)]
        octets = b"".join(management.trap(f"1 2 3 201 0 0 0 0 {text}") for _, text in pairs)
        try:
            management.send(octets)
        except OSError:
            return None
        for mark, _ in pairs:
            mark.accepted = time.monotonic()
        return [mark for mark, _ in pairs]

    def force(self, number):
        """Records that an event without an alert string will be sent, with this number and about any object."""
        with self.lock:
            self.forced.append((time.monotonic(), number))

    def read_trace(self):
        """Marks the events that were delivered according to the array's trace."""
        for number in TRACE_LINE.findall(machine.read_file(array.OUTPUT)):
            mark = self.marks[int(number)]
            mark.accepted = mark.accepted or mark.sent

    # --- notifications

    def collect(self):
        while True:
            try:
                arrival, datagram = self.receiver.take_datagram(3600)
            except waiting.TimedOut:
                continue
            try:
                with self.lock:
                    self.take(arrival, ber.read(datagram))
            except (ber.Malformed, KeyError, ValueError, StopIteration) as error:
                self.malformed.append(f"{error}: {datagram.hex()}")

    def take(self, arrival, notification):
        self.received += 1
        if notification.community != COMMUNITY:
            raise ber.Malformed(f"community {notification.community}")
        number = self.number_of(notification)
        values = {binding.oid: binding.value for binding in notification.bindings}
        if number == 0:
            self.cold_starts += 1
        elif number == 201:
            found = MARK.search(values[mib.scalar("trapMiscAlertText")])
            if found:
                self.marks[int(found.group(1))].notified += 1
        elif number == 213:
            self.marks[values[mib.scalar("trapSIDeviceType")]].notified += 1
        elif number in OBJECTS or number in (204, 206):
            self.about_objects.append(notice_of(arrival, number, notification))

    @staticmethod
    def number_of(notification):
        """Returns the number of a notification; 0 for a cold start."""
        if notification.version == "1":
            return notification.specific
        identity = next(binding.value for binding in notification.bindings if binding.oid == TRAP_OID)
        return 0 if identity == COLD_START else int(identity.removeprefix(NOTIFICATIONS + ".0."))

    # --- at the end

    def is_due(self, mark):
        """Returns whether the daemon that received it has had enough undisturbed time to send it."""
        life = self.timeline.life_at(mark.accepted) if mark.accepted else None
        if life is None:
            return False
        end = life.end if life.end is not None else time.monotonic()
        return self.timeline.undisturbed_s(mark.accepted, end) >= DELIVERY_S

    def summary(self):
        self.read_trace()
        marks = list(self.marks.values())
        accepted = [mark for mark in marks if mark.accepted or mark.notified]
        missed = [mark for mark in accepted if not mark.notified]
        lost = [mark for mark in missed if self.is_due(mark) and not self.lacked_descriptor(mark)]
        return {"received": self.received, "sent": len(marks), "accepted": len(accepted),
                "notified": sum(bool(mark.notified) for mark in marks), "lost": lost,
                "lost on exit": len(missed) - len(lost),
                "twice": [mark for mark in marks if mark.notified > 1], "cold starts": self.cold_starts,
                "malformed": self.malformed}

    def lacked_descriptor(self, mark):
        """Returns whether the daemon may have lacked the descriptor that a notification needs; it does not retry."""
        return "descriptors run out" in self.timeline.disturbing(EVENTS, mark.accepted, mark.accepted + DELIVERY_S)
