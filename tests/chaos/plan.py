"""The faults of a run and their order, derived from a seed alone so that a run can be repeated."""

import random
from dataclasses import dataclass

from .faults import ALL
from .faults.kind import Kind

PAUSE_S = (1, 4)
CLOCK = "the clock steps"
EXITS_S, EXITS_SHARE = 600, 0.4  # length of the part in which daemons exit, and its maximum share of a run


@dataclass(frozen=True)
class Planned:
    kind: Kind
    words: tuple
    pause_s: float  # before it, while everything works
    seconds: float

    def text(self):
        words = f" ({' '.join(self.words)})" if self.words else ""
        return f"{self.kind.name}{words}"

    def total_s(self):
        return self.pause_s + self.seconds + self.kind.recovery_s


def planned(generator, kind):
    return Planned(kind, tuple(kind.draw(generator)), round(generator.uniform(*PAUSE_S), 1),
                   round(generator.uniform(*kind.seconds), 1))


@dataclass(frozen=True)
class Plan:
    """At least as many faults for each part as there is time for, and one for the end of the run (None if none fits).
    The daemon survives the faults in `bearable`; after bearable_s, any may be injected."""
    bearable: list
    bearable_s: float
    any: list
    closing: Planned


def make(seed, seconds, has_clock=True, only=""):
    """Plans a run of a number of seconds, in rounds with each kind once. only: a string in the names of the kinds."""
    generator = random.Random(f"{seed} plan")
    kinds = [kind for kind in ALL if only in kind.name and (has_clock or kind.name != CLOCK)]
    bearable = [kind for kind in kinds if not kind.restarts]
    fitting = [fault for fault in drawn(generator, kinds) if fault.kind.restarts and fault.total_s() <= seconds / 2]
    if not bearable:
        bearable_s = 0
    elif bearable == kinds:
        bearable_s = seconds
    else:
        bearable_s = seconds - min(EXITS_S, seconds * EXITS_SHARE)
    return Plan(rounds(generator, bearable, bearable_s), bearable_s, rounds(generator, kinds, seconds - bearable_s),
                fitting[0] if fitting else None)


def rounds(generator, kinds, seconds):
    """Returns enough rounds for a number of seconds, even if recovery takes no time."""
    found = []
    while kinds and sum(fault.pause_s + fault.seconds for fault in found) < seconds:
        found += drawn(generator, kinds)
    return found


def drawn(generator, kinds):
    """Returns one fault of each kind, in random order."""
    return [planned(generator, kind) for kind in generator.sample(kinds, len(kinds))]
