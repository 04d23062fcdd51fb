"""Responses that are too long are truncated or rejected with tooBig, but always sent."""

import socket

from harness import array, ber, berWriter, manager, mib, systemTest, waiting
from harness.expected import MAX_STRING


class LongStrings(systemTest.SharedSystemTest):
    """All disks have names of maximum length, so that few fit in a datagram. Each request needs a response: if the
    master agent drops one, it disconnects the daemon."""

    MAX_BULK = 20  # maxGetbulkResponses in the snmpd.conf of the sandbox and the package

    @classmethod
    def launch(cls):
        objects = array.preset("typical")
        for disk in objects["TsDisk"]:
            disk["Name"] += "x" * MAX_STRING
        cls.array.start(objects=objects)
        cls.daemon.start()
        cls.pids = (cls.daemon.pid(), cls.daemon.snmpd_pid())

    def tearDown(self):
        self.assertEqual(len(self.manager.value(mib.oid("tsDiskName", 1))), MAX_STRING)
        self.assertEqual((self.daemon.pid(), self.daemon.snmpd_pid()), self.pids)

    @staticmethod
    def names(count, column="tsDiskName"):
        return [mib.oid(column, row % 120 + 1) for row in range(count)]

    def test_values_that_fit_are_returned_and_more_are_rejected(self):
        for read in (self.manager.get, self.manager.get_next):
            for count in (8, 16, 20):
                lengths = [len(each.value) for each in read(*self.names(count)).bindings]
                self.assertEqual(lengths, [MAX_STRING] * count, read.__name__)
            for count in (21, 40, 100):
                self.assertEqual(read(*self.names(count)).error, "tooBig", (read.__name__, count))
        version1 = manager.Manager(version="1")
        self.assertEqual(len(version1.get(*self.names(20)).bindings), 20)
        self.assertNotEqual(version1.get(*self.names(21)).error, "")

    def test_a_getbulk_always_gets_a_response(self):
        for columns in (1, 2, 7, 20):
            for repetitions in (8, 16, 40, 100):
                response = self.manager.get_bulk(repetitions, *self.names(columns))
                wanted = min(columns * repetitions, self.MAX_BULK // columns * columns)
                self.assertEqual([len(each.value) for each in response.bindings[:wanted]], [MAX_STRING] * wanted,
                                 (columns, repetitions, response.errors))
        for options in ("-Cr10", "-Cr20", "-Cr100"):
            walked = self.manager.bulk_walk(mib.oid("tsDiskName"), options)
            self.assertEqual([len(each.value) for each in walked.bindings], [MAX_STRING] * 120, options)

    def test_more_bindings_than_a_tool_would_send(self):
        """With 1200 bindings, names and numbers alone exceed the size of a response, and with the ranges even that of an
        error. From about 1260 bindings on, the request itself is longer than the agent library accepts."""
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
    systemTest.main()
