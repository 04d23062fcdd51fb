"""Checks the checks of a chaos run: each finds a planted violation, and excuses no more than it must."""

import contextlib
import io
import os
import sys
import threading
import time
import unittest
from unittest import mock

sys.path[:0] = [os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", *more) for more in ((), ("system",))]
from chaos import ledger, plan, snmp  # noqa: E402  (found through the line above)
from chaos.history import STALE_S, History, Lie  # noqa: E402
from chaos.judge import Judge  # noqa: E402
from chaos.notices import Mark, Notice, Notices  # noqa: E402
from chaos.report import Report  # noqa: E402
from chaos.states import States, Subject  # noqa: E402
from chaos.timeline import EVENTS, RECORDS, REQUESTS, Disturbance, Life, Timeline  # noqa: E402
from chaos.vitals import Sample  # noqa: E402
from chaos.watch import Ended, Watch  # noqa: E402
from harness import daemon, mib  # noqa: E402
from harness.manager import Binding  # noqa: E402

MODEL, SECOND = mib.oid("tsUPSName", 1), mib.oid("tsUPSName", 2)
NOW = 5000
UP, DOWN, DEGRADED = 1, 2, 3
ONE = Subject(212, "one")


def objects(*names, status="Up", enclosure="Up", part="Up"):
    """UPSs with these names, of which the first has a status, and an enclosure with a power supply."""
    return {"TsUps": [{"Index": str(index), "Name": name, "Status": status if name == "one" else "Up",
                       "BatteryLife": "5", "StatusDescription": ""} for index, name in enumerate(names, 2)],
            "Tessera": [{"ManagementIp": "192.0.2.1", "Name": "a", "Contact": "b", "Location": "c",
                         "PortsBalanced": "True"}],
            "TsController": [{"Index": "2", "Name": "A", "Status": "Up", "IpAddress": "192.0.2.2"}],
            "TsEnclosure": [{"Index": "7", "Name": "E", "Status": enclosure}],
            "TsEnclosurePowerSupply": [{"Index": "8", "EnclosureIndex": "7", "Name": "P", "Position": "1",
                                        "Status": part}]}


class Books:
    """The books of a run without a violation: one daemon, which was calm, and an array in which nothing happened."""

    def __init__(self):
        self.timeline, self.book, self.failures, self.served_since = Timeline(), ledger.Ledger(), [], 10
        self.timeline.begin_life(Life(1, 0, samples=[Sample(moment, 20000, 12) for moment in range(20)]))
        self.states = States()
        self.history = History(self.timeline, self.states)
        nothing_comes = mock.Mock(take_datagram=lambda _: threading.Event().wait())
        self.judge, self.notices = Judge(self.history, self.book), Notices(self.timeline, nothing_comes)
        self.own_kills, self.watch, self.sanitizer_reports = {70}, Watch(self), []
        self.become(0)
        self.book.count("x", "answered", 100)

    def become(self, moment, *names, told=True, **statuses):
        found = objects(*(names or ("one", "two")), **statuses)
        self.history.record(found, moment)
        self.states.record(found, moment, told)
        return self

    def disturb(self, *what, begin=95, end=102):
        self.timeline.begin_disturbance(Disturbance("x", begin, what, end - 1, end))
        return self

    def restart(self, moment, *disturbed):
        self.timeline.lives[-1].end = moment
        self.timeline.begin_life(Life(2, moment))
        return self.disturb(*(disturbed or (REQUESTS,)), begin=moment - 1, end=moment + 1)

    def lie(self, moment):
        self.history.add_lie(Lie("TsUps", moment, values=(b"lie",)))
        self.history.lies[-1].end = moment + 5
        return self

    def hear(self, moment, status=DOWN, state=2, text="UPS 'one' is down", name="one", cell=b"one"):
        """A notification about a UPS."""
        self.notices.about_objects.append(Notice(moment, 212, (212, name), status, state, text,
                                                 [(MODEL, ("STRING", cell))]))
        return self

    def hear_up(self, moment):
        return self.hear(moment, UP, 1, "Alert Cleared - UPS 'one' is up")

    def down(self, moment=1000):
        """A UPS fails, and the notification comes."""
        return self.become(moment, status="Down").hear(moment + 1)

    def doubt(self, kind, client="x", times=1):
        for _ in range(times):
            self.book.doubt(ledger.Doubt(kind, client, 100, 101, "text", SECOND, ("STRING", b"three")))
        return self

    def mark(self, taken, came=0):
        self.notices.marks[1] = Mark(1, 0, taken, came)
        return self

    def walk_without(self, *oids):
        seen = {oid for oid in self.history.oids() if not self.history.allows(oid, None, 100, 101)} - set(oids)
        self.judge.complete("x", snmp.Exchange(100, 101, None), seen)
        return self

    def sampled(self, kilobytes, descriptors):
        self.timeline.lives[0].samples[-5:] = [Sample(moment, kilobytes, descriptors) for moment in range(5)]
        return self

    def check_sanitizers(self):
        if self.sanitizer_reports:
            raise AssertionError(self.sanitizer_reports)

    def do(self, target, method, *arguments):
        getattr(target, method)(*arguments)
        return self


# What is planted, and the first words of what the verdict must say; None: it is explained.
PLANTED = (
    (lambda b: b, None),
    (lambda b: b.doubt(ledger.UNANSWERED), "requests without an answer"),
    (lambda b: b.doubt(ledger.UNANSWERED).disturb(REQUESTS), None),
    (lambda b: b.doubt(ledger.UNANSWERED).disturb(EVENTS, RECORDS), "requests without an answer"),
    (lambda b: b.doubt(ledger.VALUE), "values that the array did not have"),
    (lambda b: b.walk_without(), None),
    (lambda b: b.walk_without(SECOND), "instances missing in a walk"),
    (lambda b: b.doubt(ledger.ORDER), "answers out of order"),
    (lambda b: b.doubt(ledger.MALFORMED), "malformed answers"),
    (lambda b: b.doubt(ledger.BROKEN), "the run itself broke"),
    (lambda b: b.disturb(REQUESTS).doubt(ledger.UNANSWERED, times=ledger.KEPT + 1), "kinds of doubt that were too"),
    (lambda b: b.doubt(ledger.REFUSED), None),
    (lambda b: b.doubt(ledger.REFUSED, times=2), "more than 1 % of all answers were genErr"),
    (lambda b: b.doubt(ledger.REFUSED, client="setter", times=9), None),
    (lambda b: b.doubt(ledger.SLOW), None),
    (lambda b: b.doubt(ledger.SLOW, times=2), "more than 1 % of all answers were slow"),
    (lambda b: b.doubt(ledger.SLOW, times=2).disturb(REQUESTS), None),
    # texts
    (lambda b: b.mark(50, came=1), None),
    (lambda b: b.mark(50, came=2), "notifications received twice"),
    (lambda b: b.mark(50), "notifications lost"),
    (lambda b: b.mark(95).disturb(REQUESTS, end=120), "notifications lost"),
    (lambda b: b.mark(95).disturb(REQUESTS, end=120).restart(135), None),
    (lambda b: b.do(b.notices.strange, "append", "x"), "datagrams that are no notification"),
    (lambda b: b.do(b.notices, "__setattr__", "cold_starts", 2), "cold starts without a daemon"),
    # changes that must be notified
    (lambda b: b.down(), None),
    (lambda b: b.become(1000, status="Down"), "changes of status not notified"),
    (lambda b: b.become(1000, status="Down").become(1010), "changes of status not notified"),
    (lambda b: b.become(1000, status="Down").disturb(EVENTS, begin=1005, end=1040), None),
    (lambda b: b.become(1000, status="Down").restart(1005), None),
    (lambda b: b.become(1000, status="Down").lie(900), None),
    (lambda b: b.become(1000, status="Down", told=False), None),  # an event makes the record
    (lambda b: b.down().become(1500, told=False), "changes of status not notified"),
    (lambda b: b.down().become(1500, told=False).hear_up(1570), None),
    (lambda b: b.down().become(1500, told=False).become(1510, status="Down"), None),
    (lambda b: b.down().become(1500, told=False).disturb(EVENTS, RECORDS, begin=1100, end=1120), None),
    (lambda b: b.down().become(1500, told=False).restart(1200), None),
    (lambda b: b.down().become(1200, "two").become(1300, status="Down").become(1700, told=False), None),
    (lambda b: b.become(1000, part="Down"), "changes of status not notified"),
    (lambda b: b.become(900, told=False, enclosure="Down").become(1000, part="Down", enclosure="Down"), None),
    # notifications of a wrong state
    (lambda b: b.down().hear(1500, UP, 2), "notifications of a wrong state"),
    (lambda b: b.become(1000, status="Down").hear(1001, DEGRADED), "notifications of a wrong state"),
    (lambda b: b.down().lie(1490).hear(1500, -1), None),
    (lambda b: b.down().hear(1061, DOWN, 1, "Alert Cleared - UPS 'one' is down"), "notifications of a wrong state"),
    (lambda b: b.down().become(1200).hear(1201, UP, 1, "UPS 'one' is up"), "notifications of a wrong state"),
    (lambda b: b.become(1000, status="Down").hear(1001, text="UPS 'two' is down"), "notifications of a wrong state"),
    (lambda b: b.down().hear(1500, name="nobody"), "notifications of a wrong state"),
    (lambda b: b.become(1000, status="Down").hear(1001, cell=b"three"), "notifications of a wrong state"),
    # notifications that repeat
    (lambda b: b.down().hear(1070), "notifications repeated without news"),
    (lambda b: b.down().hear(1061).hear(1121), "objects notified every minute"),
    (lambda b: b.down().do(b.states, "repeat", ONE, 1050).hear(1051), "notifications repeated"),
    (lambda b: b.down().do(b.notices.forced, "append", (1060, 205)).hear(1061, text=""), "notifications repeated"),
    (lambda b: b.down().do(b.notices.forced, "append", (1060, 212)).hear(1061, text=""), None),
    (lambda b: b.down().become(1200).hear_up(1201).become(1300, status="Down").hear(1301), None),
    (lambda b: b.down().become(1200).hear_up(1201).hear_up(1202), None),
    (lambda b: b.down().become(1200).hear_up(1201).hear_up(1202).hear_up(1203), "notifications repeated"),
    (lambda b: b.down().become(1010).become(1015, status="Down").hear(1016), None),
    # processes
    (lambda b: b.restart(100, EVENTS), "daemons that ended"),
    (lambda b: b.restart(100), None),
    (lambda b: b.do(b.watch.ended, "append", Ended(7, "snmpSubagent", -11)), "processes that crashed"),
    (lambda b: b.do(b.watch.ended, "append", Ended(70, "snmpSubagent", -9)), None),
    (lambda b: b.do(b.watch.ended, "append", Ended(7, "snmpd", -11)), "processes that crashed"),
    (lambda b: b.do(b.sanitizer_reports, "append", "x"), "sanitizer reports"),
    (lambda b: b.sampled(25000, 14), None),
    (lambda b: b.sampled(27000, 12), "daemons that grow"),
    (lambda b: b.sampled(20000, 15), "daemons that grow"),
    (lambda b: b.do(b.timeline.lives[0].samples, "clear"), "no daemon was calm"),
    (lambda b: b.do(b.failures, "append", "x"), "what had to hold after a fault"))


class TheVerdict(unittest.TestCase):
    def test_each_check_can_fail(self):
        for number, (plant, wanted) in enumerate(PLANTED):
            books = plant(Books())
            with self.subTest(number=number, wanted=wanted), mock.patch.object(time, "monotonic", lambda: NOW), \
                    mock.patch.object(daemon.Daemon, "check_sanitizers", books.check_sanitizers), \
                    contextlib.redirect_stdout(io.StringIO()):
                report = Report(books, 0)
                self.assertEqual(report.show(), wanted is None, report.problems)
                self.assertTrue(wanted is None or any(wanted in each for each in report.problems), report.problems)


class TheHistory(unittest.TestCase):
    """Which values may be read when. A UPS is renamed and a second one comes at 1000."""

    def setUp(self):
        self.timeline = Timeline()
        self.timeline.begin_life(Life(1, 50))
        self.history = History(self.timeline, States())
        self.history.record(objects("old"), 0)
        self.history.record(objects("new", "second"), 1000)

    def allows(self, oid, value, moment, later=1):
        value = (value if isinstance(value, tuple) else ("STRING", value)) if value is not None else None
        return self.history.allows(oid, value, moment, moment + later)

    def test_values(self):
        late = 1000 + STALE_S + 10
        for oid, value, moment, is_good in (
                (MODEL, b"old", 900, True), (MODEL, b"old", 1200, True), (MODEL, b"old", late, False),
                (MODEL, b"new", 900, False), (MODEL, b"new", late, True), (MODEL, b"other", 1200, False),
                (MODEL, None, 1200, False), (SECOND, None, 1200, True), (SECOND, None, late, False),
                (SECOND, b"second", 900, False)):
            with self.subTest(oid=oid, value=value, moment=moment):
                self.assertEqual(self.allows(oid, value, moment), is_good)
        self.assertIn(MODEL, self.history.steady(1200, 1201))
        self.assertNotIn(SECOND, self.history.steady(1200, 1201))
        self.assertIn(SECOND, self.history.steady(late, late + 1))

    def test_parts_are_numbered_by_the_parents_as_last_refreshed(self):
        """Another enclosure comes before the only one."""
        found = objects("new", "second")
        found["TsEnclosure"].insert(0, {"Index": "3", "Name": "F", "Status": "Up"})
        for record in (self.history.record, lambda *words: self.history.states.record(*words, True)):
            record(objects("new", "second"), 1500)
            record(found, 2000)
        old, new = mib.oid("tsEnclPowerStatus", 1, 1), mib.oid("tsEnclPowerStatus", 2, 1)
        up = ("INTEGER", UP)
        for oid, value, moment, is_good in ((old, up, 2100, True), (old, None, 2100, True), (new, up, 2100, True),
                                            (new, ("INTEGER", DOWN), 2100, False),
                                            (old, up, 2000 + STALE_S + 10, False)):
            self.assertEqual(self.allows(oid, value, moment), is_good, (oid, value, moment))

    def test_a_new_daemon(self):
        """It knows nothing older, and has yet to derive some values."""
        self.timeline.begin_life(Life(2, 1100))
        self.assertFalse(self.allows(MODEL, b"old", 1110))
        self.assertTrue(self.allows(MODEL, b"old", 1090))
        for sent, later, is_good in ((1110, 1, True), (1098, 3, True), (1098, 1, False), (1290, 1, False)):
            self.assertEqual(self.allows(mib.scalar("globalStatus"), ("INTEGER", 0), sent, later), is_good, sent)

    def test_disturbed_time_makes_nothing_stale(self):
        late = 1000 + STALE_S + 10
        self.timeline.begin_disturbance(Disturbance("away", 1100, (REQUESTS,), 1150, 1160))
        self.assertTrue(self.allows(MODEL, b"old", late))
        self.assertFalse(self.allows(MODEL, b"old", late + 60))

    def test_lies_are_excused_where_and_as_they_were_told(self):
        self.history.add_lie(Lie("TsUps", 1400, ("tsUPSName",), (b"lie",)))
        self.history.lies[0].end = 1410
        for oid, value, moment, is_good in ((MODEL, b"lie", 1405, True), (MODEL, b"lie", 1390, False),
                                            (MODEL, b"other", 1405, False), (MODEL, None, 1405, False),
                                            (mib.oid("tsTsName", 1), b"lie", 1405, False)):
            self.assertEqual(self.allows(oid, value, moment), is_good, (oid, value, moment))


class TheJudge(unittest.TestCase):
    def test_gets_and_bulks(self):
        one, two = Binding(MODEL, "STRING", b"one"), Binding(SECOND, "STRING", b"two")
        wrong, end = Binding(SECOND, "STRING", b"three"), Binding(SECOND, "endOfMibView", None)
        column = mib.oid("tsUPSName")
        for asked, non_repeaters, bindings, faults in (
                (None, 0, (one, two), []), (None, 0, (one, wrong), [ledger.VALUE]),
                (None, 0, (two, one), [ledger.ORDER]), ([column], 0, (one, two), []),
                ([column], 0, (two, one), [ledger.ORDER]), ([column], 0, (one, one), [ledger.ORDER]),
                ([column, MODEL], 1, (one, two, end), []), ([column, MODEL], 1, (one, one), [ledger.ORDER]),
                ([column, column], -1, (one, one, two, two), []), ([column], 1, (one, two), [ledger.ORDER]),
                ([SECOND], 0, (Binding(mib.old_form(MODEL), "STRING", b"one"),), [])):
            with self.subTest(asked=asked, bindings=bindings):
                judge = Books().judge
                exchange = snmp.Exchange(100, 101, snmp.Response(1, "noError", 0, list(bindings)))
                if asked is None:
                    judge.got("x", exchange, [MODEL, SECOND])
                else:
                    judge.got_bulk("x", exchange, asked, non_repeaters)
                self.assertEqual([kind for kind in (ledger.VALUE, ledger.ORDER) if judge.faulty(kind)], faults)


class ThePlan(unittest.TestCase):
    def test_a_seed_gives_one_plan(self):
        self.assertEqual(plan.make(7, 600), plan.make(7, 600))
        self.assertNotEqual(plan.make(7, 600), plan.make(8, 600))
        self.assertLessEqual(plan.make(7, 40).closing.whole_s(), 20)
        self.assertEqual({fault.kind.name for fault in plan.make(7, 600, only="snmpd").any},
                         {"snmpd is killed", "snmpd is stopped"})

    def test_one_daemon_lives_through_most_of_a_run(self):
        for seconds, bearable_s in ((100, 60), (3600, 3000)):
            made = plan.make(7, seconds)
            self.assertEqual(made.bearable_s, bearable_s)
            self.assertFalse([fault.text() for fault in made.bearable if fault.kind.restarts])
            self.assertEqual({fault.kind.name for fault in made.any}, {kind.name for kind in plan.ALL})
            self.assertTrue(made.closing.kind.restarts)


if __name__ == "__main__":
    unittest.main()
