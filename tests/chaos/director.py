"""Injects the faults of a plan one after the other, and waits after each until everything works again."""

import time

from .faults.kind import pause_until
from .timeline import Disturbance


class Director:
    def __init__(self, world, plan, say):
        self.world, self.plan, self.say = world, plan, say

    def run(self, end):
        """Begins no fault that would last beyond the end of its part. Returns early if the daemon does not recover."""
        reserve = self.plan.closing.whole_s() if self.plan.closing else 0
        if (self.strike_all(self.plan.bearable, time.monotonic() + self.plan.bearable_s) and
                self.strike_all(self.plan.any, end - reserve) and self.plan.closing):
            self.strike(self.plan.closing)

    def strike_all(self, faults, end):
        """Returns whether everything worked after each."""
        return all(self.strike(planned) for planned in faults if time.monotonic() + planned.whole_s() <= end)

    def strike(self, planned):
        """Returns whether everything worked afterwards."""
        pause_until(self.world, time.monotonic() + planned.pause_s)
        self.world.struck = None
        disturbance = Disturbance(planned.kind.name, time.monotonic(), planned.kind.disturbs)
        self.world.timeline.begin_disturbance(disturbance)
        try:
            with planned.kind.strike(self.world, planned.words):
                pause_until(self.world, time.monotonic() + planned.seconds)
            disturbance.over = time.monotonic()
            self.world.wait_until_well()
        except (AssertionError, OSError) as error:
            self.world.failures.append(f"{planned.text()}: {error}")
            self.say(planned, disturbance, "NEVER")
            return False
        disturbance.recovered = time.monotonic()
        self.say(planned, disturbance, f"{disturbance.recovered - disturbance.over:.1f} s")
        return True
