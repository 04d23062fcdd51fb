"""Requests of Net-SNMP's tools, under both enterprise numbers."""

import unittest

from harness import manager, mib, systemTest

EVERYTHING_PRIVATE = "1.3.6.1.4.1"
WALKERS = 12


def in_store(oids):
    return [oid for oid in oids if oid.startswith(mib.ENTERPRISE + ".")]


class ReadingManagers(systemTest.SharedSystemTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.version1 = manager.Manager(version="1")
        cls.wait_until_settled()
        cls.store = cls.manager.bulk_walk(mib.ENTERPRISE, "-Cr20").by_oid()
        cls.order = list(cls.store)

    def setUp(self):
        # By design, a walk in the old form ends immediately if the previous request reached the end of the store.
        self.manager.value(mib.scalar("productName"))

    def test_both_enterprise_numbers_support_every_kind_of_read(self):
        name, following = mib.oid("tsCtlrName", 1), mib.oid("tsCtlrName", 2)
        for form in (str, mib.old_form):
            for reader in (self.manager, self.version1):
                with self.subTest(version=reader.version, oid=form(name)):
                    self.assertEqual(reader.get(form(name)).bindings, [self.as_form(form, name)])
                    self.assertEqual(reader.get_next(form(name)).bindings, [self.as_form(form, following)])
                    walked = reader.walk(form(mib.table_oid("tsCtlr")))
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
        for missing in unknown:
            for place in range(len(known) + 1):
                oids = known[:place] + [missing] + known[place:]
                with self.subTest(missing=missing, place=place):
                    response = self.manager.get(*oids)
                    self.assertEqual([(b.oid, b.value is None) for b in response.bindings],
                                     [(oid, oid == missing) for oid in oids], response)
                    self.assertIn(response.bindings[place].type, ("noSuchInstance", "noSuchObject"))
                    rejected = self.version1.get(*oids)
                    self.assertEqual((rejected.error, rejected.failed_oid), ("noSuchName", missing))

    def test_two_consecutive_bulk_walks_of_everything_private(self):
        for number in (1, 2):
            with self.subTest(walk=number):
                response = self.manager.bulk_walk(EVERYTHING_PRIVATE)
                self.assertEqual(response.status, 0, response.errors)
                self.assertEqual(in_store(response.oids()), self.order)
                self.check_old_part(response)

    def check_old_part(self, response):
        """A walk that enters the old number directly after the end of the store ends there. If another request came
        between, it walks the store again in the old form."""
        old = [oid for oid in response.oids() if oid.startswith(mib.OLD_ENTERPRISE + ".")]
        self.assertIn(old, ([], [mib.old_form(oid) for oid in self.order]))

    def test_twelve_concurrent_bulk_walkers(self):
        patient = manager.Manager(timeout_s=20)
        walkers = [patient.start("snmpbulkwalk", "127.0.0.1", mib.ENTERPRISE) for _ in range(WALKERS)]
        responses = [patient.finish(walker, 600) for walker in walkers]
        for number, response in enumerate(responses):
            with self.subTest(walker=number):
                self.assertEqual(response.status, 0, response.errors)
                self.assertEqual(response.errors, "")
                self.assertEqual(response.bindings, list(self.store.values()))
        self.assertTrue(self.daemon.is_running())

    def test_a_burst_of_failing_requests_does_not_affect_others(self):
        """Failures close the window for a tick; requests that arrive meanwhile must wait and not fail."""
        failing = [self.version1.start("snmpget", "-Cf", "127.0.0.1", mib.oid("tsDiskName", 1900 + number))
                     for number in range(30)]
        good = [self.manager.start("snmpget", "-Cf", "127.0.0.1", oid) for oid in self.order[:10]]
        for process, oid in zip(good, self.order):
            self.assertEqual(self.manager.finish(process).bindings, [self.store[oid]])
        for process in failing:
            self.assertEqual(self.version1.finish(process).error, "noSuchName")


if __name__ == "__main__":
    unittest.TestLoader.sortTestMethodsUsing = None
    systemTest.main()
