"""Changes of the array: values change, objects fail, recover, are removed and added, with and without an event."""

import random
import threading
import time
import traceback
from collections import defaultdict

from harness import management
from harness.traps import Event, arguments

from . import spares, violations
from .states import KINDS, PARTS, UP
from .violations import Violation

PAUSE_S = (0.2, 1)
# Kind, attribute, and how its new value is drawn.
VALUES = (("TsControllerFanSensor", "CurrentRpm", lambda r: r.randint(4001, 13999)),
          ("TsUps", "BatteryLife", lambda r: r.randint(0, 100)),
          ("TsDiskFolder", "StorageAlertThreshold", lambda r: r.randint(1, 99)),
          ("TsDiskFolderStorageUsage", "UsedSpace", lambda r: r.randint(1, 5 * 10**9)),
          ("TsEnclosureTemperatureSensor", "Temperature", lambda r: f"{r.randint(10, 60)} C"),
          ("TsEnclosure", "AssetTag", lambda r: f"tag-{r.randrange(10**6)}"),
          ("TsServer", "PathCount", lambda r: r.randint(0, 8)),
          ("TsDisk", "Size", lambda r: r.randint(10**9, 10**10)),
          ("TsControllerVoltageSensor", "CurrentVoltage", lambda r: f"{r.uniform(11, 13):.2f}"))
NUMBERS = (*KINDS, *(204, 205, 206, 212) * 3)  # the most likely ones have records that follow their objects
MAX_FAILED = 20  # objects that fail at the same time
FAILED_TOGETHER = (1, 1, 2, 4)
# How long a status lasts: long enough for a notification, or for some re-checks. Only a re-check finds a change without
# an event.
WITH_EVENT_S, WITHOUT_EVENT_S = ((25, 45), (70, 150), (150, 260)), (130, 200)
REMOVED_S = (60, 200)
MOVING = ("TsController", "TsEnclosure", "TsUps", "TsControllerFanSensor", "TsDisk", "TsVolume", "TsServer")
NEVER_REPLACED = ("TsController", "TsEnclosure", "TsControllerFanSensor")  # these are added again unchanged


