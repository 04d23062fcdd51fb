"""Managers that send requests continuously, each in its own thread."""

import random
import threading
import time
import traceback

from harness import ber, berWriter, mib

from . import snmp, violations
from .states import KINDS
from .violations import Violation

UNKNOWN_NAMES = (mib.ROOT + ".99.0", mib.oid("tsDiskName", 1999), mib.oid("tsCtlrFanName", 3, 1),
                 mib.oid("productName"), "1.3.6.1.4.1.913.4711.0", "1.3.6.1.4.1.27405.7.7")
SETTABLE = ("sysContact", "sysName", "sysLocation")
MAX_INTEGER = 2147483647


class Client(threading.Thread):
    PAUSE_S = (0.02, 0.2)  # between turns
    VERSION = "2c"

    def __init__(self, testbed, name, seed):
        super().__init__(daemon=True, name=name)
        self.testbed, self.checks, self.log = testbed, testbed.checks, testbed.log
        self.random = random.Random(f"{seed} {name}")
        self.manager = snmp.Manager(version=self.VERSION)

    def run(self):
        while not self.testbed.stopping.is_set():
            try:
                self.turn()
            except ber.Malformed as error:
                self.log.add(Violation(violations.MALFORMED, self.name, 0, 0, str(error)))
            except Exception:  # a client that fails must not look like one that found nothing
                self.log.add(Violation(violations.BROKEN, self.name, 0, 0, traceback.format_exc()))
            self.testbed.stopping.wait(self.random.uniform(*self.PAUSE_S))
        self.manager.close()

    def count(self, exchange):
        """Counts an exchange. Returns its response, or None."""
        self.log.count(self.name, "requested")
        if exchange.response is None:
            self.checks.add(violations.UNANSWERED, self.name, exchange, "no response")
            return None
        self.log.count(self.name, "answered")
        if exchange.ended - exchange.sent > violations.SLOW_S:
            self.checks.add(violations.SLOW, self.name, exchange, "slow")
        if exchange.response.error == "genErr":
            self.log.count(self.name, "genErr")
            self.checks.add(violations.GENERR, self.name, exchange, "genErr")
        return exchange.response

    def choose_names(self, count):
        """Returns names of instances, most of which exist."""
        oids = self.random.choices(self.testbed.known_oids(), k=count)
        return [self.vary(oid) for oid in oids]

    def vary(self, oid):
        chance = self.random.random()
        if chance < 0.05:
            return self.random.choice(UNKNOWN_NAMES)
        return mib.old_form(oid) if chance < 0.2 and oid.startswith(mib.ENTERPRISE) else oid


class Walker(Client):
    """Walks the whole store and checks that no instance is missing."""

    PAUSE_S = (0.5, 2)

    def step(self, oid):
        return self.manager.read(berWriter.GET_BULK, [oid], 0, self.random.choice((1, 5, 10, 20)))

    def turn(self):
        begin, oid, seen = time.monotonic(), mib.ENTERPRISE, set()
        while oid is not None:
            if self.testbed.stopping.is_set():
                return
            exchange = self.step(oid)
            response = self.count(exchange)
            if response is None or response.error not in ("noError", "noSuchName"):
                self.log.count(self.name, "broken walks")
                return
            oid = None if response.error == "noSuchName" else self.check_bindings(exchange, oid, seen)
        self.log.count(self.name, "walks")
        self.checks.complete(self.name, snmp.Exchange(begin, time.monotonic(), None), seen)

    def check_bindings(self, exchange, before, seen):
        """Returns the name to continue with, or None at the end."""
        for binding in exchange.response.bindings:
            if binding.type == "endOfMibView" or not binding.oid.startswith(mib.ENTERPRISE + "."):
                return None
            if not self.checks.followed(self.name, exchange, before, binding):
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
        requested = self.choose_names(self.random.choice((1, 1, 2, 5, 20, 60)))
        exchange = self.manager.get(*requested)
        response = self.count(exchange)
        if response and response.error == "noError":
            self.checks.got(self.name, exchange, requested)


class BulkRequester(Client):
    """Sends GETBULKs with absurd numbers."""

    PAUSE_S = (0.1, 0.6)

    def turn(self):
        requested = self.choose_names(self.random.choice((1, 1, 2, 3, 8)))
        count = len(requested)
        non_repeaters = self.random.choice((0, 0, 0, 1, count, count + 1, MAX_INTEGER, -1, -MAX_INTEGER - 1))
        repetitions = self.random.choice((0, 1, 2, 10, 20, 21, 1000, MAX_INTEGER, -1))
        exchange = self.manager.read(berWriter.GET_BULK, requested, non_repeaters, repetitions)
        response = self.count(exchange)
        if response and response.error == "noError":
            self.checks.got_bulk(self.name, exchange, requested, non_repeaters)


class Setter(Client):
    """Sets strings of the array, requests notifications, and tries what is not allowed."""

    PAUSE_S = (0.5, 2.5)
    number = 0

    def turn(self):
        self.random.choice((self.set_text, self.set_text, self.force_trap, self.set_invalid))()

    def assign(self, oid, value, community="private"):
        self.manager.community = community
        return self.manager.request(berWriter.SET, [(oid, berWriter.octets(value))])

    def set_text(self):
        self.number += 1
        name, value = self.random.choice(SETTABLE), f"set {self.number} <&> \"'".encode()
        self.testbed.set_text(name, value, time.monotonic())
        self.count(self.assign(mib.scalar(name), value))

    def force_trap(self):
        oid = self.random.choice([oid for oid in self.testbed.known_oids() if mib.arcs(oid)[:-1] in FORCE_TRAPS])
        self.testbed.notices.force(FORCE_TRAPS[mib.arcs(oid)[:-1]])
        self.count(self.assign(oid, "ForceTrap"))

    def set_invalid(self):
        """Tries an invalid value, a read-only instance, and a community without write access."""
        oid, value, community = self.random.choice((
            (mib.oid("tsCtlrForceTrap", 1), "forcetrap", "private"), (mib.oid("tsCtlrName", 1), "x", "private"),
            (mib.scalar("sysName"), "must never be read", "public")))
        exchange = self.assign(oid, value, community)
        response = self.count(exchange)
        if response and response.error == "noError":
            self.checks.add(violations.VALUE, self.name, exchange, f"{oid} was set", oid, ("STRING", value))


# Columns that request a notification about a whole object, with its number.
FORCE_TRAPS = {tuple(column.oid): number for column in mib.MIB.columns for number, kind in KINDS.items()
               if column.name.endswith("ForceTrap") and mib.KIND_OF_TABLE[column.table.name] == kind}


def create_clients(testbed, seed):
    return [Walker(testbed, "bulk walker 1", seed), Walker(testbed, "bulk walker 2", seed),
            OldWalker(testbed, "walker of version 1", seed), Getter(testbed, "getter 1", seed),
            Getter(testbed, "getter 2", seed), BulkRequester(testbed, "bulk requester", seed),
            Setter(testbed, "setter", seed)]
