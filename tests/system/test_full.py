"""An array with every table at its capacity: samples of every column, last rows, ends of tables, memory."""

import os
import random
import re
import unittest

from harness import machine, mib, story

MEMORY_LIMIT_KIB = 64 * 1024
BINDINGS_A_REQUEST = 16


def instances(column, random_source):
    """First, last and some other instances of a column that is filled to its capacity."""
    table = column.table
    if table is None:
        return [(0,)]
    if not table.parent:
        return sorted({(1,), (table.rows,), (random_source.randint(1, table.rows),)})
    return sorted({(1, 1), (1, table.rows), (table.parents, 1), (table.parents, table.rows),
                   (random_source.randint(1, table.parents), random_source.randint(1, table.rows))})


def in_portions(items):
    return [items[begin:begin + BINDINGS_A_REQUEST] for begin in range(0, len(items), BINDINGS_A_REQUEST)]


class AFullArray(story.SharedStory):
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
        self.assertEqual(len(self.expected), mib.MIB.total_variables() - 1)  # sysServices is snmpd's own

    def test_samples_of_every_column(self):
        oids = [mib.oid(column.name, *instance) for column in self.below_the_enterprise()
                for instance in instances(column, self.random)]
        self.assertGreater(len(oids), 400)
        for portion in in_portions(oids):
            served = {b.oid: (b.type, b.value) for b in self.manager.get(*portion).bindings}
            self.assertEqual(served, {oid: self.expected[oid] for oid in portion})

    def test_from_each_columns_last_row_the_walk_goes_on_with_the_next_column(self):
        columns = self.below_the_enterprise()
        steps = [(mib.oid(column.name, *instances(column, self.random)[-1]),
                  mib.oid(after.name, *instances(after, self.random)[0]))
                 for column, after in zip(columns, columns[1:])]
        for portion in in_portions(steps):
            answer = self.manager.get_next(*(begin for begin, _ in portion))
            self.assertEqual([(b.oid, b.type, b.value) for b in answer.bindings],
                             [(end, *self.expected[end]) for _, end in portion])

    def test_behind_the_last_row_there_is_nothing(self):
        oids = []
        for column in self.below_the_enterprise():
            if column.table is None:
                oids.append(mib.oid(column.name, 1))
            elif not column.table.parent:
                oids += [mib.oid(column.name, column.table.rows + 1), mib.oid(column.name, 0)]
            else:
                oids += [mib.oid(column.name, 1, column.table.rows + 1),
                         mib.oid(column.name, column.table.parents + 1, 1), mib.oid(column.name, 1)]
        for portion in in_portions(oids):
            self.assertEqual([(b.oid, b.type) for b in self.manager.get(*portion).bindings],
                             [(oid, "noSuchInstance") for oid in portion])

    def test_the_last_rows_of_the_largest_table_come_in_bulk(self):
        begin = mib.oid("tsAlertMessage", 2, 8981)
        answer = self.manager.get_bulk(20, begin)
        wanted = [mib.oid("tsAlertMessage", 2, row) for row in range(8982, 9001)] + [mib.oid("tsAlertType", 1, 1)]
        self.assertEqual([(b.oid, b.type, b.value) for b in answer.bindings],
                         [(oid, *self.expected[oid]) for oid in wanted])
        last = self.manager.get_next(mib.oid("tsAlertActive", 2, 9000)).bindings[0]
        self.assertFalse(last.oid.startswith(mib.ENTERPRISE + "."), last)

    def test_one_object_more_than_the_capacity_changes_nothing(self):
        before = self.manager.get(mib.oid("tsCtlrTempName", 2, 7), mib.oid("tsEnclAlarmName", 100, 1)).bindings
        self.array.fault("too-many", "on", "TsControllerTemperatureSensor")
        self.array.fault("too-many", "on", "TsEnclosureAudibleAlarm")
        for kind in ("TsControllerTemperatureSensor", "TsEnclosureAudibleAlarm"):
            self.array.wait_until_struck(kind, 180)
        self.array.clear_faults()
        first = self.array.first("TsController")
        name = self.array.get("TsController", first, "Name")
        for text in ("renamed", name):  # a change that is seen afterwards: the answers above have been merged
            self.array.set("TsController", first, "Name", text)
            self.manager.wait_for_value(mib.oid("tsCtlrName", 1), text, 180)
        after = self.manager.get(mib.oid("tsCtlrTempName", 2, 7), mib.oid("tsEnclAlarmName", 100, 1)).bindings
        self.assertEqual(before, after)

    @unittest.skipIf(os.environ.get("SNMPSUBAGENT_SANITIZED"), "sanitizers need memory of their own")
    def test_memory_stays_within_its_limit(self):
        status = machine.read_file(f"/proc/{self.daemon.pid()}/status")
        peak = int(re.search(r"^VmHWM:\s+(\d+) kB", status, re.MULTILINE).group(1))
        self.assertLessEqual(peak, MEMORY_LIMIT_KIB, f"peak of {peak} KiB")


if __name__ == "__main__":
    story.tell()
