"""What the clients have counted, and what seemed wrong to them. Judged at the end, when it is known what was disturbed
and what the array's values were."""

import threading
from collections import Counter, namedtuple

from harness import waiting

# kind: one of those below. oid, read: of a doubtful value.
Doubt = namedtuple("Doubt", "kind client sent ended text oid read", defaults=(None, None))

KINDS = UNANSWERED, SLOW, VALUE, MISSING, ORDER, MALFORMED, REFUSED, BROKEN = (
    "unanswered", "slow", "value", "missing", "order", "malformed", "refused", "broken")
SLOW_S = 0.3 * waiting.PATIENCE  # an answer that took longer is remembered
KEPT = 20000  # of each kind; more are only counted


class Ledger:
    def __init__(self):
        self.lock = threading.Lock()
        self.counts = Counter()  # by (client, what)
        self.doubts = []
        self.doubted = Counter()

    def count(self, client, what, number=1):
        with self.lock:
            self.counts[client, what] += number

    def of(self, client, what):
        return self.counts[client, what]

    def clients(self):
        return sorted({client for client, _ in self.counts})

    def doubt(self, doubt):
        with self.lock:
            self.doubted[doubt.kind] += 1
            if self.doubted[doubt.kind] <= KEPT:
                self.doubts.append(doubt)

    def all(self, kind):
        with self.lock:
            return [doubt for doubt in self.doubts if doubt.kind == kind]

    def beyond(self, kind):
        """How many were counted and not kept."""
        return max(self.doubted[kind] - KEPT, 0)
