"""Waiting for conditions. No test waits for a fixed time."""

import os
import time

# Multiplies every timeout, for sanitizers and slow machines.
PATIENCE = float(os.environ.get("SNMPSUBAGENT_PATIENCE", "1"))

POLL_S = 0.05


class TimedOut(AssertionError):
    pass


def wait_until(condition, what, limit_s=30, poll_s=POLL_S):
    """Returns the first true result of condition(). Raises TimedOut, with `what`, at the limit. Choose a longer poll_s
    for a condition that is expensive to check."""
    end = time.monotonic() + limit_s * PATIENCE
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise TimedOut(f"did not happen within {limit_s * PATIENCE:.0f} s: {what}")
        time.sleep(poll_s)
