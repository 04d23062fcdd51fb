"""Uninterrupted service while the array hangs and while there are too many requests."""

import os
import socket
import threading
import time
import unittest

from harness import berWriter, manager, mib, systemTest, waiting

AGENT = ("127.0.0.1", 161)
NAME = mib.scalar("productName")
SANITIZED = os.environ.get("SNMPSUBAGENT_SANITIZED")


class Service(systemTest.SharedSystemTest):
    PRESET = "typical"

    @classmethod
    def launch(cls):
        super().launch()
        cls.pids = cls.daemon.pid(), cls.daemon.snmpd_pid()
        cls.impatient = manager.Manager(timeout_s=1, retries=0)

    def tearDown(self):
        self.array.clear_faults()
        self.assertEqual((self.daemon.pid(), self.daemon.snmpd_pid()), self.pids)

    def served_until(self, condition, what, limit_s):
        """Sends one GET after the other, with a timeout of a second and no retry."""

        def is_met():
            self.assertEqual(self.impatient.value(NAME), "Vorn-Lumivant Tessera")
            return condition()

        waiting.wait_until(is_met, what, limit_s)

    @unittest.skipIf(SANITIZED, "a sanitized daemon takes too long to reject a request")
    def test_overload(self):
        columns = [mib.oid("tsDiskName", row) for row in range(1, 101)]
        large = berWriter.message("2c", "public", berWriter.pdu(
            berWriter.GET, 1, [(oid, berWriter.NULL) for oid in columns]))
        small = berWriter.message("2c", "public", berWriter.pdu(berWriter.GET, 1, [(columns[0], berWriter.NULL)]))
        for packet, per_second in ((small, 5000), (large, 700)):
            flood = threading.Thread(target=send, args=(packet, per_second, 12))
            flood.start()
            patient = manager.Manager(timeout_s=1, retries=3)
            while flood.is_alive():
                self.assertEqual(patient.value(NAME), "Vorn-Lumivant Tessera")
                time.sleep(0.5)
            flood.join()
        self.daemon.wait_for_log("overload is over: rejected")

    def test_z_a_hung_array(self):
        """Stops the daemon during an exchange, so it must be the last test."""
        self.array.fault("hang")
        self.served_until(lambda: self.daemon.lines_with("no response to request"), "a log line", 60)
        self.daemon.stop(5)
        self.assertTrue(self.daemon.lines_with("given up after"))
        type(self).pids = self.daemon.pid(), self.daemon.snmpd_pid()


def send(packet, per_second, seconds):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as link:
        begin, sent = time.monotonic(), 0
        while (elapsed := time.monotonic() - begin) < seconds:
            for _ in range(min(int(elapsed * per_second) - sent, 200)):
                link.sendto(packet, AGENT)
                sent += 1
            time.sleep(0.01)


if __name__ == "__main__":
    systemTest.main()