class Changes(threading.Thread):
    def __init__(self, testbed, seed):
        super().__init__(daemon=True, name="changes of the array")
        self.testbed, self.states = testbed, testbed.states
        self.random = random.Random(f"{seed} changes")
        self.busy = {}  # unhealthy subjects, and when their status will change
        self.removed = {}  # by kind: until when, and the removed objects: (kind, place, element)
        self.added = 0

    def run(self):
        while not self.testbed.stopping.wait(self.random.uniform(*PAUSE_S)):
            action = self.random.choice((*[self.change_value] * 2, self.send_alert, self.send_event,
                                         self.send_device_event, self.repeat_event, *[self.remove_or_add] * 2,
                                         *[self.fail_or_recover] * 3))
            try:
                with self.testbed.array_lock:
                    action()
            except Exception:  # a failure here must not look like a quiet array
                if not self.testbed.stopping.is_set():
                    self.testbed.log.add(Violation(violations.BROKEN, self.name, 0, 0, traceback.format_exc()))

    # --- values and strings

    def change_value(self):
        kind, attribute, draw = self.random.choice(VALUES)
        chosen = self.random.choice(self.testbed.objects[kind])
        self.testbed.change("set", kind, chosen["Index"], attribute, draw(self.random))

    def send_alert(self):
        """Lets the array send an alert string."""
        self.testbed.array.tell("misc", self.testbed.notices.new_mark()[1])

    def send_event(self):
        """Sends an event to the daemon's socket."""
        self.testbed.notices.send(self.random.choice((1, 1, 5)))

    def send_device_event(self):
        """Lets the array send an event that names neither disk nor enclosure."""
        self.testbed.array.tell("scsi", self.testbed.notices.new_mark()[0].number, self.random.randint(1, 99))

    # --- statuses

    def repeat_event(self):
        """Reports the status of an object once more."""
        found = [(subject, self.states.current[subject]) for subject in self.busy if subject in self.states.current]
        if found:
            subject, state = self.random.choice(found)
            component = PARTS.get(state.kind, (0, 0))[1]
            numbers = arguments(self.testbed.objects, subject.number, component, state.element)
            event = Event((1, 2, 3), subject.number, *numbers, text=f"again@@@'{subject.name}' is unchanged")
            self.states.repeat(subject, time.monotonic())
            try:
                management.send(management.trap(event.command()))
            except OSError:
                pass  # nobody listens

    def fail_or_recover(self):
        now = time.monotonic()
        due = [subject for subject, until in self.busy.items() if until <= now]
        for subject in due:
            state = self.states.current.get(subject)
            if state is None or state.status == UP:
                del self.busy[subject]
                continue
            statuses = [each for each in ("Up", "Up", "Up", "Down", "Degraded")
                        if self.status_attribute(state, each) != self.status_attribute(state)]
            self.set_status(subject, self.random.choice(statuses), with_event=self.random.random() < 0.6)
            return
        if not due:
            for _ in range(self.random.choice(FAILED_TOGETHER)):
                self.fail_one()

    def fail_one(self):
        number = self.random.choice(NUMBERS)
        found = [subject for subject, state in self.states.current.items()
                 if subject.number == number and self.is_free(subject, state)]
        if found and len(self.busy) < MAX_FAILED and not (number == 204 and "TsController" in self.removed):
            self.set_status(self.random.choice(found), self.random.choice(("Down", "Degraded")), with_event=True)

    def is_free(self, subject, state):
        return state.status == UP and subject not in self.busy

    @staticmethod
    def status_attribute(state, status=None):
        """Returns the attribute that contains the status of an object, and its value, now or for another status."""
        if state.kind == "Tessera":
            return "PortsBalanced", str(status == "Up") if status else state.element["PortsBalanced"]
        return "Status", status or state.element["Status"]

    def set_status(self, subject, status, with_event):
        state = self.states.current[subject]
        kind, element, (attribute, value) = state.kind, state.element, self.status_attribute(state, status)
        if not with_event:
            self.testbed.replace({name: [{**each, attribute: value} if each is element else each for each in found]
                                  for name, found in self.testbed.objects.items()})
        elif kind == "Tessera":
            self.testbed.change("set", kind, 1, attribute, value)
        elif status == "Up":
            self.testbed.change("recover", kind, element["Index"])
        else:
            self.testbed.change("fail", kind, element["Index"], status)
        duration_s = self.random.choice(WITH_EVENT_S) if with_event else WITHOUT_EVENT_S
        self.busy[subject] = time.monotonic() + self.random.uniform(*duration_s)

    # --- rows

    def remove_or_add(self):
        """Adds a removed object again when it is due, or removes one, if possible in front of an unhealthy one."""
        due = [kind for kind, (until, _) in self.removed.items() if until <= time.monotonic()]
        if due:
            self.add_again(due[0], *self.removed.pop(due[0])[1])
            return
        current = self.states.current
        unhealthy = {current[subject].parent or subject for subject in self.busy.keys() & current.keys()
                     if current[subject].status != UP}
        free, before = defaultdict(list), {}
        for subject, state in current.items():
            if state.kind in MOVING and state.kind not in self.removed:
                if subject in unhealthy:
                    before[state.kind] = list(free[state.kind])
                elif self.is_free(subject, state) and self.may_be_removed(state):
                    free[state.kind].append(state.element)
        kinds = [kind for kind in before if before[kind]] or [kind for kind in free if free[kind]]
        if kinds:
            kind = self.random.choice(kinds)
            self.remove(kind, self.random.choice(before.get(kind) or free[kind]))

    def remove(self, kind, chosen):
        index = chosen["Index"]
        gone = [(name, place, each) for name, key in ((kind, "Index"), ("TsDiskConfiguration", "DiskIndex"))
                for place, each in enumerate(self.testbed.objects[name])
                if each[key] == index and (name == kind or kind == "TsDisk")]
        self.testbed.change("remove", kind, index)
        self.removed[kind] = time.monotonic() + self.random.uniform(*REMOVED_S), gone

    def may_be_removed(self, state):
        """Disks need their enclosure. Events about components of a controller contain its row, so it must not move."""
        if state.kind == "TsEnclosure":
            return int(state.element["Index"]) >= spares.FIRST_INDEX
        return state.kind != "TsController" or len(self.testbed.objects["TsController"]) > 1 and not any(
            subject.number == 204 for subject in self.busy)

    def add_again(self, kind, *gone):
        """Adds the object at its old place, or another one at the end of the list."""
        if kind in NEVER_REPLACED or self.random.random() < 0.5:
            objects = {name: list(found) for name, found in self.testbed.objects.items()}
            for name, place, element in gone:
                objects[name].insert(place, element)
            self.testbed.replace(objects)
            return
        self.added += 1
        element = gone[0][2]
        more = (f"EnclosureIndex={element['EnclosureIndex']}",) if kind == "TsDisk" else ()
        name = f"{element['EnclosureIndex']}-{100 + self.added}" if kind == "TsDisk" else f"new-{self.added}"
        self.testbed.change("add", element["ObjectType"], f"Name={name}", *more)
