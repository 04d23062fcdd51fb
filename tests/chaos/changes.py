"""The array's own life: values move, objects fail and recover, come and go, and it tells of it."""

import random
import threading
import time
import traceback

from harness import waiting

from . import ledger
from .ledger import Doubt
from .notices import DELIVERY_S

PAUSE_S = (0.3, 1.5)
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
# Kinds that fail and recover, with the number of their notification.
FAILING = (("TsDisk", 202), ("TsVolume", 208), ("TsServer", 209), ("TsUps", 212), ("TsEnclosure", 205))
COMING = ("TsVolume", "TsDisk")  # and going; always the last one, so that no other object changes its row


class Changes(threading.Thread):
    def __init__(self, world, seed):
        super().__init__(daemon=True, name="the array's own changes")
        self.world = world
        self.random = random.Random(f"{seed} changes")
        self.added = {}
        self.failed = None  # see healthy_one
        self.change = None  # the latest of which a notification is due

    def run(self):
        while not self.world.stopping.wait(self.random.uniform(*PAUSE_S)):
            try:
                self.random.choice((self.move, self.move, self.misc, self.tell, self.come_or_go,
                                    self.fail_or_recover))()
            except Exception:  # what breaks here must not pass for a quiet array
                if not self.world.stopping.is_set():
                    self.world.book.doubt(Doubt(ledger.BROKEN, self.name, 0, 0, traceback.format_exc()))

    def any(self, kind):
        return self.random.choice(self.world.objects[kind])

    def move(self):
        kind, attribute, draw = self.random.choice(VALUES)
        self.world.change("set", kind, self.any(kind)["Index"], attribute, draw(self.random))

    def misc(self):
        """An alert in words, told by the array itself."""
        with self.world.array_lock:
            if self.world.has_events:
                _, text = self.world.notices.new_mark()
                self.world.array.tell("misc", text)

    def tell(self):
        """An event straight to the daemon's socket."""
        self.world.notices.tell(self.random.choice((1, 1, 5)))

    def come_or_go(self):
        kind = self.random.choice(COMING)
        if kind in self.added:
            self.world.change("remove", kind, self.added.pop(kind))
        else:
            # It is in an enclosure, and called like the others.
            more = (f"EnclosureIndex={self.any('TsEnclosure')['Index']}",) if kind == "TsDisk" else ()
            self.added[kind] = self.world.change("add", kind, *more).split()[-1]

    def fail_or_recover(self):
        """One object at a time; it stays as it is until its notification has come or ought to have."""
        if self.change and not self.change.came and time.monotonic() - self.change.begin < self.patience_s():
            return
        if self.change:
            self.change.until = time.monotonic()
        # Who has not heard of the latest state may take the next for no news.
        is_news = self.change is None or self.change.came
        if self.failed is None:
            self.failed = self.healthy_one()
            self.change = self.failed and self.to("Down", "fail", is_news)
        else:
            self.change = self.to("Up", "recover", is_news)
            self.failed = None

    @staticmethod
    def patience_s():
        return (DELIVERY_S + 1) * waiting.PATIENCE

    def healthy_one(self):
        """(kind, API index, number of its notification, name) of an object; None when none is to be had."""
        kind, number = self.random.choice(FAILING)
        found = [each for each in self.world.objects[kind]
                 if each["Status"] == "Up" and each["Index"] != self.added.get(kind)]
        if not found:
            return None
        chosen = self.random.choice(found)
        return kind, chosen["Index"], number, chosen["Name"]

    def to(self, status, verb, is_news):
        kind, index, number, name = self.failed
        with self.world.array_lock:
            is_due = is_news and self.world.has_events
            change = self.world.notices.expect_change(number, name, status) if is_due else None
            self.world.change(verb, kind, index)
        return change
