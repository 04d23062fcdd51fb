"""Faults of the array: slow, wrong or no responses, a stall, a restart."""

import os
import signal
import time
from contextlib import contextmanager

from harness import management
from harness.expected import MAX_STRING
from harness.mib import KIND_OF_TABLE

from ..history import FalseReport
from ..timeline import EVENTS, RECORDS, REQUESTS, Disturbance
from .kind import NOTHING, Kind, draw_end, no_arguments, pause_until

KINDS_OF_OBJECT = sorted(set(KIND_OF_TABLE.values()))
# False values of these would change the array's address or the parents of components.
NEVER_FALSE = ("Tessera", "TsController", "TsEnclosure")
REPORTED_FALSELY = [kind for kind in KINDS_OF_OBJECT if kind not in NEVER_FALSE]

BROKEN_FRAMES = (("refuse",), ("tear",), ("tear", "3"), ("long-length",), ("huge-length",), ("zero-length",),
                 ("garbage",), ("wrong-sequence",), ("wrong-type",), ("no-response",), ("no-cmd",), ("ping-false",))
BAD_DOCUMENTS = (("truncated",), ("empty",), ("unbalanced",), ("wrong-root",), ("no-return",), ("no-successful",),
                 ("lower-true",), ("error", "Failed", "no reason"), ("nesting",), ("doctype",),
                 ("entities",), ("external-entity",), ("too-many", "3"))
UNKNOWN_STATUS = -1  # the number of an unknown status
LONG, HUGE = "3000", "300000"  # octets: served whole, and truncated
# What managers may read because of false reports.
FALSE_REPORTS = {("no-objects",): {"absent": True}, ("missing", "Name"): {"absent": True},
        ("missing", "Status"): {"absent": True}, ("no-index",): {"absent": True}, ("no-parent",): {"absent": True},
        ("unknown-status",): {"values": (UNKNOWN_STATUS,)},
        **{("huge-text", "Name", size): {"values": (b"x" * min(int(size), MAX_STRING),)} for size in (LONG, HUGE)}}


def draw_frames(random):
    return (*random.choice(BROKEN_FRAMES), *random.choice(((), ("for", "1"), ("for", "3"))))


def draw_document(random):
    return (*random.choice(BAD_DOCUMENTS), "on", random.choice(KINDS_OF_OBJECT))


def draw_false_report(random):
    return (*random.choice(sorted(FALSE_REPORTS)), "on", random.choice(REPORTED_FALSELY))


def draw_delay(random):
    what = random.choice(((), ("on", random.choice(KINDS_OF_OBJECT))))
    return ("delay", random.choice(("100", "700", "3500")), *what)


# Events that make the daemon fetch a kind, so that a fault takes effect soon: the number and its three arguments.
# FIRST stands for the API index of the first object of the kind, OF_ENCLOSURE for that of the first enclosure.
FIRST, OF_ENCLOSURE = "first", "enclosure"
TRIGGERS = {"TsDisk": (202, FIRST, 0, 0), "TsController": (203, FIRST, 0, 0), "TsEnclosure": (205, FIRST, 0, 0),
             "TsDiskFolder": (207, FIRST, 0, 0), "TsVolume": (208, FIRST, 0, 0), "TsServer": (209, FIRST, 0, 0),
             "TsControllerCacheCard": (210, 1, 0, 0), "Tessera": (211, 1, 0, 0), "TsUps": (212, FIRST, 0, 0),
             "TsControllerFanSensor": (204, 1, 1, 1), "TsControllerPowerSupply": (204, 1, 2, 1),
             "TsControllerTemperatureSensor": (204, 1, 3, 1), "TsControllerVoltageSensor": (204, 1, 4, 1),
             "TsEnclosureCoolingFanSensor": (206, OF_ENCLOSURE, 1, 1),
             "TsEnclosurePowerSupply": (206, OF_ENCLOSURE, 2, 1), "TsEnclosureIoModule": (206, OF_ENCLOSURE, 5, 1),
             "TsEnclosureTemperatureSensor": (206, OF_ENCLOSURE, 3, 1),
             "TsEnclosureAudibleAlarm": (206, OF_ENCLOSURE, 6, 1)}


