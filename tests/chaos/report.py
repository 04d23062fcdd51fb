"""What a run has found, for people; and the verdict."""

from collections import Counter

from harness import daemon

from . import ledger, vitals
from .notices import Mark
from .states import Change
from .statusJudge import Finding, StatusJudge

SHOWN = 5  # examples of each fault that was found
FEW_PERCENT = 1
REFUSED_BY_RIGHT = ("setter",)  # no notification can be asked for in the last row of a full table


class Report:
    def __init__(self, world, began):
        self.world, self.began = world, began
        self.notices = world.notices.summary()
        self.statuses = StatusJudge(world.states, world.history, world.notices)
        self.comparisons = vitals.comparisons(world.timeline)
        self.faulty = {kind: world.judge.faulty(kind) for kind in ledger.KINDS}
        self.problems = []

    def must_be_none(self, what, found):
        """Takes what was found into the list of what is wrong; how many for the table."""
        if found:
            shown = "\n".join(f"      {self.text(each)}" for each in found[:SHOWN])
            more = f"\n      and {len(found) - SHOWN} more" if len(found) > SHOWN else ""
            self.problems.append(f"   {what}: {len(found)}\n{shown}{more}")
        return len(found)

    def text(self, found):
        if isinstance(found, ledger.Doubt):
            return f"{found.sent - self.began:.1f} s, {found.client}: {found.text}"
        if isinstance(found, Mark):
            return f"{found.told - self.began:.1f} s, text {found.number}: received {found.came} times"
        if isinstance(found, Change):
            how = "" if found.told else ", without an event"
            until = f"{found.until - self.began:.1f} s" if found.until else "the end"
            return (f"{found.begin - self.began:.1f} s, '{found.subject.name}' to status {found.status}{how}, "
                    f"until {until}: no trap {found.subject.number}; before: {self.statuses.came_before(found)}")
        if isinstance(found, Finding):
            return f"{found.moment - self.began:.1f} s, {found.text}"
        return str(found)

    def line(self, what, *cells):
        print(f"   {what:44} " + "  ".join(str(cell) for cell in cells), flush=True)

    # --- its parts

    def show_requests(self):
        print(f"\n-- requests\n   {'':22} {'asked':>8} {'answered':>9} {'no answer':>10} {'explained':>10} "
              f"{'genErr':>7} {'walks':>6} {'values':>9} {'slowest':>9}")
        book = self.world.book
        unanswered = book.all(ledger.UNANSWERED)
        for client in book.clients():
            own = [doubt for doubt in unanswered if doubt.client == client]
            explained = sum(self.world.judge.is_explained(doubt) for doubt in own)
            print(f"   {client:22} {book.of(client, 'asked') + book.of(client, 'scribbled'):8} "
                  f"{book.of(client, 'answered'):9} {len(own):10} {explained:10} {book.of(client, 'genErr'):7} "
                  f"{book.of(client, 'walks'):6} {book.of(client, 'values'):9} {self.slowest(client):>9}")
        self.line("without an answer and without an outage", self.must_be_none(
            "requests without an answer though nothing was disturbed", self.faulty[ledger.UNANSWERED]))
        self.line("wrong values", self.must_be_none("values that the array did not have", self.faulty[ledger.VALUE]))
        self.line("missing in walks", self.must_be_none("instances missing in a walk", self.faulty[ledger.MISSING]))
        self.line("answers out of order", self.must_be_none("answers out of order", self.faulty[ledger.ORDER]))
        self.line("answers that are no SNMP", self.must_be_none("malformed answers", self.faulty[ledger.MALFORMED]))
        self.must_be_none("the run itself broke", self.faulty[ledger.BROKEN])
        self.must_be_none("kinds of doubt that were too many to be judged",
                          [kind for kind in ledger.KINDS if book.beyond(kind)])
        # A request that comes just while the daemon waits for the master's answer is refused or repeated.
        self.check_share("genErr without an outage", ledger.REFUSED, "genErr")
        self.check_share("slow without an outage", ledger.SLOW, "slow")

    def check_share(self, title, kind, what):
        few = [doubt for doubt in self.faulty[kind] if kind == ledger.SLOW or doubt.client not in REFUSED_BY_RIGHT]
        answered = sum(self.world.book.of(client, "answered") for client in self.world.book.clients())
        self.line(title, f"{len(few)} of {answered} answers")
        if len(few) * 100 > answered * FEW_PERCENT:
            self.must_be_none(f"more than {FEW_PERCENT} % of all answers were {what}", few)

    def slowest(self, client):
        """Answer while nothing was disturbed."""
        seconds = [doubt.ended - doubt.sent for doubt in self.faulty[ledger.SLOW] if doubt.client == client]
        return f"{max(seconds):.1f} s" if seconds else f"< {ledger.SLOW_S} s"

    def show_notifications(self):
        print("\n-- notifications")
        found = self.notices
        self.line("received, of all kinds", found["received"])
        self.line("texts told / taken / received", f"{found['told']} / {found['taken']} / {found['came']}")
        self.line("   gone with a daemon that ended", found["gone"])
        self.line("   lost", self.must_be_none("notifications lost", found["lost"]))
        self.line("   received twice", self.must_be_none("notifications received twice", found["twice"]))
        self.show_statuses()
        lives = len(self.world.timeline.lives)
        self.line("cold starts / daemons", f"{found['cold starts']} / {lives}")
        self.must_be_none("cold starts without a daemon", range(lives, found["cold starts"]))
        self.line("datagrams that are no notification",
                  self.must_be_none("datagrams that are no notification", found["strange"]))

    def show_statuses(self):
        judge, states = self.statuses, self.world.states
        silent = sum(not change.told for change in judge.due)
        self.line("changes of status / due / received",
                  f"{len(states.changes)} / {len(judge.due)} / {len(judge.due) - len(judge.lost)}",
                  f"({silent} due by a re-check alone)")
        self.must_be_none("changes of status not notified", judge.lost)
        self.line("notifications about objects", len(judge.notices), "by number: " + ", ".join(
            f"{number} {count}" for number, count in sorted(Counter(each.number for each in judge.notices).items())))
        self.line("   of a state that the object did not have",
                  self.must_be_none("notifications of a wrong state", judge.wrong))
        self.line("   repeated without news", self.must_be_none("notifications repeated without news", judge.repeated))
        self.line("   repeated every minute",
                  self.must_be_none("objects notified every minute without end", judge.endless))
        self.line("rows came, went or moved", sum(map(len, states.moves.values())))

    def show_processes(self):
        watch = self.world.watch
        print("\n-- processes")
        self.line("restarts of the daemon", len(self.world.timeline.lives) - 1,
                  f"(the supervisor started it {watch.starts - 1} times, not always with success)")
        self.line("restarts of snmpd", len(watch.snmpds) - 1)
        self.line("ends of a daemon without a cause", self.must_be_none(
            "daemons that ended while nothing was disturbed",
            [f"{life.end - self.began:.1f} s: daemon {life.pid}"
             for life in self.world.timeline.ended_by_themselves(self.world.served_since)]))
        self.line("crashes", self.must_be_none("processes that crashed", watch.crashes()))
        self.line("sanitizer reports", self.must_be_none("sanitizer reports", self.sanitizer_reports()))
        print(f"   {'':44} {'descriptors':12} memory in kB")
        for each in self.comparisons:
            descriptors = f"{each.descriptors[0]} -> {each.descriptors[-1]}"
            print(f"   {f'daemon {each.life.pid}, over {each.seconds:.0f} calm and other seconds':44} {descriptors:12} "
                  f"{' -> '.join(map(str, each.kb))}")
        self.must_be_none("daemons that grow", [
            f"daemon {each.life.pid}: {each.kb} kB, {each.descriptors} descriptors; allowed are {vitals.GROWTH_KB} kB "
            f"or {vitals.GROWTH_PERCENT} %, and {vitals.GROWTH_DESCRIPTORS} descriptors"
            for each in self.comparisons if not each.is_flat()])
        if not self.comparisons:
            self.problems.append("   no daemon was calm for long enough to compare its memory")

    @staticmethod
    def sanitizer_reports():
        try:
            daemon.Daemon.check_sanitizers()
        except AssertionError as error:
            return [str(error)]
        return []

    def show(self):
        """Prints everything. Whether all is as it must be."""
        self.show_requests()
        self.show_notifications()
        self.show_processes()
        self.must_be_none("what had to hold after a fault", self.world.failures)
        if self.problems:
            print("\n-- WRONG\n" + "\n".join(self.problems), flush=True)
        return not self.problems
