"""Notifications: which are due, and which have come."""

import re
import threading
import time
from dataclasses import dataclass

from harness import array, ber, machine, management, mib, waiting
from harness.traps import COLD_START, NOTIFICATIONS, TRAP_OID

from .timeline import EVENTS

MARK = re.compile(rb"chaos-(\d+)-")
COMMUNITY = "watch.tower"
# So many seconds without a fault are enough for anything that waits in the daemon.
DELIVERY_S = 20
TRACE_LINE = re.compile(r"event\s+delivered\s.*chaos-(\d+)-")

STATUS_NAMES = {"Up": 1, "Down": 2, "Degraded": 3}
# Columns of the status and of the name, by the number of the notification.
OBJECT_COLUMNS = {202: (28, 29), 205: (38, 39), 207: (108, 109), 208: (116, 117), 209: (121, 122), 212: (145, 146)}


@dataclass
class Mark:
    """A text that must come out once. taken: when the daemon had it, None while nobody knows."""
    number: int
    told: float
    taken: float = None
    came: int = 0


@dataclass
class Change:
    """An object took a status of which a notification must tell before `until`."""
    number: int
    name: bytes
    status: int
    begin: float
    until: float = None
    came: bool = False


class Notices:
    def __init__(self, timeline, receiver):
        self.timeline, self.receiver = timeline, receiver
        self.lock = threading.Lock()
        self.marks, self.changes = {}, []
        self.received = self.cold_starts = 0
        self.strange = []
        threading.Thread(target=self.collect, daemon=True).start()

    # --- what is told

    def new_mark(self):
        with self.lock:
            mark = Mark(len(self.marks) + 1, time.monotonic())
            self.marks[mark.number] = mark
        return mark, f"chaos-{mark.number}- something is not as it was"

    def tell(self, count=1):
        """Sends events as the array application does, over one connection. None when nobody takes them."""
        pairs = [self.new_mark() for _ in range(count)]
        octets = b"".join(management.trap(f"1 2 3 201 0 0 0 0 {text}") for _, text in pairs)
        try:
            management.send(octets)
        except OSError:
            return None
        for mark, _ in pairs:
            mark.taken = time.monotonic()
        return [mark for mark, _ in pairs]

    def read_trace(self):
        """What the array's own record says of the events that went through it."""
        for number in TRACE_LINE.findall(machine.read_file(array.OUTPUT)):
            mark = self.marks[int(number)]
            mark.taken = mark.taken or mark.told

    def expect_change(self, number, name, status):
        change = Change(number, name.encode(), STATUS_NAMES[status], time.monotonic())
        with self.lock:
            self.changes.append(change)
        return change

    # --- what comes

    def collect(self):
        while True:
            try:
                datagram = self.receiver.take_datagram(3600)[1]
            except waiting.WaitedInVain:
                continue
            try:
                with self.lock:
                    self.take(ber.read(datagram))
            except (ber.Malformed, KeyError, ValueError, StopIteration) as error:
                self.strange.append(f"{error}: {datagram.hex()}")

    def take(self, notification):
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
                self.marks[int(found.group(1))].came += 1
        elif number in OBJECT_COLUMNS:
            self.take_change(number, notification.bindings)

    @staticmethod
    def number_of(notification):
        """0 for a cold start."""
        if notification.version == "1":
            return notification.specific
        identity = next(binding.value for binding in notification.bindings if binding.oid == TRAP_OID)
        return 0 if identity == COLD_START else int(identity.removeprefix(NOTIFICATIONS + ".0."))

    def take_change(self, number, bindings):
        status, name = (next(each.value for each in bindings if each.oid.startswith(prefix(column)))
                        for column in OBJECT_COLUMNS[number])
        for change in reversed(self.changes):
            if (change.number, change.name) == (number, name):
                change.came = change.came or change.status == status
                return

    # --- the last word

    def is_due(self, mark):
        """Whether the daemon that took it has lived long enough undisturbed to send it."""
        life = self.timeline.life_at(mark.taken) if mark.taken else None
        if life is None:
            return False
        end = life.end if life.end is not None else time.monotonic()
        return self.timeline.undisturbed_s(mark.taken, end) >= DELIVERY_S

    def is_change_due(self, change):
        until = change.until or time.monotonic()
        return until - change.begin >= DELIVERY_S * waiting.PATIENCE and not self.timeline.is_disturbed(
            EVENTS, change.begin - 1, until) and not self.timeline.life_ended(change.begin, until)

    def summary(self):
        self.read_trace()
        marks = list(self.marks.values())
        taken = [mark for mark in marks if mark.taken or mark.came]
        missed = [mark for mark in taken if not mark.came]
        lost = [mark for mark in missed if self.is_due(mark) and not self.was_without_descriptors(mark)]
        changes = [change for change in self.changes if self.is_change_due(change) or change.came]
        return {"received": self.received, "told": len(marks), "taken": len(taken),
                "came": sum(bool(mark.came) for mark in marks), "lost": lost, "gone": len(missed) - len(lost),
                "twice": [mark for mark in marks if mark.came > 1], "changes": len(changes),
                "changes lost": [change for change in changes if not change.came],
                "changes excused": len(self.changes) - len(changes), "cold starts": self.cold_starts,
                "strange": self.strange}

    def was_without_descriptors(self, mark):
        """A notification needs one, and nobody tries twice."""
        return "descriptors run out" in self.timeline.disturbing(EVENTS, mark.taken, mark.taken + DELIVERY_S)


def prefix(column):
    return ".".join(map(str, mib.MIB.columns[column].oid)) + "."