def trigger_fetch(testbed, kind):
    """Makes the daemon fetch a kind of object; a table without an event is fetched on schedule."""
    if kind in TRIGGERS:
        number, first, *others = TRIGGERS[kind]
        first = {FIRST: testbed.objects[kind][0].get("Index"),
                 OF_ENCLOSURE: testbed.objects["TsEnclosure"][0]["Index"]}.get(first, first)
        testbed.notices.force(number)
        management.send(management.trap(f"1 2 3 {number} {first} {' '.join(map(str, others))} 0 of a fault"))


@contextmanager
def faulty(testbed, words):
    before = testbed.array.exchanges(affected=True)
    testbed.array.fault(*words)
    try:
        if "on" in words:
            trigger_fetch(testbed, words[-1])
        yield
    finally:
        testbed.affected = testbed.array.exchanges(affected=True) - before
        testbed.array.clear_faults()


@contextmanager
def misreported(testbed, words):
    report = FalseReport(words[-1], time.monotonic(), **FALSE_REPORTS[words[:-2]])
    testbed.history.add_false_report(report)
    with faulty(testbed, words):
        yield
    report.end = time.monotonic()


@contextmanager
def hung(testbed, words):
    """Sends no more responses until the array is restarted."""
    testbed.array.fault(*words)
    try:
        yield
    finally:
        with testbed.array_lock:
            testbed.array.stop()
            testbed.start_array(testbed.objects)


@contextmanager
def stalled(testbed, _):
    with testbed.array_lock:
        os.kill(testbed.array.process.pid, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(testbed.array.process.pid, signal.SIGCONT)


@contextmanager
def gone(testbed, words):
    """Exits, and is restarted with the same objects."""
    with testbed.array_lock:
        testbed.array.process.send_signal(signal.Signals[words[0]])
        testbed.array.process.wait(30)
        try:
            yield
        finally:
            testbed.start_array(testbed.objects)


@contextmanager
def busy(testbed, _):
    """Disks fail together. When all are due for a re-check, they cannot be read for some seconds. At most one re-check
    per second may fail and drop its record."""
    with testbed.array_lock:
        disks = [each["Index"] for each in testbed.objects["TsDisk"] if each["Status"] == "Up"][:BUSY_DISKS]
        for index in disks:
            testbed.change("fail", "TsDisk", index)
    pause_until(testbed, time.monotonic() + RECHECKED_S)
    before = testbed.records().intersection(("202", index) for index in disks)
    disturbance = Disturbance("the array is busy", time.monotonic(), ALL)
    testbed.timeline.begin_disturbance(disturbance)
    testbed.array.fault("error", "Busy", "come back later", "on", "TsDisk")
    pause_until(testbed, time.monotonic() + BUSY_S)
    testbed.array.clear_faults()
    disturbance.over = disturbance.recovered = time.monotonic()
    gone = len(before - testbed.records())
    if gone > disturbance.over - disturbance.begin + 1:
        testbed.failures.append(f"{gone} of {len(before)} records of disks were dropped within {BUSY_S} s")
    with testbed.array_lock:
        for index in {each["Index"] for each in testbed.objects["TsDisk"]}.intersection(disks):
            testbed.change("recover", "TsDisk", index)
    yield


STRIKE_S = 20  # the daemon's pause after a failed test, with a margin

RECHECKED_S, BUSY_S, BUSY_DISKS = 61, 3, 10
ALL, NOTICES = (REQUESTS, EVENTS, RECORDS), (EVENTS, RECORDS)

KINDS = (
    Kind("the array breaks its frames", draw_frames, faulty, NOTICES, recovery_s=STRIKE_S),
    Kind("the array's documents are bad", draw_document, faulty, NOTICES, seconds=(5, 10)),
    Kind("the array reports false values", draw_false_report, misreported, NOTICES, seconds=(5, 10)),
    Kind("the array is busy", no_arguments, busy, NOTHING, seconds=(0, 1), recovery_s=RECHECKED_S + BUSY_S + 5),
    Kind("the array is slow", draw_delay, faulty, NOTICES, seconds=(4, 9)),
    Kind("the array hangs", lambda _: ("hang",), hung, NOTICES),
    Kind("the array stalls", no_arguments, stalled, NOTICES),
    Kind("the array does not listen", lambda _: ("stop-listening",), faulty, NOTICES, seconds=(1, 4),
         recovery_s=STRIKE_S),
    Kind("the array is restarted", draw_end, gone, NOTICES, seconds=(0, 4), recovery_s=STRIKE_S),
    Kind("the array is gone", draw_end, gone, ALL, restarts=True, seconds=(45, 60), recovery_s=15),
)
