"""A change in the array is seen over SNMP after the refresh that the schedule gives: what is read every few
seconds, what the second thread fetches every few minutes, rows that come and go."""

import time
import unittest

from harness import daemon, mib, story, waiting, wallClock
from harness.expected import Expectation

FOREGROUND_LIMIT_S = 180
BACKGROUND_LIMIT_S = 420


class Reading(story.SharedStory):
    def served(self, root):
        return {b.oid: (b.type, b.value) for b in self.manager.bulk_walk(root, "-Cr20").bindings}

    def expected(self, root):
        return {oid: value for oid, value in Expectation(self.array.dump()).values.items()
                if oid.startswith(root + ".")}

    def wait_until_it_shows(self, table, limit_s):
        root = mib.table_oid(table)
        expected = self.expected(root)
        waiting.wait_until(lambda: self.served(root) == expected, f"table {table} shows the change", limit_s)


class AChangingArray(Reading):
    def test_changes_show(self):
        """One long test: the waits for all tables run side by side."""
        controller = self.array.dump()["TsController"][1]["Index"]
        disks = [each["Index"] for each in self.array.dump()["TsDisk"]]
        last_row = len(disks)
        self.array.set("TsController", controller, "Name", "Renamed controller")
        self.array.fail("TsController", controller, "Degraded")
        self.array.fail("TsDisk", disks[2])
        self.array.tell("remove", "TsDisk", disks[1])  # the rows behind it move up
        self.array.tell("add", "TsVolume")
        self.array.set("TsUps", self.array.dump()["TsUps"][0]["Index"], "BatteryLife", "3")
        self.array.set("Tessera", 1, "ManagementIp", "192.0.2.77")

        for table in ("tsCtlr", "tsTs"):
            self.wait_until_it_shows(table, FOREGROUND_LIMIT_S)
        self.manager.wait_for_value(mib.scalar("managementUrl"), "https://192.0.2.77", FOREGROUND_LIMIT_S)
        # Every row is still served as it was: the background tables have not been read again yet, or whole.
        self.assertIn(len(self.served(mib.oid("tsDiskNbr"))), (last_row, last_row - 1))

        for table in ("tsDisk", "tsVolume", "tsUPS", "tsObjectCount"):
            self.wait_until_it_shows(table, BACKGROUND_LIMIT_S)
        gone = self.manager.get(mib.oid("tsDiskName", last_row), mib.oid("tsDiskName", last_row - 1))
        self.assertEqual([b.type for b in gone.bindings], ["noSuchInstance", "STRING"])
        after = self.manager.get_next(mib.oid("tsDiskNbr", last_row - 1)).bindings[0]
        self.assertEqual(after.oid, mib.oid("tsDiskStatus", 1))
        self.assertEqual(self.daemon.lines_with("Error"), [])

        self.array.recover("TsController", controller)
        self.array.recover("TsDisk", disks[2])
        self.wait_until_it_shows("tsCtlr", FOREGROUND_LIMIT_S)
        self.wait_until_it_shows("tsDisk", BACKGROUND_LIMIT_S)


@unittest.skipUnless(wallClock.CAN_BE_SET, "libfaketime cannot be the first library beside a sanitizer")
class AClockThatIsSet(Reading):
    """What was read in a time that has not come yet would not be read again before it."""

    AHEAD_S = 8 * 86400

    @classmethod
    def launch(cls):
        wallClock.set_to(cls.AHEAD_S)
        cls.daemon.environment = lambda: {**daemon.Daemon.environment(), **wallClock.environment()}
        super().launch()

    def test_refreshes_go_on(self):
        day = time.strftime("%-m/%-d/%Y", time.localtime(time.time() + self.AHEAD_S))
        self.assertIn(day, self.daemon.log())
        wallClock.set_to(0)
        controller = self.array.dump()["TsController"][1]["Index"]
        self.array.set("TsController", controller, "Name", "Renamed controller")
        self.wait_until_it_shows("tsCtlr", FOREGROUND_LIMIT_S)


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
