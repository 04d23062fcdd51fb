"""Facts about processes, read from /proc."""

import os
import time

TICKS = os.sysconf("SC_CLK_TCK")


def fields_of(pid):
    """Returns the fields of its stat line after the name. Raises OSError if there is no such process."""
    with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
        return file.read().rsplit(")", 1)[1].split()


def begin_of(pid):
    """Returns the monotonic time at which a process was started."""
    since_boot = int(fields_of(pid)[19]) / TICKS
    return since_boot - time.clock_gettime(time.CLOCK_BOOTTIME) + time.monotonic()


def resident_kb(pid):
    with open(f"/proc/{pid}/status", encoding="utf-8") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("VmRSS:"))


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))
