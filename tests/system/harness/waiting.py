"""Waiting for conditions. No test waits for a fixed time."""

import os
import time

# Sanitizers and slow machines need more of it; every limit is multiplied.
PATIENCE = float(os.environ.get("SNMPSUBAGENT_PATIENCE", "1"))

POLL_S = 0.05


class WaitedInVain(AssertionError):
    pass


def wait_until(condition, what, limit_s=30, poll_s=POLL_S):
    """Returns the first result of condition() that is true; raises with `what` at the limit. poll_s: longer for a
    condition that takes much of the machine itself."""
    end = time.monotonic() + limit_s * PATIENCE
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise WaitedInVain(f"waited {limit_s * PATIENCE:.0f} s in vain: {what}")
        time.sleep(poll_s)
