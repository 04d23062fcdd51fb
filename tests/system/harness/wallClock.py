"""A wall clock that only the daemon sees and tests can set, with Debian's libfaketime. The monotonic clock is not
affected."""

import os

from . import machine

LIBRARY = "/usr/lib/x86_64-linux-gnu/faketime/libfaketime.so.1"
FILE = "/tmp/wallClock"
# libfaketime and a sanitizer must both be the first library of a program.
CAN_BE_SET = os.path.exists(LIBRARY) and "SNMPSUBAGENT_SANITIZED" not in os.environ


def environment():
    if not CAN_BE_SET:
        return {}
    return {"LD_PRELOAD": LIBRARY, "FAKETIME_ONLY_CMDS": "snmpSubagent", "FAKETIME_NO_CACHE": "1",
            "FAKETIME_DONT_FAKE_MONOTONIC": "1", "FAKETIME_TIMESTAMP_FILE": FILE}


def set_to(offset_s):
    """Sets the clock this many seconds ahead of the real one, or behind it if negative."""
    machine.write_file(FILE + ".new", f"{offset_s:+d}\n")
    os.rename(FILE + ".new", FILE)
