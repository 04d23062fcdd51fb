"""Answers and frames that are wrong: each is logged and refused, the values from before are served on, the
daemon goes on, and what comes right afterwards is taken."""

import re
import socket

from harness import array, ber, berWriter, manager, mib, story, waiting
from harness.expected import LONGEST_TEXT, Expectation

TRANSPORT = "Caught std::exception processing request"
NO_PARSE = "error found while trying to parse (?:ip)?XmlString|response from ApiMgr does not parse"

# Fault of the next exchange, whichever that is, and the line that it leaves.
EXCHANGES = (
    (("refuse",), TRANSPORT), (("tear",), TRANSPORT), (("tear", "2"), TRANSPORT), (("tear", "4"), TRANSPORT),
    (("long-length",), TRANSPORT), (("huge-length",), TRANSPORT), (("zero-length",), TRANSPORT),
    (("garbage",), TRANSPORT), (("wrong-sequence",), "> > seqNum mismatch: req_seqnum="),
    (("wrong-type",), "msgResponse.msgtype != protoIPCMsg::APIResp"),
    (("no-response",), "msgResponse did Not have apirespmsg"), (("no-cmd",), "msgResponse did Not have cmd"),
    (("truncated",), NO_PARSE), (("empty",), NO_PARSE), (("unbalanced",), NO_PARSE), (("doctype",), NO_PARSE),
    (("entities",), NO_PARSE), (("external-entity",), NO_PARSE), (("nesting",), NO_PARSE),
    (("wrong-root",), "does not contain 'lumapi'"))


class HostileAnswers(story.SharedStory):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.expected = Expectation(cls.array.dump()).values
        cls.pids = (cls.daemon.pid(), cls.daemon.snmpd_pid())

    def setUp(self):
        self.daemon.begin_log()

    def tearDown(self):
        self.array.clear_faults()

    def served(self, root):
        return {b.oid: (b.type, b.value) for b in self.manager.bulk_walk(root, "-Cr20").bindings}

    def right(self, root):
        return {oid: value for oid, value in self.expected.items() if oid.startswith(root + ".")}

    def table_root(self, kind):
        return mib.table_oid(next(table for table, each in mib.KIND_OF_TABLE.items() if each == kind))

    def wait_for_line(self, pattern, limit_s=60):
        waiting.wait_until(lambda: re.search(pattern, self.daemon.log()), f"the log holds {pattern}", limit_s)

    def wait_for_good_exchange(self):
        """Of three faults in a row without one the daemon would end. Pings do not tell: some faults spare them."""
        def good():
            return self.array.exchanges("GetList") - self.array.exchanges("GetList", struck=True)

        before = good()
        waiting.wait_until(lambda: good() > before, "an exchange succeeds")

    def assert_served_as_before(self):
        for kind in ("TsController", "TsDisk", "TsControllerFanSensor", "TsVolume"):
            root = self.table_root(kind)
            self.assertEqual(self.served(root), self.right(root), kind)
        self.assertEqual((self.daemon.pid(), self.daemon.snmpd_pid()), self.pids)

    def test_faults_of_single_exchanges(self):
        for fault, pattern in EXCHANGES:
            with self.subTest(fault=fault):
                self.daemon.begin_log()
                self.array.fault(*fault, "for", "1")
                self.wait_for_line(pattern)
                self.wait_for_good_exchange()
                self.assert_served_as_before()
        self.assertEqual(self.daemon.lines_with("strikes_against_apimgr"), [])


