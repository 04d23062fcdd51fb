"""Memory and descriptors of the daemons, sampled while nothing is disturbed."""

import os
import statistics
import time
from collections import namedtuple

from . import processes
from .timeline import EVENTS, REQUESTS

Sample = namedtuple("Sample", "moment resident_kb descriptors")

# After AGE_S, a daemon has served everything and refreshed most of its tables. CALM_S after a fault, it has released
# the resources that the fault tied up.
AGE_S = 15
CALM_S = 3
GROUP = 5  # samples that are compared together, because a refresh or a self-test may be in progress during one
# Strings in the store keep the capacity for the longest value so far, and the allocator keeps the memory of the largest
# response and the longest queue. Both are bounded; a leak is not.
GROWTH_KB = 6144
GROWTH_PERCENT = 10
GROWTH_DESCRIPTORS = 2
# A sanitizer keeps freed memory.
CAN_COMPARE_MEMORY = "SNMPSUBAGENT_SANITIZED" not in os.environ


def sample(life, timeline):
    now = time.monotonic()
    if now - life.begin < AGE_S or any(timeline.is_disturbed(what, now - CALM_S, now) for what in (REQUESTS, EVENTS)):
        return
    try:
        life.samples.append(Sample(now, processes.resident_kb(life.pid), processes.descriptors(life.pid)))
    except (OSError, StopIteration):
        pass  # it has just exited


class Comparison:
    """The first undisturbed samples of a daemon, and the last."""

    def __init__(self, life):
        self.life = life
        groups = life.samples[:GROUP], life.samples[-GROUP:]
        self.kb = [int(statistics.median(each.resident_kb for each in group)) for group in groups]
        self.descriptors = [min(each.descriptors for each in group) for group in groups]
        self.seconds = groups[-1][-1].moment - groups[0][0].moment

    def is_flat(self):
        bound = max(GROWTH_KB, self.kb[0] * GROWTH_PERCENT // 100)
        return ((self.kb[-1] - self.kb[0] <= bound or not CAN_COMPARE_MEMORY) and
                self.descriptors[-1] - self.descriptors[0] <= GROWTH_DESCRIPTORS)


def comparisons(timeline):
    """Returns the comparisons of all daemons that were undisturbed long enough."""
    return [Comparison(life) for life in timeline.lives if len(life.samples) >= 2 * GROUP]
