"""The definition of a kind of fault."""

import time
from dataclasses import dataclass
from typing import Callable

from ..timeline import EVENTS, REQUESTS

BOTH = (REQUESTS, EVENTS)
NOTHING = ()


@dataclass(frozen=True)
class Kind:
    """draw: makes the words of a fault of this kind from a random generator. strike: a context manager that does it to
    the world, given these words, and undoes it. disturbs: what it may take away; nothing else may suffer.
    restarts: the daemon ends by it. seconds: between which it lasts. recovery_s: what may follow, for the plan."""
    name: str
    draw: Callable
    strike: Callable
    disturbs: tuple = BOTH
    restarts: bool = False
    seconds: tuple = (2, 5)
    recovery_s: float = 5


def no_words(_):
    return ()


def draw_end(random):
    return (random.choice(("SIGTERM", "SIGKILL")),)


def pause_until(world, end):
    """Sleeps until a moment, at most until the end of the run."""
    world.stopping.wait(max(end - time.monotonic(), 0))
