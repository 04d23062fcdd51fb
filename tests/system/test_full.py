"""An array with every table at its capacity: samples of every column, and the memory use of the daemon."""

import os
import random
import re
import unittest

from harness import machine, mib, systemTest

MEMORY_LIMIT_KIB = 64 * 1024
BINDINGS_PER_REQUEST = 16


def instances(column, random_source):
    """Returns the first, the last and some other instances of a column that is filled to its capacity."""
    table = column.table
    if table is None:
        return [(0,)]
    if not table.parent:
        return sorted({(1,), (table.rows,), (random_source.randint(1, table.rows),)})
    return sorted({(1, 1), (1, table.rows), (table.parents, 1), (table.parents, table.rows),
                   (random_source.randint(1, table.parents), random_source.randint(1, table.rows))})


def in_portions(items):
    return [items[begin:begin + BINDINGS_PER_REQUEST] for begin in range(0, len(items), BINDINGS_PER_REQUEST)]


class FullArray(systemTest.SharedSystemTest):
    PRESET = "full"

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.expected = cls.wait_until_settled()
        seed = os.environ.get("SNMPSUBAGENT_SEED", "20")
        cls.random = random.Random(seed)

    def below_the_enterprise(self):
        return [column for column in mib.MIB.columns if column.oid[:7] == mib.arcs("1.3.6.1.4.1.913")]

    def test_every_column_is_filled_to_its_capacity(self):
        self.assertEqual(len(self.expected), mib.MIB.total_variables() - 1)  # snmpd serves sysServices itself

    def test_samples_of_every_column(self):
        oids = [mib.oid(column.name, *instance) for column in self.below_the_enterprise()
                for instance in instances(column, self.random)]
        self.assertGreater(len(oids), 400)
        for portion in in_portions(oids):
            served = {b.oid: (b.type, b.value) for b in self.manager.get(*portion).bindings}
            self.assertEqual(served, {oid: self.expected[oid] for oid in portion})

    @unittest.skipIf(os.environ.get("SNMPSUBAGENT_SANITIZED"), "sanitizers need additional memory")
    def test_memory_stays_within_its_limit(self):
        status = machine.read_file(f"/proc/{self.daemon.pid()}/status")
        peak = int(re.search(r"^VmHWM:\s+(\d+) kB", status, re.MULTILINE).group(1))
        self.assertLessEqual(peak, MEMORY_LIMIT_KIB, f"peak of {peak} KiB")


if __name__ == "__main__":
    systemTest.main()
