"""Faults of the machine: log file, disk, descriptors, clock."""

import os
import resource
from contextlib import contextmanager, suppress

from harness import daemon, machine, waiting, wallClock

from .. import processes
from ..timeline import EVENTS, RECORDS, REQUESTS
from .kind import NOTHING, Kind, no_arguments

FILLER = "/var/log/filler"
FILL_BYTES = 64 * 1024 * 1024  # more than fits
BLOCK = 512


@contextmanager
def log_removed(testbed, _):
    machine.remove_file(daemon.LOG)
    yield
    testbed.log_is_written()


@contextmanager
def disk_full(testbed, _):
    with open(FILLER, "wb", buffering=0) as file, suppress(OSError):
        for _ in range(FILL_BYTES // BLOCK):
            file.write(b"x" * BLOCK)
    try:
        yield
    finally:
        machine.remove_file(FILLER)
    testbed.log_is_written()


def limit_of(pid):
    return resource.prlimit(pid, resource.RLIMIT_NOFILE)


@contextmanager
def no_descriptors(testbed, words):
    """Limits descriptors to the open ones and a few more. Child processes inherit the limit."""
    pid = daemon.Daemon.pid()
    before = limit_of(pid)
    soft = processes.descriptors(pid) + int(words[0])
    resource.prlimit(pid, resource.RLIMIT_NOFILE, (soft, before[1]))
    try:
        yield
    finally:
        waiting.wait_until(lambda: restore_limits(soft, before), "all limits are restored", 20)


def restore_limits(soft, before):
    """Restores the limit of every process with the low one. Returns whether there was none."""
    found = False
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            if limit_of(int(entry))[0] == soft:
                resource.prlimit(int(entry), resource.RLIMIT_NOFILE, before)
                found = True
        except (ProcessLookupError, PermissionError):
            pass
    return not found


@contextmanager
def clock_stepped(_, words):
    wallClock.set_to(int(words[0]))
    yield
    wallClock.set_to(int(words[1]))


def draw_steps(random):
    return tuple(random.choice((("3600", "0"), ("-3600", "0"), ("86400", "-86400"), ("-7", "7"), ("700000", "0"))))


KINDS = (
    Kind("the log file is removed", no_arguments, log_removed, disturbs=NOTHING, seconds=(0, 1), recovery_s=3),
    Kind("the disk of the log is full", no_arguments, disk_full, disturbs=NOTHING, recovery_s=3),
    Kind("descriptors run out", lambda random: (random.choice(("0", "1", "3")),), no_descriptors, restarts=True,
         recovery_s=40),
    Kind("the clock steps", draw_steps, clock_stepped, (REQUESTS, EVENTS, RECORDS), seconds=(4, 7), recovery_s=10),
)
