"""Answers that are too long: they are cut or refused, and nobody is left without one."""

import socket

from harness import array, ber, berWriter, manager, mib, story, waiting
from harness.expected import LONGEST_TEXT


class LongTexts(story.SharedStory):
    """An array whose disks all have names that no datagram would hold many of. Nobody may be left without an answer:
    of what the master agent drops it gives the daemon up for."""

    GREATEST_BULK = 20  # the snmpd.conf of the sandbox and of the package: so many values in all

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
        for count, column, wanted in ((1000, "tsDiskEnclIndex", "noError"), (1200, "tsDiskEnclIndex", "tooBig"),
                                      (1200, "tsDiskName", "tooBig"), (1300, "tsDiskEnclIndex", "tooBig"),
                                      (2500, "tsDiskEnclIndex", "tooBig")):
            self.assertEqual(self.error_of_get(self.names(count, column)), wanted, (count, column))

    def error_of_get(self, oids):
        pdu = berWriter.pdu(berWriter.GET, 1, [(oid, berWriter.NULL) for oid in oids])
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as link:
            link.settimeout(20 * waiting.PATIENCE)
            link.sendto(berWriter.message("2c", "public", pdu), ("127.0.0.1", 161))
            return ber.read_response(link.recv(65535)).error


if __name__ == "__main__":
    story.tell()
