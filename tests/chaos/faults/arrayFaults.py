"""Faults of the array: slow, wrong or no responses, a stall, a restart."""

import os
import signal
import time
from contextlib import contextmanager

from harness import management
from harness.expected import LONGEST_TEXT
from harness.mib import KIND_OF_TABLE

from ..history import FalseReport
from ..timeline import EVENTS, RECORDS, REQUESTS, Disturbance
from .kind import NOTHING, Kind, draw_end, no_words, pause_until

KINDS_OF_OBJECT = sorted(set(KIND_OF_TABLE.values()))
# False values of these would change the array's address or the parents of components.
NEVER_FALSE = ("Tessera", "TsController", "TsEnclosure")
REPORTED_FALSELY = [kind for kind in KINDS_OF_OBJECT if kind not in NEVER_FALSE]

BROKEN_FRAMES = (("refuse",), ("tear",), ("tear", "3"), ("long-length",), ("huge-length",), ("zero-length",),
                 ("garbage",), ("wrong-sequence",), ("wrong-type",), ("no-response",), ("no-cmd",), ("ping-false",))
BAD_DOCUMENTS = (("truncated",), ("empty",), ("unbalanced",), ("wrong-root",), ("no-return",), ("no-successful",),
                 ("lower-true",), ("error", "Failed", "the array does not feel like it"), ("nesting",), ("doctype",),
                 ("entities",), ("external-entity",), ("too-many", "3"))
SIDEWAYS = -1  # the number of an unknown status
LONG, HUGE = "3000", "300000"  # octets: served whole, and truncated
# What may be read because of false reports.
FALSE_REPORTS = {("no-objects",): {"absent": True}, ("missing", "Name"): {"absent": True},
        ("missing", "Status"): {"absent": True}, ("no-index",): {"absent": True}, ("no-parent",): {"absent": True},
        ("unknown-status",): {"values": (SIDEWAYS,)},
        **{("huge-text", "Name", size): {"values": (b"x" * min(int(size), LONGEST_TEXT),)} for size in (LONG, HUGE)}}


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
QUESTIONS = {"TsDisk": (202, FIRST, 0, 0), "TsController": (203, FIRST, 0, 0), "TsEnclosure": (205, FIRST, 0, 0),
             "TsDiskFolder": (207, FIRST, 0, 0), "TsVolume": (208, FIRST, 0, 0), "TsServer": (209, FIRST, 0, 0),
             "TsControllerCacheCard": (210, 1, 0, 0), "Tessera": (211, 1, 0, 0), "TsUps": (212, FIRST, 0, 0),
             "TsControllerFanSensor": (204, 1, 1, 1), "TsControllerPowerSupply": (204, 1, 2, 1),
             "TsControllerTemperatureSensor": (204, 1, 3, 1), "TsControllerVoltageSensor": (204, 1, 4, 1),
             "TsEnclosureCoolingFanSensor": (206, OF_ENCLOSURE, 1, 1),
             "TsEnclosurePowerSupply": (206, OF_ENCLOSURE, 2, 1), "TsEnclosureIoModule": (206, OF_ENCLOSURE, 5, 1),
             "TsEnclosureTemperatureSensor": (206, OF_ENCLOSURE, 3, 1),
             "TsEnclosureAudibleAlarm": (206, OF_ENCLOSURE, 6, 1)}


def ask_for(world, kind):
    """Makes the daemon fetch a kind of object; a table without an event is fetched on schedule."""
    if kind in QUESTIONS:
        number, first, *others = QUESTIONS[kind]
        first = {FIRST: world.objects[kind][0].get("Index"),
                 OF_ENCLOSURE: world.objects["TsEnclosure"][0]["Index"]}.get(first, first)
        world.notices.force(number)
        management.send(management.trap(f"1 2 3 {number} {first} {' '.join(map(str, others))} 0 of a fault"))


@contextmanager
def told(world, words):
    before = world.array.exchanges(struck=True)
    world.array.fault(*words)
    try:
        if "on" in words:
            ask_for(world, words[-1])
        yield
    finally:
        world.struck = world.array.exchanges(struck=True) - before
        world.array.clear_faults()


@contextmanager
def misreported(world, words):
    report = FalseReport(words[-1], time.monotonic(), **FALSE_REPORTS[words[:-2]])
    world.history.add_false_report(report)
    with told(world, words):
        yield
    report.end = time.monotonic()


@contextmanager
def hung(world, words):
    """Sends no more responses until the array is restarted."""
    world.array.fault(*words)
    try:
        yield
    finally:
        with world.array_lock:
            world.array.stop()
            world.start_array(world.objects)


@contextmanager
def stalled(world, _):
    with world.array_lock:
        os.kill(world.array.process.pid, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(world.array.process.pid, signal.SIGCONT)


@contextmanager
def gone(world, words):
    """Exits, and is restarted with the same objects."""
    with world.array_lock:
        world.array.process.send_signal(signal.Signals[words[0]])
        world.array.process.wait(30)
        try:
            yield
        finally:
            world.start_array(world.objects)


@contextmanager
def busy(world, _):
    """Disks fail together and cannot be read for some seconds when all are due for a re-check. One re-check per
    second may fail, which drops the record."""
    with world.array_lock:
        disks = [each["Index"] for each in world.objects["TsDisk"] if each["Status"] == "Up"][:BUSY_DISKS]
        for index in disks:
            world.change("fail", "TsDisk", index)
    pause_until(world, time.monotonic() + RECHECKED_S)
    before = world.records().intersection(("202", index) for index in disks)
    disturbance = Disturbance("the array is busy", time.monotonic(), ALL)
    world.timeline.begin_disturbance(disturbance)
    world.array.fault("error", "Busy", "come back later", "on", "TsDisk")
    pause_until(world, time.monotonic() + BUSY_S)
    world.array.clear_faults()
    disturbance.over = disturbance.recovered = time.monotonic()
    gone = len(before - world.records())
    if gone > disturbance.over - disturbance.begin + 1:
        world.failures.append(f"{gone} of {len(before)} records of disks were dropped within {BUSY_S} s")
    with world.array_lock:
        for index in {each["Index"] for each in world.objects["TsDisk"]}.intersection(disks):
            world.change("recover", "TsDisk", index)
    yield


STRIKE_S = 20  # the daemon's pause after a failed test, with a margin

RECHECKED_S, BUSY_S, BUSY_DISKS = 61, 3, 10
ALL, NOTICES = (REQUESTS, EVENTS, RECORDS), (EVENTS, RECORDS)

KINDS = (
    Kind("the array breaks its frames", draw_frames, told, NOTICES, recovery_s=STRIKE_S),
    Kind("the array's documents are bad", draw_document, told, NOTICES, seconds=(5, 10)),
    Kind("the array reports false values", draw_false_report, misreported, NOTICES, seconds=(5, 10)),
    Kind("the array is busy", no_words, busy, NOTHING, seconds=(0, 1), recovery_s=RECHECKED_S + BUSY_S + 5),
    Kind("the array is slow", draw_delay, told, NOTICES, seconds=(4, 9)),
    Kind("the array hangs", lambda _: ("hang",), hung, NOTICES),
    Kind("the array stalls", no_words, stalled, NOTICES),
    Kind("the array does not listen", lambda _: ("stop-listening",), told, NOTICES, seconds=(1, 4), recovery_s=STRIKE_S),
    Kind("the array is restarted", draw_end, gone, NOTICES, seconds=(0, 4), recovery_s=STRIKE_S),
    Kind("the array stays away", draw_end, gone, ALL, restarts=True, seconds=(45, 60), recovery_s=15),
)
