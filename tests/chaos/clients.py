"""Managers that send requests all the time, each in its own thread."""

import random
import threading
import time
import traceback

from harness import ber, berWriter, mib

from . import snmp, violations
from .states import KINDS
from .violations import Violation

STRANGERS = (mib.ROOT + ".99.0", mib.oid("tsDiskName", 1999), mib.oid("tsCtlrFanName", 3, 1), mib.oid("productName"),
             "1.3.6.1.4.1.913.4711.0", "1.3.6.1.4.1.27405.7.7")
TEXTS = ("sysContact", "sysName", "sysLocation")
GREATEST = 2147483647


class Client(threading.Thread):
    PAUSE_S = (0.02, 0.2)  # between turns
    VERSION = "2c"

    def __init__(self, world, name, seed):
        super().__init__(daemon=True, name=name)
        self.world, self.judge, self.log = world, world.judge, world.log
        self.random = random.Random(f"{seed} {name}")
        self.manager = snmp.Manager(version=self.VERSION)

    def run(self):
        while not self.world.stopping.is_set():
            try:
                self.turn()
            except ber.Malformed as error:
                self.log.add(Violation(violations.MALFORMED, self.name, 0, 0, str(error)))
            except Exception:  # a client that fails must not look like one that found nothing
                self.log.add(Violation(violations.BROKEN, self.name, 0, 0, traceback.format_exc()))
            self.world.stopping.wait(self.random.uniform(*self.PAUSE_S))
        self.manager.close()

    def counted(self, exchange):
        """Counts an exchange. Returns its response, or None."""
        self.log.count(self.name, "asked")
        if exchange.response is None:
            self.judge.add(violations.UNANSWERED, self.name, exchange, "no answer")
            return None
        self.log.count(self.name, "answered")
        if exchange.ended - exchange.sent > violations.SLOW_S:
            self.judge.add(violations.SLOW, self.name, exchange, "slow")
        if exchange.response.error == "genErr":
            self.log.count(self.name, "genErr")
            self.judge.add(violations.REFUSED, self.name, exchange, "genErr")
        return exchange.response

    def some(self, count):
        """Returns names of instances, most of which exist."""
        oids = self.random.choices(self.world.known_oids(), k=count)
        return [self.dressed(oid) for oid in oids]

    def dressed(self, oid):
        chance = self.random.random()
        if chance < 0.05:
            return self.random.choice(STRANGERS)
        return mib.old_form(oid) if chance < 0.2 and oid.startswith(mib.ENTERPRISE) else oid


class Walker(Client):
    """Walks the whole store and checks that no instance is missing."""

    PAUSE_S = (0.5, 2)

    def step(self, oid):
        return self.manager.read(berWriter.GET_BULK, [oid], 0, self.random.choice((1, 5, 10, 20)))

    def turn(self):
        begin, oid, seen = time.monotonic(), mib.ENTERPRISE, set()
        while oid is not None:
            if self.world.stopping.is_set():
                return
            exchange = self.step(oid)
            response = self.counted(exchange)
            if response is None or response.error not in ("noError", "noSuchName"):
                self.log.count(self.name, "broken walks")
                return
            oid = None if response.error == "noSuchName" else self.take(exchange, oid, seen)
        self.log.count(self.name, "walks")
        self.judge.complete(self.name, snmp.Exchange(begin, time.monotonic(), None), seen)

    def take(self, exchange, before, seen):
        """Returns the name to continue with, or None at the end."""
        for binding in exchange.response.bindings:
            if binding.type == "endOfMibView" or not binding.oid.startswith(mib.ENTERPRISE + "."):
                return None
            if not self.judge.followed(self.name, exchange, before, binding):
                return None
            seen.add(binding.oid)
            before = binding.oid
        return before if exchange.response.bindings else None


class OldWalker(Walker):
    """Walks with GETNEXT of version 1."""

    VERSION = "1"

    def step(self, oid):
        return self.manager.read(berWriter.GET_NEXT, [oid])


class Getter(Client):
    """GETs few or many names, some of which are unknown."""

    def turn(self):
        asked = self.some(self.random.choice((1, 1, 2, 5, 20, 60)))
        exchange = self.manager.get(*asked)
        response = self.counted(exchange)
        if response and response.error == "noError":
            self.judge.got(self.name, exchange, asked)


class BulkAsker(Client):
    """Sends GETBULKs with absurd numbers."""

    PAUSE_S = (0.1, 0.6)

    def turn(self):
        asked = self.some(self.random.choice((1, 1, 2, 3, 8)))
        non_repeaters = self.random.choice((0, 0, 0, 1, len(asked), len(asked) + 1, GREATEST, -1, -GREATEST - 1))
        repetitions = self.random.choice((0, 1, 2, 10, 20, 21, 1000, GREATEST, -1))
        exchange = self.manager.read(berWriter.GET_BULK, asked, non_repeaters, repetitions)
        response = self.counted(exchange)
        if response and response.error == "noError":
            self.judge.got_bulk(self.name, exchange, asked, non_repeaters)


class Setter(Client):
    """Sets strings of the array, requests notifications, and tries what is not allowed."""

    PAUSE_S = (0.5, 2.5)
    number = 0

    def turn(self):
        self.random.choice((self.set_text, self.set_text, self.force_trap, self.set_what_is_refused))()

    def assign(self, oid, value, community="private"):
        self.manager.community = community
        return self.manager.ask(berWriter.SET, [(oid, berWriter.octets(value))])

    def set_text(self):
        self.number += 1
        name, value = self.random.choice(TEXTS), f"set {self.number} <&> \"'".encode()
        self.world.set_text(name, value, time.monotonic())
        self.counted(self.assign(mib.scalar(name), value))

    def force_trap(self):
        oid = self.random.choice([oid for oid in self.world.known_oids() if mib.arcs(oid)[:-1] in FORCE_TRAPS])
        self.world.notices.force(FORCE_TRAPS[mib.arcs(oid)[:-1]])
        self.counted(self.assign(oid, "ForceTrap"))

    def set_what_is_refused(self):
        """Tries an invalid value, a read-only instance, and a community without write access."""
        oid, value, community = self.random.choice((
            (mib.oid("tsCtlrForceTrap", 1), "forcetrap", "private"), (mib.oid("tsCtlrName", 1), "x", "private"),
            (mib.scalar("sysName"), "must never be read", "public")))
        exchange = self.assign(oid, value, community)
        response = self.counted(exchange)
        if response and response.error == "noError":
            self.judge.add(violations.VALUE, self.name, exchange, f"{oid} was set", oid, ("STRING", value))


# Columns that request a notification about a whole object, with its number.
FORCE_TRAPS = {tuple(column.oid): number for column in mib.MIB.columns for number, kind in KINDS.items()
               if column.name.endswith("ForceTrap") and mib.KIND_OF_TABLE[column.table.name] == kind}


def all_of(world, seed):
    return [Walker(world, "bulk walker 1", seed), Walker(world, "bulk walker 2", seed),
            OldWalker(world, "walker of version 1", seed), Getter(world, "getter 1", seed),
            Getter(world, "getter 2", seed), BulkAsker(world, "bulk asker", seed), Setter(world, "setter", seed)]