class LongTexts(story.SharedStory):
    """An array whose disks all have names that no datagram would hold many of. Nobody may be left without an answer:
    of what the master agent drops it gives the daemon up for."""

    GREATEST_BULK = 20  # the snmpd.conf of the sandbox and of the package: so many values in all
    TOO_BIG = 1

    @classmethod
    def launch(cls):
        objects = array.preset("typical")
        for disk in objects["TsDisk"]:
            disk["Name"] += "x" * LONGEST_TEXT
        cls.array.start(objects=objects)
        cls.daemon.start()
        cls.pids = (cls.daemon.pid(), cls.daemon.snmpd_pid())

    def tearDown(self):
        self.assertEqual(len(self.manager.value(mib.oid("tsDiskName", 1))), LONGEST_TEXT)
        self.assertEqual((self.daemon.pid(), self.daemon.snmpd_pid()), self.pids)

    @staticmethod
    def names(count, column="tsDiskName"):
        return [mib.oid(column, row % 120 + 1) for row in range(count)]

    def test_as_many_as_an_answer_holds_come_and_more_are_refused(self):
        for ask in (self.manager.get, self.manager.get_next):
            for count in (8, 16, 20):
                lengths = [len(each.value) for each in ask(*self.names(count)).bindings]
                self.assertEqual(lengths, [LONGEST_TEXT] * count, ask.__name__)
            for count in (21, 40, 100):
                self.assertEqual(ask(*self.names(count)).error, "tooBig", (ask.__name__, count))
        version1 = manager.Manager(version="1")
        self.assertEqual(len(version1.get(*self.names(20)).bindings), 20)
        self.assertNotEqual(version1.get(*self.names(21)).error, "")

    def test_a_getbulk_is_always_answered(self):
        for columns in (1, 2, 7, 20):
            for repetitions in (8, 16, 40, 100):
                answer = self.manager.get_bulk(repetitions, *self.names(columns))
                wanted = min(columns * repetitions, self.GREATEST_BULK // columns * columns)
                self.assertEqual([len(each.value) for each in answer.bindings[:wanted]], [LONGEST_TEXT] * wanted,
                                 (columns, repetitions, answer.complaints))
        for options in ("-Cr10", "-Cr20", "-Cr100"):
            walked = self.manager.bulk_walk(mib.oid("tsDiskName"), options)
            self.assertEqual([len(each.value) for each in walked.bindings], [LONGEST_TEXT] * 120, options)

    def test_more_bindings_than_a_tool_would_send(self):
        """Already the names and numbers of 1200 bindings make an answer too long, and with their ranges an error too.
        From about 1260 on the request itself is longer than what the agent library takes."""
        for count, column, wanted in ((1000, "tsDiskEnclIndex", 0), (1200, "tsDiskEnclIndex", self.TOO_BIG),
                                      (1200, "tsDiskName", self.TOO_BIG), (1300, "tsDiskEnclIndex", self.TOO_BIG),
                                      (2500, "tsDiskEnclIndex", self.TOO_BIG)):
            self.assertEqual(self.error_of_get(self.names(count, column)), wanted, (count, column))

    def error_of_get(self, oids):
        pdu = berWriter.pdu(berWriter.GET, 1, [(oid, berWriter.NULL) for oid in oids])
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as link:
            link.settimeout(20 * waiting.PATIENCE)
            link.sendto(berWriter.message("2c", "public", pdu), ("127.0.0.1", 161))
            message = ber.Reader(link.recv(65535)).inner(ber.SEQUENCE)
        message.integer()
        message.element(ber.OCTETS)
        answer = message.inner(ber.RESPONSE_TAG)
        answer.integer()
        return answer.integer()


class HostileStart(story.Story):
    """The same at the start, when the store is empty."""

    def setUp(self):
        self.begin()
        self.array.start()

    def test_what_the_start_can_do_without(self):
        self.array.fault("error", "ObjectNotAvailable", "no page pools", "on", "TsDiskConfiguration")
        self.array.fault("error", "Busy", "not now", "on", "TsDiskFolderStorageUsage")
        self.array.fault("no-objects", "on", "TsUps")
        self.daemon.start()
        self.assertIn("could not get table info for tsDiskConfig: perhaps there are no pagepools", self.daemon.log())
        walked = self.manager.bulk_walk(mib.ENTERPRISE, "-Cr20").oids()
        for name, there in (("tsDiskConfig", False), ("tsUPS", False), ("tsDisk", True), ("tsDiskFolder", True)):
            root = mib.table_oid(name) + "."
            self.assertEqual(any(oid.startswith(root) for oid in walked), there, name)
        # The row number of a folder's usage is there, and none of its values.
        usage = {oid for oid in walked if oid.startswith(mib.table_oid("tsFolderUsage") + ".")}
        folders = self.array.dump()["TsDiskFolder"]
        plain = [row for row, each in enumerate(folders, 1) if each["Index"] not in ("1", "69696969")]
        for row in plain:
            self.assertIn(mib.oid("tsFolderUsageNbr", row), usage)
            self.assertNotIn(mib.oid("tsFolderUsageTotalGb", row), usage)


if __name__ == "__main__":
    story.tell()
