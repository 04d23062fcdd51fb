"""The bookkeeping of chaos runs: each of its checks finds what it is there for, and excuses no more than it must."""

import os
import sys
import unittest
from unittest import mock

sys.path[:0] = [os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", *more) for more in ((), ("system",))]
from chaos import ledger, notices, plan, snmp, vitals  # noqa: E402  (found through the line above)
from chaos.history import STALE_S, History, Lie  # noqa: E402
from chaos.judge import Judge  # noqa: E402
from chaos.timeline import EVENTS, REQUESTS, Disturbance, Life, Timeline  # noqa: E402
from harness import berWriter, mib  # noqa: E402
from harness.manager import Binding  # noqa: E402

MODEL = mib.oid("tsUPSName", 1)
SECOND = mib.oid("tsUPSName", 2)


def ups(*names):
    """Objects of an array that has little else."""
    return {"TsUps": [{"Index": str(number), "Name": name, "Status": "Up", "BatteryLife": "5", "StatusDescription": ""}
                      for number, name in enumerate(names, 2)],
            "Tessera": [{"ManagementIp": "192.0.2.1", "Name": "a", "Contact": "b", "Location": "c"}],
            "TsController": [{"Index": "2", "IpAddress": "192.0.2.2"}]}


def text(value):
    return ("STRING", value)


class TheHistory(unittest.TestCase):
    def setUp(self):
        self.timeline = Timeline()
        self.timeline.begin_life(Life(1, 50))
        self.history = History(self.timeline)
        self.history.record(ups("old"), 0)
        self.history.record(ups("new", "second"), 1000)

    def allows(self, oid, value, moment):
        return self.history.allows(oid, value and text(value), moment, moment + 1)

    def test_values_are_good_while_they_may_be_in_the_store(self):
        late = 1000 + STALE_S + 10
        for oid, value, moment, is_good in (
                (MODEL, b"old", 900, True), (MODEL, b"old", 1200, True), (MODEL, b"old", late, False),
                (MODEL, b"new", 900, False), (MODEL, b"new", late, True), (MODEL, b"other", 1200, False),
                (MODEL, None, 1200, False), (SECOND, None, 1200, True), (SECOND, None, late, False),
                (SECOND, b"second", 900, False)):
            with self.subTest(oid=oid, value=value, moment=moment):
                self.assertEqual(self.allows(oid, value, moment), is_good)

    def test_a_new_daemon_knows_nothing_older(self):
        self.timeline.begin_life(Life(2, 1100))
        self.assertFalse(self.allows(MODEL, b"old", 1110))
        self.assertTrue(self.allows(MODEL, b"old", 1090))

    def test_a_new_daemon_has_yet_to_derive(self):
        self.timeline.begin_life(Life(2, 1100))
        for sent, ended, is_good in ((1110, 1111, True), (1098, 1101, True), (1098, 1099, False), (1290, 1291, False)):
            with self.subTest(sent=sent, ended=ended):
                self.assertEqual(self.history.allows(mib.scalar("globalStatus"), ("INTEGER", 0), sent, ended), is_good)

    def test_disturbed_time_makes_nothing_stale(self):
        late = 1000 + STALE_S + 10
        self.timeline.begin_disturbance(Disturbance("away", 1100, (REQUESTS,), 1150, 1160))
        self.assertTrue(self.allows(MODEL, b"old", late))
        self.assertFalse(self.allows(MODEL, b"old", late + 60))

    def test_lies_are_excused_where_and_as_they_were_told(self):
        lie = Lie("TsUps", 1400, ("tsUPSName",), (b"lie",))
        self.history.add_lie(lie)
        lie.end = 1410
        self.assertTrue(self.allows(MODEL, b"lie", 1405))
        self.assertFalse(self.allows(MODEL, b"lie", 1390))
        self.assertFalse(self.allows(MODEL, b"other", 1405))
        self.assertFalse(self.allows(MODEL, None, 1405))
        self.assertFalse(self.allows(mib.oid("tsTsName", 1), b"lie", 1405))

    def test_what_a_walk_must_show(self):
        self.assertIn(MODEL, self.history.steady(1200, 1201))
        self.assertNotIn(SECOND, self.history.steady(1200, 1201))
        self.assertIn(SECOND, self.history.steady(1000 + STALE_S + 10, 1000 + STALE_S + 11))


class TheJudge(unittest.TestCase):
    def setUp(self):
        self.timeline = Timeline()
        self.timeline.begin_life(Life(1, 0))
        self.book = ledger.Ledger()
        history = History(self.timeline)
        history.record(ups("one", "two"), 0)
        self.judge = Judge(history, self.book)

    def exchange(self, *bindings):
        return snmp.Exchange(100, 101, snmp.Response(1, "noError", 0, list(bindings)))

    def faulty(self):
        return [kind for kind in (ledger.VALUE, ledger.ORDER, ledger.MISSING) if self.judge.faulty(kind)]

    def test_gets_and_bulks(self):
        one, two = Binding(MODEL, *text(b"one")), Binding(SECOND, *text(b"two"))
        wrong, end = Binding(SECOND, *text(b"three")), Binding(SECOND, "endOfMibView", None)
        column = mib.oid("tsUPSName")
        for asked, non_repeaters, bindings, faults in (
                (None, 0, (one, two), []), (None, 0, (one, wrong), [ledger.VALUE]),
                (None, 0, (two, one), [ledger.ORDER]), ([column], 0, (one, two), []),
                ([column], 0, (two, one), [ledger.ORDER]), ([column], 0, (one, one), [ledger.ORDER]),
                ([column, MODEL], 1, (one, two, end), []), ([column, MODEL], 1, (one, one), [ledger.ORDER]),
                ([column, column], -1, (one, one, two, two), []), ([column], 1, (one, two), [ledger.ORDER]),
                ([SECOND], 0, (Binding(mib.old_form(MODEL), *text(b"one")),), [])):
            with self.subTest(asked=asked, bindings=bindings):
                self.setUp()
                if asked is None:
                    self.judge.got("x", self.exchange(*bindings), [MODEL, SECOND])
                else:
                    self.judge.got_bulk("x", self.exchange(*bindings), asked, non_repeaters)
                self.assertEqual(self.faulty(), faults)

    def test_a_row_that_a_walk_leaves_out(self):
        served = [oid for oid in self.judge.history.oids() if oid.startswith(mib.ENTERPRISE)]
        exempt = {oid for oid in served if not self.judge.history.allows(oid, None, 100, 101)}
        self.judge.complete("x", self.exchange(), exempt)
        self.assertEqual(self.faulty(), [])
        self.judge.complete("x", self.exchange(), exempt - {SECOND})
        self.assertEqual(self.faulty(), [ledger.MISSING])

    def test_silence_is_excused_by_what_disturbs_requests_alone(self):
        for disturbs, is_faulty in (((REQUESTS,), False), ((EVENTS,), True), ((), True)):
            self.setUp()
            self.timeline.begin_disturbance(Disturbance("x", 95, disturbs, 99, 100.5))
            self.judge.doubt(ledger.UNANSWERED, "x", self.exchange(), "no answer")
            self.assertEqual(bool(self.judge.faulty(ledger.UNANSWERED)), is_faulty, disturbs)


class Others(unittest.TestCase):
    def test_which_missed_notification_was_due(self):
        timeline = Timeline()
        timeline.begin_life(Life(1, 0, 200))
        timeline.begin_disturbance(Disturbance("x", 100, (REQUESTS,), 110, 120))
        judged = notices.Notices.__new__(notices.Notices)
        judged.timeline = timeline
        for taken, is_due in ((50, True), (95, True), (179, True), (185, False), (None, False), (300, False)):
            self.assertEqual(judged.is_due(notices.Mark(1, 0, taken)), is_due, taken)

    def test_which_daemon_ended_without_a_cause(self):
        for disturbs, end, is_found in (((REQUESTS,), 105, False), ((REQUESTS,), 125, True), ((EVENTS,), 105, True),
                                        ((REQUESTS,), 40, False)):
            timeline = Timeline()
            timeline.begin_life(Life(1, 0, end))
            timeline.begin_disturbance(Disturbance("x", 100, disturbs, 110, 120))
            self.assertEqual(bool(timeline.ended_by_themselves(50)), is_found, (disturbs, end))

    def test_growth(self):
        for kilobytes, descriptors, own, is_flat in ((20000, 12, True, True), (25000, 14, True, True),
                                                     (27000, 12, True, False), (27000, 12, False, True),
                                                     (20000, 15, False, False)):
            life = Life(1, 0)
            life.samples = ([vitals.Sample(moment, 20000, 12) for moment in range(5)] +
                            [vitals.Sample(moment, kilobytes, descriptors) for moment in range(5)])
            with mock.patch.object(vitals, "IS_MEMORY_ITS_OWN", own):
                self.assertEqual(vitals.Comparison(life).is_flat(), is_flat, (kilobytes, descriptors, own))

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

    def test_requests_and_their_answers_as_octets(self):
        """What is written is read back; numbers at the edges of their octets."""
        for number in (0, 127, 128, -1, -128, -129, 2**31 - 1, -2**31):
            with self.subTest(number=number):
                pdu = berWriter.pdu(snmp.RESPONSE, number, [(MODEL, berWriter.integer(number)),
                                                            ("1.3.4294967295.128", b"\x82\x00")])
                response = snmp.read_response(berWriter.message("2c", "x" * 300, pdu))
                self.assertEqual(response, (number, "noError", 0, [
                    Binding(MODEL, "INTEGER", number), Binding("1.3.4294967295.128", "endOfMibView", None)]))


if __name__ == "__main__":
    unittest.main()
