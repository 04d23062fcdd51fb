"""A wall clock for the daemon alone, which tests set as they like: Debian's libfaketime. Like every machine's, the
steady clock goes on beside it."""

import os

from . import machine

LIBRARY = "/usr/lib/x86_64-linux-gnu/faketime/libfaketime.so.1"
FILE = "/tmp/wallClock"
# Sanitizers must be the first library of a program, and so must this one.
CAN_BE_SET = os.path.exists(LIBRARY) and "SNMPSUBAGENT_SANITIZED" not in os.environ


def environment():
    if not CAN_BE_SET:
        return {}
    return {"LD_PRELOAD": LIBRARY, "FAKETIME_ONLY_CMDS": "snmpSubagent", "FAKETIME_NO_CACHE": "1",
            "FAKETIME_DONT_FAKE_MONOTONIC": "1", "FAKETIME_TIMESTAMP_FILE": FILE}


def set_to(offset_s):
    """So many seconds ahead of the true one; behind it when negative."""
    machine.write_file(FILE + ".new", f"{offset_s:+d}\n")
    os.rename(FILE + ".new", FILE)
