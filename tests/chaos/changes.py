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
MOST = 20  # objects that fail at the same time
AT_ONCE = (1, 1, 2, 4)
# How long a status lasts: long enough for a notification, or for some re-checks. Only a re-check finds a change without
# an event.
WITH_EVENT_S, WITHOUT_EVENT_S = ((25, 45), (70, 150), (150, 260)), (130, 200)
AWAY_S = (60, 200)
MOVING = ("TsController", "TsEnclosure", "TsUps", "TsControllerFanSensor", "TsDisk", "TsVolume", "TsServer")
NEVER_NEW = ("TsController", "TsEnclosure", "TsControllerFanSensor")  # these are added again unchanged


class Changes(threading.Thread):
    def __init__(self, world, seed):
        super().__init__(daemon=True, name="the array's own changes")
        self.world, self.states = world, world.states
        self.random = random.Random(f"{seed} changes")
        self.busy = {}  # subjects that must not change, and until when
        self.away = {}  # by kind: until when, and what was removed: (kind, place, element)
        self.added = 0

    def run(self):
        while not self.world.stopping.wait(self.random.uniform(*PAUSE_S)):
            action = self.random.choice((self.move, self.move, self.misc, self.tell, self.tell_of_device, self.repeat,
                                         self.go_or_return, self.go_or_return, *[self.fail_or_recover] * 3))
            try:
                with self.world.array_lock:
                    action()
            except Exception:  # a failure here must not look like a quiet array
                if not self.world.stopping.is_set():
                    self.world.log.add(Violation(violations.BROKEN, self.name, 0, 0, traceback.format_exc()))

    # --- values and strings

    def move(self):
        kind, attribute, draw = self.random.choice(VALUES)
        chosen = self.random.choice(self.world.objects[kind])
        self.world.change("set", kind, chosen["Index"], attribute, draw(self.random))

    def misc(self):
        """Lets the array send an alert string."""
        self.world.array.tell("misc", self.world.notices.new_mark()[1])

    def tell(self):
        """Sends an event to the daemon's socket."""
        self.world.notices.tell(self.random.choice((1, 1, 5)))

    def tell_of_device(self):
        """Lets the array send an event that names neither disk nor enclosure."""
        self.world.array.tell("scsi", self.world.notices.new_mark()[0].number, self.random.randint(1, 99))

    # --- statuses

    def repeat(self):
        """Reports the status of an object once more."""
        found = [(subject, self.states.current[subject]) for subject in self.busy if subject in self.states.current]
        if found:
            subject, standing = self.random.choice(found)
            component = PARTS.get(standing.kind, (0, 0))[1]
            numbers = arguments(self.world.objects, subject.number, component, standing.element)
            event = Event((1, 2, 3), subject.number, *numbers, text=f"again@@@'{subject.name}' is as it was")
            self.states.repeat(subject, time.monotonic())
            try:
                management.send(management.trap(event.command()))
            except OSError:
                pass  # nobody listens

    def fail_or_recover(self):
        now = time.monotonic()
        due = [subject for subject, until in self.busy.items() if until <= now]
        for subject in due:
            standing = self.states.current.get(subject)
            if standing is None or standing.status == UP:
                del self.busy[subject]
                continue
            self.put(subject, self.random.choice([each for each in ("Up", "Up", "Up", "Down", "Degraded")
                                                  if self.shown(standing, each) != self.shown(standing)]),
                     is_told=self.random.random() < 0.6)
            return
        if not due:
            for _ in range(self.random.choice(AT_ONCE)):
                self.fail_one()

    def fail_one(self):
        number = self.random.choice(NUMBERS)
        found = [subject for subject, standing in self.states.current.items()
                 if subject.number == number and self.is_free(subject, standing)]
        if found and len(self.busy) < MOST and not (number == 204 and "TsController" in self.away):
            self.put(self.random.choice(found), self.random.choice(("Down", "Degraded")), is_told=True)

    def is_free(self, subject, standing):
        return standing.status == UP and subject not in self.busy

    @staticmethod
    def shown(standing, status=None):
        """Returns the attribute that contains the status of an object, and its value, now or for another status."""
        if standing.kind == "Tessera":
            return "PortsBalanced", str(status == "Up") if status else standing.element["PortsBalanced"]
        return "Status", status or standing.element["Status"]

    def put(self, subject, status, is_told):
        standing = self.states.current[subject]
        kind, element, (attribute, value) = standing.kind, standing.element, self.shown(standing, status)
        if not is_told:
            self.world.replace({name: [{**each, attribute: value} if each is element else each for each in found]
                                for name, found in self.world.objects.items()})
        elif kind == "Tessera":
            self.world.change("set", kind, 1, attribute, value)
        elif status == "Up":
            self.world.change("recover", kind, element["Index"])
        else:
            self.world.change("fail", kind, element["Index"], status)
        lasting = self.random.choice(WITH_EVENT_S) if is_told else WITHOUT_EVENT_S
        self.busy[subject] = time.monotonic() + self.random.uniform(*lasting)

    # --- rows

    def go_or_return(self):
        """Adds an object again when it is due, or removes one, before an unhealthy object in the list if possible."""
        due = [kind for kind, (until, _) in self.away.items() if until <= time.monotonic()]
        if due:
            self.bring_back(due[0], *self.away.pop(due[0])[1])
            return
        current = self.states.current
        unhealthy = {current[subject].parent or subject for subject in self.busy.keys() & current.keys()
                     if current[subject].status != UP}
        free, ahead = defaultdict(list), {}
        for subject, standing in current.items():
            if standing.kind in MOVING and standing.kind not in self.away:
                if subject in unhealthy:
                    ahead[standing.kind] = list(free[standing.kind])
                elif self.is_free(subject, standing) and self.may_go(standing):
                    free[standing.kind].append(standing.element)
        kinds = [kind for kind in ahead if ahead[kind]] or [kind for kind in free if free[kind]]
        if kinds:
            kind = self.random.choice(kinds)
            self.take_away(kind, self.random.choice(ahead.get(kind) or free[kind]))

    def take_away(self, kind, chosen):
        index = chosen["Index"]
        gone = [(name, place, each) for name, key in ((kind, "Index"), ("TsDiskConfiguration", "DiskIndex"))
                for place, each in enumerate(self.world.objects[name])
                if each[key] == index and (name == kind or kind == "TsDisk")]
        self.world.change("remove", kind, index)
        self.away[kind] = time.monotonic() + self.random.uniform(*AWAY_S), gone

    def may_go(self, standing):
        """Disks need their enclosure. Events about components of a controller contain its row, so it must not move."""
        if standing.kind == "TsEnclosure":
            return int(standing.element["Index"]) >= spares.FIRST_INDEX
        return standing.kind != "TsController" or len(self.world.objects["TsController"]) > 1 and not any(
            subject.number == 204 for subject in self.busy)

    def bring_back(self, kind, *gone):
        """Adds the object at its old place, or another one at the end of the list."""
        if kind in NEVER_NEW or self.random.random() < 0.5:
            objects = {name: list(found) for name, found in self.world.objects.items()}
            for name, place, element in gone:
                objects[name].insert(place, element)
            self.world.replace(objects)
            return
        self.added += 1
        element = gone[0][2]
        more = (f"EnclosureIndex={element['EnclosureIndex']}",) if kind == "TsDisk" else ()
        name = f"{element['EnclosureIndex']}-{100 + self.added}" if kind == "TsDisk" else f"new-{self.added}"
        self.world.change("add", element["ObjectType"], f"Name={name}", *more)
