"""Plants a violation for each check of a chaos run, and situations that excuse it."""

import contextlib
import io
import os
import sys
import threading
import time
import unittest
from unittest import mock

sys.path[:0] = [os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", *more) for more in ((), ("system",))]
from chaos import snmp, violations  # noqa: E402  (found through the line above)
from chaos.history import STALE_S, FalseReport, History  # noqa: E402
from chaos.responseChecks import ResponseChecks  # noqa: E402
from chaos.notices import Mark, Notice, Notices  # noqa: E402
from chaos.report import Report  # noqa: E402
from chaos.states import States, Subject  # noqa: E402
from chaos.timeline import EVENTS, RECORDS, REQUESTS, Disturbance, Life, Timeline  # noqa: E402
from chaos.violations import Violation  # noqa: E402
from chaos.vitals import Sample  # noqa: E402
from chaos.watch import Exited, Watch  # noqa: E402
from harness import ber, daemon, mib  # noqa: E402
from harness.manager import Binding  # noqa: E402

MODEL, SECOND = mib.oid("tsUPSName", 1), mib.oid("tsUPSName", 2)
NOW = 5000
UP, DOWN, DEGRADED = 1, 2, 3
ONE = Subject(212, "one")


def objects(*names, status="Up", enclosure="Up", part="Up"):
    """Returns UPSs with these names, the UPS 'one' with a status, and an enclosure with a power supply."""
    return {"TsUps": [{"Index": str(index), "Name": name, "Status": status if name == "one" else "Up",
                       "BatteryLife": "5", "StatusDescription": ""} for index, name in enumerate(names, 2)],
            "Tessera": [{"ManagementIp": "192.0.2.1", "Name": "a", "Contact": "b", "Location": "c",
                         "PortsBalanced": "True"}],
            "TsController": [{"Index": "2", "Name": "A", "Status": "Up", "IpAddress": "192.0.2.2"}],
            "TsEnclosure": [{"Index": "7", "Name": "E", "Status": enclosure}],
            "TsEnclosurePowerSupply": [{"Index": "8", "EnclosureIndex": "7", "Name": "P", "Position": "1",
                                        "Status": part}]}


class CalmRun:
    """The records of a run without a violation: one undisturbed daemon, and an array that did not change."""

    def __init__(self):
        self.timeline, self.log, self.failures, self.served_since = Timeline(), violations.ViolationLog(), [], 10
        self.timeline.begin_life(Life(1, 0, samples=[Sample(moment, 20000, 12) for moment in range(20)]))
        self.states = States()
        self.history = History(self.timeline, self.states)
        nothing_comes = mock.Mock(take_datagram=lambda _: threading.Event().wait())
        self.checks, self.notices = ResponseChecks(self.history, self.log), Notices(self.timeline, nothing_comes)
        self.killed_by_fault, self.watch, self.sanitizer_reports = {70}, Watch(self), []
        self.become(0)
        self.log.count("x", "answered", 100)

    def become(self, moment, *names, reported=True, **statuses):
        found = objects(*(names or ("one", "two")), **statuses)
        self.history.record(found, moment)
        self.states.record(found, moment, reported)
        return self

    def disturb(self, *what, begin=95, end=102):
        self.timeline.begin_disturbance(Disturbance("x", begin, what, end - 1, end))
        return self

    def restart(self, moment, *disturbed):
        self.timeline.lives[-1].end = moment
        self.timeline.begin_life(Life(2, moment))
        return self.disturb(*(disturbed or (REQUESTS,)), begin=moment - 1, end=moment + 1)

    def report_falsely(self, moment):
        self.history.add_false_report(FalseReport("TsUps", moment, values=(b"false",)))
        self.history.false_reports[-1].end = moment + 5
        return self

    def notify(self, moment, status=DOWN, state=2, text="UPS 'one' is down", name="one", value=b"one"):
        """Records a notification about a UPS."""
        self.notices.about_objects.append(Notice(moment, 212, (212, name), status, state, text,
                                                 [(MODEL, ("STRING", value))]))
        return self

    def notify_up(self, moment):
        return self.notify(moment, UP, 1, "Alert Cleared - UPS 'one' is up")

    def down(self, moment=1000):
        """Lets a UPS fail and its failure be reported."""
        return self.become(moment, status="Down").notify(moment + 1)

    def add_violation(self, kind, client="x", times=1):
        for _ in range(times):
            self.log.add(Violation(kind, client, 100, 101, "text", SECOND, ("STRING", b"three")))
        return self

    def mark(self, accepted, notified=0):
        self.notices.marks[1] = Mark(1, 0, accepted, notified)
        return self

    def walk_without(self, *oids):
        seen = {oid for oid in self.history.oids() if not self.history.allows(oid, None, 100, 101)} - set(oids)
        self.checks.complete("x", snmp.Exchange(100, 101, None), seen)
        return self

    def sample(self, kilobytes, descriptors):
        self.timeline.lives[0].samples[-5:] = [Sample(moment, kilobytes, descriptors) for moment in range(5)]
        return self

    def check_sanitizers(self):
        if self.sanitizer_reports:
            raise AssertionError(self.sanitizer_reports)

    def do(self, target, method, *arguments):
        getattr(target, method)(*arguments)
        return self


# What is planted, and the beginning of the problem that must be reported; None: the violation is excused.
PLANTED = (
    (lambda run: run, None),
    (lambda run: run.add_violation(violations.UNANSWERED), "unanswered requests"),
    (lambda run: run.add_violation(violations.UNANSWERED).disturb(REQUESTS), None),
    (lambda run: run.add_violation(violations.UNANSWERED).disturb(EVENTS, RECORDS), "unanswered requests"),
    (lambda run: run.add_violation(violations.VALUE), "values that the array did not have"),
    (lambda run: run.walk_without(SECOND), "instances missing in a walk"),
    (lambda run: run.add_violation(violations.ORDER), "responses out of order"),
    (lambda run: run.add_violation(violations.MALFORMED), "malformed responses"),
    (lambda run: run.add_violation(violations.BROKEN), "exceptions in the run itself"),
    (lambda run: run.disturb(REQUESTS).add_violation(violations.UNANSWERED, times=violations.KEPT + 1), "kinds of"),
    (lambda run: run.add_violation(violations.GENERR).add_violation(violations.GENERR, client="setter", times=9), None),
    (lambda run: run.add_violation(violations.GENERR, times=2), "more than 1 % of all responses were genErr"),
    (lambda run: run.add_violation(violations.SLOW, times=2), "more than 1 % of all responses were slow"),
    # strings
    (lambda run: run.mark(50, notified=2), "notifications received twice"),
    (lambda run: run.mark(95).disturb(REQUESTS, end=120), "notifications lost"),
    (lambda run: run.mark(95).disturb(REQUESTS, end=120).restart(135), None),
    (lambda run: run.do(run.notices.malformed, "append", "x"), "datagrams that are not a notification"),
    (lambda run: run.do(run.notices, "__setattr__", "cold_starts", 2), "cold starts without a daemon"),
    # changes that must be reported
    (lambda run: run.become(1000, status="Down"), "changes of status not notified"),
    (lambda run: run.become(1000, status="Down").disturb(EVENTS, begin=1005, end=1040), None),
    (lambda run: run.become(1000, status="Down").restart(1005), None),
    (lambda run: run.become(1000, status="Down").report_falsely(900), None),
    (lambda run: run.become(1000, status="Down", reported=False), None),  # only an event creates the record
    (lambda run: run.down().become(1500, reported=False), "changes of status not notified"),
    (lambda run: run.down().become(1500, reported=False).notify_up(1570), None),
    (lambda run: run.down().become(1500, reported=False).disturb(EVENTS, RECORDS, begin=1100, end=1120), None),
    (lambda run: run.down().become(1200, "two").become(1300, status="Down").become(1700, reported=False), None),
    (lambda run: run.become(1000, part="Down"), "changes of status not notified"),
    (lambda run: run.become(900, reported=False, enclosure="Down").become(1000, part="Down", enclosure="Down"), None),
    # notifications with a wrong state
    (lambda run: run.down().notify(1500, UP, 2), "notifications with a wrong state"),
    (lambda run: run.down().report_falsely(1490).notify(1500, -1), None),
    (lambda run: run.down().become(1200).notify(1201, UP, 1, "UPS 'one' is up"), "notifications with a wrong state"),
    (lambda run: run.become(1000, status="Down").notify(1001, text="UPS 'two' is down"), "notifications with a wrong"),
    (lambda run: run.down().notify(1500, name="nobody"), "notifications with a wrong state"),
    (lambda run: run.become(1000, status="Down").notify(1001, value=b"three"), "notifications with a wrong state"),
    # notifications that repeat
    (lambda run: run.down().notify(1070), "notifications repeated without a change"),
    (lambda run: run.down().notify(1061).notify(1121), "objects notified every minute"),
    (lambda run: run.down().do(run.states, "repeat", ONE, 1050).notify(1051), "notifications repeated"),
    (lambda run: run.down().do(run.notices.forced, "append", (1060, 205)).notify(1061, text=""), "notifications rep"),
    (lambda run: run.down().do(run.notices.forced, "append", (1060, 212)).notify(1061, text=""), None),
    (lambda run: run.down().become(1200).notify_up(1201).notify_up(1202), None),
    (lambda run: run.down().become(1200).notify_up(1201).notify_up(1202).notify_up(1203), "notifications repeated"),
    # processes
    (lambda run: run.restart(100, EVENTS), "daemons that exited"),
    (lambda run: run.do(run.watch.exited, "append", Exited(7, "snmpSubagent", -11)), "processes that crashed"),
    (lambda run: run.do(run.watch.exited, "append", Exited(70, "snmpSubagent", -9)), None),
    (lambda run: run.do(run.sanitizer_reports, "append", "x"), "sanitizer reports"),
    (lambda run: run.sample(27000, 12), "daemons that grow"),
    (lambda run: run.sample(25000, 15), "daemons that grow"),
    (lambda run: run.do(run.timeline.lives[0].samples, "clear"), "no daemon was undisturbed"),
    (lambda run: run.do(run.failures, "append", "x"), "conditions that did not hold after a fault"))


class Verdict(unittest.TestCase):
    def test_each_check_can_fail(self):
        for number, (plant, wanted) in enumerate(PLANTED):
            run = plant(CalmRun())
            with self.subTest(number=number, wanted=wanted), mock.patch.object(time, "monotonic", lambda: NOW), \
                    mock.patch.object(daemon.Daemon, "check_sanitizers", run.check_sanitizers), \
                    contextlib.redirect_stdout(io.StringIO()):
                report = Report(run, 0)
                self.assertEqual(report.show(), wanted is None, report.problems)
                self.assertTrue(wanted is None or any(wanted in each for each in report.problems), report.problems)


class HistoryOfValues(unittest.TestCase):
    def test_values_over_time(self):
        """At 1000 the first UPS is renamed, and the second one is removed."""
        history, late = CalmRun().become(1000, "new").history, 1000 + STALE_S + 10
        for oid, value, moment, is_good in (
                (MODEL, b"one", 900, True), (MODEL, b"one", 1200, True), (MODEL, b"one", late, False),
                (MODEL, b"new", 900, False), (MODEL, b"new", late, True), (MODEL, b"other", 1200, False),
                (MODEL, None, 1200, False), (SECOND, None, 1200, True), (SECOND, None, 900, False),
                (SECOND, b"two", late, False)):
            with self.subTest(oid=oid, value=value, moment=moment):
                self.assertEqual(history.allows(oid, value and ("STRING", value), moment, moment + 1), is_good)
        self.assertIn(MODEL, history.constant_instances(1200, 1201))
        self.assertNotIn(SECOND, history.constant_instances(1200, 1201))
        self.assertIn(SECOND, history.constant_instances(900, 901))


class ChecksOfResponses(unittest.TestCase):
    def test_gets_and_bulks(self):
        one, two = Binding(MODEL, "STRING", b"one"), Binding(SECOND, "STRING", b"two")
        wrong, end = Binding(SECOND, "STRING", b"three"), Binding(SECOND, "endOfMibView", None)
        column = mib.oid("tsUPSName")
        for requested, non_repeaters, bindings, faults in (
                (None, 0, (one, two), []), (None, 0, (one, wrong), [violations.VALUE]),
                (None, 0, (two, one), [violations.ORDER]), ([column], 0, (one, two), []),
                ([column], 0, (one, one), [violations.ORDER]), ([column, MODEL], 1, (one, two, end), []),
                ([column, column], -1, (one, one, two, two), []), ([column], 1, (one, two), [violations.ORDER]),
                ([SECOND], 0, (Binding(mib.old_form(MODEL), "STRING", b"one"),), [])):
            with self.subTest(requested=requested, bindings=bindings):
                checks = CalmRun().checks
                exchange = snmp.Exchange(100, 101, ber.Response(1, "noError", 0, list(bindings)))
                if requested is None:
                    checks.got("x", exchange, [MODEL, SECOND])
                else:
                    checks.got_bulk("x", exchange, requested, non_repeaters)
                kinds = (violations.VALUE, violations.ORDER)
                self.assertEqual([kind for kind in kinds if checks.confirmed(kind)], faults)


if __name__ == "__main__":
    unittest.main()
