"""Counts of the clients, and possible violations. Violations are judged at the end, when it is known what was disturbed
and which values the array had."""

import threading
from collections import Counter, namedtuple

from harness import waiting

# kind: one of those below. oid, read: of the value, if it may be wrong.
Violation = namedtuple("Violation", "kind client sent ended text oid read", defaults=(None, None))

KINDS = UNANSWERED, SLOW, VALUE, MISSING, ORDER, MALFORMED, GENERR, BROKEN = (
    "unanswered", "slow", "value", "missing", "order", "malformed", "genErr", "broken")
SLOW_S = 0.3 * waiting.PATIENCE  # slower responses are recorded
KEPT = 20000  # violations of each kind; more are only counted


class ViolationLog:
    def __init__(self):
        self.lock = threading.Lock()
        self.counts = Counter()  # by (client, what)
        self.kept = {kind: [] for kind in KINDS}
        self.dropped = Counter()  # by kind

    def count(self, client, what, number=1):
        with self.lock:
            self.counts[client, what] += number

    def clients(self):
        return sorted({client for client, _ in self.counts})

    def add(self, violation):
        with self.lock:
            if len(self.kept[violation.kind]) < KEPT:
                self.kept[violation.kind].append(violation)
            else:
                self.dropped[violation.kind] += 1
