"""An array with every table at its capacity: its last rows, and the memory that the daemon takes."""

import os
import re
import unittest

from harness import machine, mib, systemTest

MEMORY_LIMIT_KIB = 64 * 1024


class FullArray(systemTest.SharedSystemTest):
    PRESET = "full"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.expected = cls.wait_until_settled()

    def test_the_last_rows_are_served(self):
        for name, *instance in (("tsAlertStatus", 2, 9000), ("tsEnclTempStatus", 100, 22), ("tsVolumeName", 2000)):
            binding, = self.manager.get(mib.oid(name, *instance)).bindings
            self.assertEqual((binding.type, binding.value), self.expected[binding.oid])

    @unittest.skipIf(os.environ.get("SNMPSUBAGENT_SANITIZED"), "sanitizers need additional memory")
    def test_memory_stays_within_its_limit(self):
        status = machine.read_file(f"/proc/{self.daemon.pid()}/status")
        peak = int(re.search(r"^VmHWM:\s+(\d+) kB", status, re.MULTILINE).group(1))
        self.assertLessEqual(peak, MEMORY_LIMIT_KIB, f"peak of {peak} KiB")


if __name__ == "__main__":
    systemTest.main()
