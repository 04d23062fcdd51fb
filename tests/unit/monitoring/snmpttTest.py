"""Checks that SNMPTT logs one line for every notification of the MIB module, with its severity and variables.
Usage: snmpttTest.py BUILD-DIRECTORY"""

import os
import re
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "../mib"), os.path.join(HERE, "../../system")]
import moduleFacts  # noqa: E402  (found through the line above)
from harness.monitors import SNMPTT_INI  # noqa: E402

CLEARED, ACTIVE = "1", "2"
# Notifications without a critical state, or without a state.
LIGHTER = {"tsMiscAlert", "tsServerStatusChange", "tsLocalPortCondStatusChange", "tsSIDeviceStatusChange"}
build_folder = None


def status_of(name, objects):
    """Returns the variable that contains the object's status."""
    own = name.removesuffix("Change").replace("MonitoredUPS", "UPS")
    return "trapCompStatus" if "trapCompStatus" in objects else own if own in objects else "tsTsPortsBal"


class SnmpttTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        facts = moduleFacts.read(os.path.join(build_folder, "mib", moduleFacts.MODULE + ".txt"))
        cls.nodes, cls.notifications = facts["nodes"], facts["notifications"]

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.ini = os.path.join(self.folder, "snmptt.ini")
        events = os.path.join(build_folder, "monitoring", "snmptt", "tessera.conf")
        with open(self.ini, "w", encoding="utf-8") as file:
            file.write(SNMPTT_INI.format(log=os.path.join(self.folder, "log"), events=events))

    def run_snmptt(self, *options, text=""):
        done = subprocess.run(["snmptt", f"--ini={self.ini}", *options], input=text, capture_output=True, text=True,
                              check=False, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def lines_of(self, name, **values):
        """Returns what SNMPTT logs about a notification from snmptrapd."""
        log = os.path.join(self.folder, "log")
        with open(log, "w", encoding="utf-8"):
            pass
        oid, objects = self.notifications[name]
        bindings = [f".{self.nodes[each]['oid']}.1 {values.get(each, 'value-of-' + each)}" for each in objects]
        head = ["array1", "UDP: [192.0.2.1]:1->[192.0.2.2]:162", ".1.3.6.1.2.1.1.3.0 0:0:00:01.00",
                f".1.3.6.1.6.3.1.1.4.1.0 .{oid}"]
        self.run_snmptt(text="\n".join([*head, *bindings, ""]))
        with open(log, encoding="utf-8") as file:
            return file.read().splitlines()

    def assert_one(self, severity, name, **values):
        lines = self.lines_of(name, **values)
        self.assertEqual(len(lines), 1, f"{name} {values}: {lines}")
        self.assertIn(f" {severity} ", lines[0])
        self.assertEqual("Over: " in lines[0], values.get("trapAlertState") in (CLEARED, "cleared(1)"), lines[0])
        for each in self.notifications[name][1]:
            self.assertRegex(lines[0], rf" {each}={re.escape(values.get(each, 'value-of-' + each))}( |$)")

    def test_exactly_one_event_matches_in_each_state(self):
        for name, (_, objects) in self.notifications.items():
            if "trapAlertState" not in objects:
                self.assert_one("NORMAL", name)
                continue
            status = status_of(name, objects)
            self.assert_one("NORMAL", name, trapAlertState=CLEARED, **{status: "2"})
            self.assert_one("WARNING" if name in LIGHTER else "CRITICAL", name, trapAlertState=ACTIVE, **{status: "2"})


if __name__ == "__main__":
    build_folder = sys.argv.pop(1)
    unittest.main()
