"""Injects the faults of a plan one after the other. After each, waits until everything works again."""

import time

from .faults.kind import pause_until
from .timeline import Disturbance


class Director:
    def __init__(self, testbed, plan, say):
        self.testbed, self.plan, self.say = testbed, plan, say

    def run(self, end):
        """Injects no fault that would last beyond the end of its part. Returns early if the daemon does not recover."""
        reserve = self.plan.closing.total_s() if self.plan.closing else 0
        if (self.inject_all(self.plan.bearable, time.monotonic() + self.plan.bearable_s) and
                self.inject_all(self.plan.any, end - reserve) and self.plan.closing):
            self.inject(self.plan.closing)

    def inject_all(self, faults, end):
        """Injects the faults one after the other. Returns whether everything worked after each fault."""
        return all(self.inject(planned) for planned in faults if time.monotonic() + planned.total_s() <= end)

    def inject(self, planned):
        """Returns whether everything worked afterwards."""
        pause_until(self.testbed, time.monotonic() + planned.pause_s)
        self.testbed.affected = None
        disturbance = Disturbance(planned.kind.name, time.monotonic(), planned.kind.disturbs)
        self.testbed.timeline.begin_disturbance(disturbance)
        try:
            with planned.kind.inject(self.testbed, planned.words):
                pause_until(self.testbed, time.monotonic() + planned.seconds)
            disturbance.over = time.monotonic()
            self.testbed.wait_until_well()
        except (AssertionError, OSError) as error:
            self.testbed.failures.append(f"{planned.text()}: {error}")
            self.say(planned, disturbance, "NEVER")
            return False
        disturbance.recovered = time.monotonic()
        self.say(planned, disturbance, f"{disturbance.recovered - disturbance.over:.1f} s")
        return True
