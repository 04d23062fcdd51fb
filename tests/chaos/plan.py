"""Which faults strike, in which order: from a seed alone, so that a run can be repeated."""

import random
from dataclasses import dataclass

from .faults import ALL
from .faults.kind import Kind

PAUSE_S = (1, 4)
CLOCK = "the clock steps"


@dataclass(frozen=True)
class Planned:
    kind: Kind
    words: tuple
    pause_s: float  # ahead of it, when all is well
    seconds: float

    def text(self):
        words = f" ({' '.join(self.words)})" if self.words else ""
        return f"{self.kind.name}{words}"

    def whole_s(self):
        return self.pause_s + self.seconds + self.kind.recovery_s


def planned(generator, kind):
    return Planned(kind, tuple(kind.draw(generator)), round(generator.uniform(*PAUSE_S), 1),
                   round(generator.uniform(*kind.seconds), 1))


@dataclass(frozen=True)
class Plan:
    """More faults than there may be time for, and one for the end, however short the run is; None when none fits."""
    faults: list
    closing: Planned


def make(seed, seconds, has_clock=True, only=""):
    """For a run of so many seconds. Rounds with one of each kind; those that end the daemon come last in each, so that
    one daemon is seen under all others. only: what their names hold."""
    generator = random.Random(f"{seed} plan")
    kinds = [kind for kind in ALL if only in kind.name and (has_clock or kind.name != CLOCK)]
    fitting = [fault for fault in drawn(generator, kinds) if fault.kind.restarts and fault.whole_s() <= seconds / 2]
    found = []
    while kinds and sum(fault.pause_s + fault.seconds for fault in found) < seconds:
        found += sorted(drawn(generator, kinds), key=lambda each: each.kind.restarts)
    return Plan(found, fitting[0] if fitting else None)


def drawn(generator, kinds):
    """One of each kind, in any order."""
    return [planned(generator, kind) for kind in generator.sample(kinds, len(kinds))]
