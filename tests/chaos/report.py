"""Prints what a run has found, and the verdict."""

from collections import Counter

from harness import daemon

from . import violations, vitals
from .notices import Mark
from .states import Change
from .notificationChecks import Finding, NotificationChecks
from .violations import MALFORMED, MISSING, ORDER, GENERR, SLOW, UNANSWERED, VALUE, Violation

SHOWN = 5  # examples of each problem
FEW_PERCENT = 1
MAY_GET_GENERR = ("setter",)  # a notification for the last row of a full table cannot be requested
CLIENT_COLUMNS = ("requested", "answered", "genErr", "walks", "values")


class Report:
    def __init__(self, testbed, began):
        self.testbed, self.began = testbed, began
        self.notices = testbed.notices.summary()
        self.statuses = NotificationChecks(testbed.states, testbed.history, testbed.notices)
        self.confirmed = {kind: testbed.checks.confirmed(kind) for kind in violations.KINDS}
        self.problems = []

    def line(self, what, *cells):
        print(f"   {what:54} " + "  ".join(str(cell) for cell in cells), flush=True)

    def must_be_none(self, what, found):
        """Prints how many there are, and adds them to the problems."""
        self.line(what, len(found))
        if found:
            shown = "\n".join(f"      {self.text(each)}" for each in found[:SHOWN])
            more = f"\n      and {len(found) - SHOWN} more" if len(found) > SHOWN else ""
            self.problems.append(f"   {what}: {len(found)}\n{shown}{more}")

    def text(self, found):
        if isinstance(found, Violation):
            return f"{found.sent - self.began:.1f} s, {found.client}: {found.text}"
        if isinstance(found, Mark):
            return f"{found.sent - self.began:.1f} s, string {found.number}: notified {found.notified} times"
        if isinstance(found, Change):
            until = f"{found.until - self.began:.1f} s" if found.until else "the end"
            return (f"{found.begin - self.began:.1f} s, '{found.subject.name}' to status {found.status}"
                    f"{'' if found.reported else ', without an event'}, until {until}: no trap {found.subject.number}; "
                    f"before: {self.statuses.previous(found)}")
        if isinstance(found, Finding):
            return f"{found.moment - self.began:.1f} s, {found.text}"
        return str(found)

    def show_requests(self):
        counts = self.testbed.log.counts
        print("\n-- requests")
        self.line("", *(f"{what:>8}" for what in CLIENT_COLUMNS))
        for client in self.testbed.log.clients():
            self.line(client, *(f"{counts[client, what]:8}" for what in CLIENT_COLUMNS))
        self.line("unanswered requests, excused ones included", len(self.testbed.log.kept[UNANSWERED]))
        for kind, what in ((UNANSWERED, "unanswered requests while nothing was disturbed"),
                           (VALUE, "values that the array did not have"), (MISSING, "instances missing in a walk"),
                           (ORDER, "responses out of order"), (MALFORMED, "malformed responses"),
                           (violations.BROKEN, "exceptions in the run itself")):
            self.must_be_none(what, self.confirmed[kind])
        self.must_be_none("kinds of violation that are too many to check", list(self.testbed.log.dropped))
        # A request that arrives while the daemon waits for the master agent is rejected or repeated.
        answered = sum(counts[client, "answered"] for client in self.testbed.log.clients())
        for kind, what in ((GENERR, "genErr"), (SLOW, "slow")):
            few = [each for each in self.confirmed[kind] if kind == SLOW or each.client not in MAY_GET_GENERR]
            self.line(f"{what} while nothing was disturbed", f"{len(few)} of {answered} responses")
            self.must_be_none(f"more than {FEW_PERCENT} % of all responses were {what}",
                              few if len(few) * 100 > answered * FEW_PERCENT else [])

    def show_notifications(self):
        checks, states, found = self.statuses, self.testbed.states, self.notices
        print("\n-- notifications")
        self.line("received, of all kinds", found["received"])
        self.line("strings sent / accepted / notified / lost on exit",
                  f"{found['sent']} / {found['accepted']} / {found['notified']} / {found['lost on exit']}")
        self.must_be_none("notifications lost", found["lost"])
        self.must_be_none("notifications received twice", found["twice"])
        self.line("changes of status / due / due by a re-check alone", f"{len(states.changes)} / {len(checks.due)} / "
                  f"{sum(not change.reported for change in checks.due)}")
        self.line("notifications about objects", len(checks.notices), "by number: " + ", ".join(
            f"{number} {count}" for number, count in sorted(Counter(each.number for each in checks.notices).items())))
        self.must_be_none("changes of status not notified", checks.lost)
        self.must_be_none("notifications with a wrong state", checks.wrong)
        self.must_be_none("notifications repeated without a change", checks.repeated)
        self.must_be_none("objects notified every minute endlessly", checks.endless)
        self.line("rows added, removed or moved", sum(map(len, states.moves.values())))
        lives = len(self.testbed.timeline.lives)
        self.must_be_none("cold starts without a daemon", range(lives, found["cold starts"]))
        self.must_be_none("datagrams that are not a notification", found["malformed"])

    def show_processes(self):
        watch, timeline = self.testbed.watch, self.testbed.timeline
        print("\n-- processes")
        self.line("restarts of the daemon / of snmpd", f"{len(timeline.lives) - 1} / {len(watch.snmpds) - 1}",
                  f"(the supervisor started the daemon {watch.starts - 1} times)")
        self.must_be_none("daemons that exited while nothing was disturbed",
                          [f"{life.end - self.began:.1f} s: daemon {life.pid}"
                           for life in timeline.unexpected_exits(self.testbed.served_since)])
        self.must_be_none("processes that crashed", watch.crashes())
        self.must_be_none("sanitizer reports", self.sanitizer_reports())
        growing, comparisons = [], vitals.comparisons(timeline)
        for each in comparisons:
            text = (f"daemon {each.life.pid} within {each.seconds:.0f} s: {each.kb[0]} -> {each.kb[-1]} kB, "
                    f"{each.descriptors[0]} -> {each.descriptors[-1]} descriptors")
            print(f"   {text}")
            growing += [] if each.is_flat() else [text]
        self.must_be_none("daemons that grow", growing)
        if not comparisons:
            self.problems.append("   no daemon was undisturbed long enough to compare its memory")

    @staticmethod
    def sanitizer_reports():
        try:
            daemon.Daemon.check_sanitizers()
        except AssertionError as error:
            return [str(error)]
        return []

    def show(self):
        """Prints all results. Returns whether there is no problem."""
        self.show_requests()
        self.show_notifications()
        self.show_processes()
        self.must_be_none("conditions that did not hold after a fault", self.testbed.failures)
        if self.problems:
            print("\n-- PROBLEMS\n" + "\n".join(self.problems), flush=True)
        return not self.problems
