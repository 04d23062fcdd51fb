"""Lets the faults of a plan strike, one after the other, and waits after each until all is well again."""

import time

from .faults.kind import pause_until
from .timeline import Disturbance


class Director:
    def __init__(self, world, plan, say):
        self.world, self.plan, self.say = world, plan, say
        self.struck = []  # (planned, disturbance)
        self.began = time.monotonic()

    def run(self, end):
        """No fault begins that would not be over at the end. Ends early when the daemon does not come back."""
        for number, planned in enumerate(self.plan, 1):
            if time.monotonic() + planned.pause_s + planned.seconds > end:
                return
            pause_until(self.world, time.monotonic() + planned.pause_s)
            if not self.strike(number, planned):
                return

    def strike(self, number, planned):
        disturbance = Disturbance(planned.kind.name, time.monotonic(), planned.kind.disturbs)
        self.world.timeline.begin_disturbance(disturbance)
        self.struck.append((planned, disturbance))
        try:
            with planned.kind.strike(self.world, planned.words):
                pause_until(self.world, time.monotonic() + planned.seconds)
            disturbance.over = time.monotonic()
            self.world.wait_until_well()
        except (AssertionError, OSError) as error:
            self.world.failures.append(f"{planned.text()}: {error}")
            self.say(number, planned, disturbance, "NEVER")
            return False
        disturbance.recovered = time.monotonic()
        self.say(number, planned, disturbance, f"{disturbance.recovered - disturbance.over:.1f} s")
        return True
