"""The definition of a kind of fault."""

import time
from dataclasses import dataclass
from typing import Callable

from ..timeline import EVENTS, REQUESTS

BOTH = (REQUESTS, EVENTS)
NOTHING = ()


@dataclass(frozen=True)
class Kind:
    """draw: returns random arguments of a fault. inject: a context manager that injects the fault with these arguments
    and ends it. disturbs: what it may disturb. restarts: whether the daemon exits. seconds: minimum and maximum
    duration. recovery_s: time for recovery, for the plan."""
    name: str
    draw: Callable
    inject: Callable
    disturbs: tuple = BOTH
    restarts: bool = False
    seconds: tuple = (2, 5)
    recovery_s: float = 5


def no_arguments(_):
    return ()


def draw_end(random):
    return (random.choice(("SIGTERM", "SIGKILL")),)


def pause_until(testbed, end):
    """Sleeps until a moment, at most until the end of the run."""
    testbed.stopping.wait(max(end - time.monotonic(), 0))
