"""What daemons hold: memory and descriptors, taken while nothing disturbs."""

import os
import statistics
import time
from collections import namedtuple

from . import processes
from .timeline import EVENTS, REQUESTS

Sample = namedtuple("Sample", "moment resident_kb descriptors")

# A daemon has served everything and refreshed most of its tables when it is so old, and has let go of what a fault
# made it hold so long after.
AGE_S = 15
CALM_S = 3
GROUP = 5  # samples that are taken together: single ones meet a refresh or a self-test under way
# The store is laid out at the start and never grows; texts in it do, to the longest that there was, and the allocator
# keeps what the largest answer and the longest queue took. Both are bounded; a leak is not.
GROWTH_KB = 6144
GROWTH_PERCENT = 10
GROWTH_DESCRIPTORS = 2
# A sanitizer keeps what was given back, to see who uses it all the same: its memory says nothing of the daemon's.
IS_MEMORY_ITS_OWN = "SNMPSUBAGENT_SANITIZED" not in os.environ


def sample(life, timeline):
    now = time.monotonic()
    if now - life.begin < AGE_S or any(timeline.is_disturbed(what, now - CALM_S, now) for what in (REQUESTS, EVENTS)):
        return
    try:
        life.samples.append(Sample(now, processes.resident_kb(life.pid), processes.descriptors(life.pid)))
    except (OSError, StopIteration):
        pass  # it has just ended


class Comparison:
    """A life's first calm moments against its last, with some between them: what fills up once rises and stays."""

    BETWEEN = 3

    def __init__(self, life):
        self.life = life
        starts = [(len(life.samples) - GROUP) * part // (self.BETWEEN + 1) for part in range(self.BETWEEN + 2)]
        groups = [life.samples[start:start + GROUP] for start in starts]
        self.kb = [int(statistics.median(each.resident_kb for each in group)) for group in groups]
        self.descriptors = [min(each.descriptors for each in group) for group in groups]
        self.seconds = groups[-1][-1].moment - groups[0][0].moment

    def is_flat(self):
        bound = max(GROWTH_KB, self.kb[0] * GROWTH_PERCENT // 100)
        return ((self.kb[-1] - self.kb[0] <= bound or not IS_MEMORY_ITS_OWN) and
                self.descriptors[-1] - self.descriptors[0] <= GROWTH_DESCRIPTORS)


def comparisons(timeline):
    """Of all lives that were calm long enough to be looked at twice."""
    return [Comparison(life) for life in timeline.lives if len(life.samples) >= 2 * GROUP]
