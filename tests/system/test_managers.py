"""Requests as managers really send them, with Net-SNMP's own tools, over both enterprise numbers."""

import unittest

from harness import manager, mib, story

EVERYTHING_PRIVATE = "1.3.6.1.4.1"
WALKERS = 12


def in_store(oids):
    return [oid for oid in oids if oid.startswith(mib.ENTERPRISE + ".")]


class ReadingManagers(story.SharedStory):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.version1 = manager.Manager(version="1")
        cls.wait_until_settled()
        cls.store = cls.manager.bulk_walk(mib.ENTERPRISE, "-Cr20").by_oid()
        cls.order = list(cls.store)

    def setUp(self):
        # A walk in the old form that follows the end of the store ends at once, by design.
        self.manager.value(mib.scalar("productName"))

    def test_both_enterprise_numbers_answer_every_kind_of_read(self):
        name, following = mib.oid("tsCtlrName", 1), mib.oid("tsCtlrName", 2)
        for form in (str, mib.old_form):
            for asking in (self.manager, self.version1):
                with self.subTest(version=asking.version, oid=form(name)):
                    self.assertEqual(asking.get(form(name)).bindings, [self.as_form(form, name)])
                    self.assertEqual(asking.get_next(form(name)).bindings, [self.as_form(form, following)])
                    walked = asking.walk(form(mib.table_oid("tsCtlr")))
                    self.assertEqual(walked.bindings, self.table(form, "tsCtlr"))
            bulk = self.manager.get_bulk(4, form(name))
            begin = self.order.index(following)
            self.assertEqual(bulk.bindings, [self.as_form(form, oid) for oid in self.order[begin:begin + 4]])
            for options in ((), ("-Cr50",), ("-Cn0", "-Cr1")):
                walked = self.manager.bulk_walk(form(mib.table_oid("tsDisk")), *options)
                self.assertEqual(walked.bindings, self.table(form, "tsDisk"), options)

    def as_form(self, form, oid):
        return self.store[oid]._replace(oid=form(oid))

    def table(self, form, name):
        root = mib.table_oid(name) + "."
        return [self.as_form(form, oid) for oid in self.order if oid.startswith(root)]

    def test_unknown_instances_beside_known_ones(self):
        known = [mib.scalar("productName"), mib.oid("tsDiskName", 1), mib.scalar("sysName")]
        unknown = [mib.oid("tsDiskName", 1999), mib.oid("tsCtlrName", 3), mib.ROOT + ".99.0",
                   mib.old_form(mib.oid("tsVolumeName", 2000)), mib.oid("tsCtlrFanName", 3, 1), mib.oid("productName")]
        for stranger in unknown:
            for place in range(len(known) + 1):
                oids = known[:place] + [stranger] + known[place:]
                with self.subTest(stranger=stranger, place=place):
                    answer = self.manager.get(*oids)
                    self.assertEqual([(b.oid, b.value is None) for b in answer.bindings],
                                     [(oid, oid == stranger) for oid in oids], answer)
                    self.assertIn(answer.bindings[place].type, ("noSuchInstance", "noSuchObject"))
                    refused = self.version1.get(*oids)
                    self.assertEqual((refused.error, refused.failed_oid), ("noSuchName", stranger))

    def test_two_bulk_walks_of_everything_private_in_a_row(self):
        for number in (1, 2):
            with self.subTest(walk=number):
                answer = self.manager.bulk_walk(EVERYTHING_PRIVATE)
                self.assertEqual(answer.status, 0, answer.complaints)
                self.assertEqual(in_store(answer.oids()), self.order)
                self.check_old_part(answer)

    def check_old_part(self, answer):
        """A walk that reaches the older number right behind the end of the store ends there; one that somebody
        else's answer came between goes through the store once more, in the old form."""
        old = [oid for oid in answer.oids() if oid.startswith(mib.OLD_ENTERPRISE + ".")]
        self.assertIn(old, ([], [mib.old_form(oid) for oid in self.order]))

    def test_twelve_bulk_walkers_at_once(self):
        patient = manager.Manager(timeout_s=20)
        walkers = [patient.start("snmpbulkwalk", "127.0.0.1", mib.ENTERPRISE) for _ in range(WALKERS)]
        answers = [patient.finish(walker, 600) for walker in walkers]
        for number, answer in enumerate(answers):
            with self.subTest(walker=number):
                self.assertEqual(answer.status, 0, answer.complaints)
                self.assertEqual(answer.complaints, "")
                self.assertEqual(answer.bindings, list(self.store.values()))
        self.assertTrue(self.daemon.is_running())

    def test_a_burst_of_failing_requests_harms_no_other(self):
        """Failures close the window for a tick; requests that come then must wait and not fail."""
        strangers = [self.version1.start("snmpget", "-Cf", "127.0.0.1", mib.oid("tsDiskName", 1900 + number))
                     for number in range(30)]
        good = [self.manager.start("snmpget", "-Cf", "127.0.0.1", oid) for oid in self.order[:10]]
        for process, oid in zip(good, self.order):
            self.assertEqual(self.manager.finish(process).bindings, [self.store[oid]])
        for process in strangers:
            self.assertEqual(self.version1.finish(process).error, "noSuchName")


if __name__ == "__main__":
    unittest.TestLoader.sortTestMethodsUsing = None
    story.tell()
