"""The periods in which something was disturbed, and the lifetimes of the daemons. Times are monotonic."""

import threading
from dataclasses import dataclass, field

# What a fault may disturb: responses to requests, notifications, the daemon's records of unhealthy objects, or nothing.
REQUESTS, EVENTS, RECORDS = "requests", "events", "records"
NOTICED_S = 0.5  # until the exit of a daemon is noticed


@dataclass
class Disturbance:
    """A fault from its beginning until everything works again; `recovered` is None before that."""
    name: str
    begin: float
    disturbs: tuple
    over: float = None
    recovered: float = None

    def overlaps(self, begin, end):
        return self.begin <= end and (self.recovered is None or begin <= self.recovered)


@dataclass
class Life:
    """The lifetime of a daemon process."""
    pid: int
    begin: float
    end: float = None
    samples: list = field(default_factory=list)  # see vitals

    def contains(self, moment):
        return self.begin <= moment and (self.end is None or moment <= self.end)


class Timeline:
    def __init__(self):
        self.lock = threading.Lock()
        self.disturbances = []
        self.lives = []

    def begin_disturbance(self, disturbance):
        with self.lock:
            self.disturbances.append(disturbance)

    def begin_life(self, life):
        with self.lock:
            self.lives.append(life)

    def disturbing(self, what, begin, end):
        """Returns the names of the faults that disturbed something within a period."""
        with self.lock:
            return [each.name for each in self.disturbances if what in each.disturbs and each.overlaps(begin, end)]

    def is_disturbed(self, what, begin, end):
        return bool(self.disturbing(what, begin, end))

    def life_at(self, moment):
        """Returns the daemon that was running then, or None."""
        with self.lock:
            return next((life for life in reversed(self.lives) if life.contains(moment)), None)

    def life_ended(self, begin, end):
        with self.lock:
            return any(life.end is not None and begin <= life.end <= end for life in self.lives)

    def unexpected_exits(self, since):
        """Returns the daemons that exited later than this while nothing disturbed requests."""
        return [life for life in self.lives if life.end is not None and life.end > since and
                not self.is_disturbed(REQUESTS, life.end - NOTICED_S, life.end)]

    def latest_start(self, moment):
        """Returns the time at which the latest daemon up to a moment was started."""
        with self.lock:
            return max((life.begin for life in self.lives if life.begin <= moment), default=0)

    def undisturbed_s(self, begin, end):
        """Returns the number of seconds within a period in which nothing was disturbed."""
        total, now = 0, begin
        for each_begin, each_end in self.disturbed_periods():
            if each_begin > now:
                total += max(min(each_begin, end) - now, 0)
            now = max(now, each_end)
            if now >= end:
                return total
        return total + max(end - now, 0)

    def undisturbed_before(self, moment, seconds):
        """Returns the moment that is a number of undisturbed seconds before another."""
        now = moment
        for begin, end in reversed(self.disturbed_periods()):
            if begin >= now:
                continue
            undisturbed = max(now - min(end, now), 0)
            if undisturbed >= seconds:
                return now - seconds
            seconds -= undisturbed
            now = begin
        return now - seconds

    def disturbed_periods(self):
        """Returns (begin, end) of the disturbed periods in order, without overlaps."""
        with self.lock:
            periods = sorted((each.begin, each.recovered if each.recovered is not None else float("inf"))
                             for each in self.disturbances if each.disturbs)
        merged = []
        for begin, end in periods:
            if merged and begin <= merged[-1][1]:
                merged[-1] = (merged[-1][0], max(merged[-1][1], end))
            else:
                merged.append((begin, end))
        return merged
