"""Base classes of system tests: an array, a daemon and managers, shared by all tests of a class or new for each."""

import sys
import unittest

from . import array, daemon, expected, machine, manager, mib


class SystemTest(unittest.TestCase):
    """Each test starts what it needs. Afterwards everything is removed. A failed test prints the end of the log."""

    def setUp(self):
        self.begin()

    def tearDown(self):
        self.end()

    def run(self, result=None):
        before = len(result.failures) + len(result.errors) if result else 0
        super().run(result)
        if result and len(result.failures) + len(result.errors) > before:
            print(f"--- the daemon's log at the end of {self.id()}\n{daemon.Daemon.log_tail()}", file=sys.stderr)
        return result

    @classmethod
    def begin(cls):
        machine.configure_daemon()
        machine.remove_file(daemon.LOG)
        cls.array = array.Array()
        cls.daemon = daemon.Daemon()
        cls.manager = manager.Manager()
        cls.writer = manager.Manager(community="private")

    @classmethod
    def end(cls):
        try:
            cls.daemon.stop()
        finally:
            cls.array.stop()
            machine.kill_processes_named("snmpSubagent", "snmpd", "arraySim")
            machine.remove_file(daemon.PID_FILE)
            cls.daemon.check_sanitizers()


class SharedSystemTest(SystemTest):
    """All tests of the class share one array and one daemon, and must not leave changes behind."""

    PRESET = "small"

    def setUp(self):
        pass

    def tearDown(self):
        pass

    @classmethod
    def setUpClass(cls):
        try:
            cls.begin()
            cls.launch()
        except BaseException:
            print(f"--- the daemon's log\n{daemon.Daemon.log_tail()}", file=sys.stderr)
            cls.end()
            raise

    @classmethod
    def launch(cls):
        cls.array.start(cls.PRESET)
        cls.daemon.start()

    @classmethod
    def wait_until_settled(cls):
        """Waits for the values that are derived from other tables some seconds after the start. Returns what a manager
        must read from then on: {OID: (type, value)}."""
        values = expected.Expectation(cls.array.dump()).values
        for name in ("globalStatus", "worstAlertNbr", "sysContact", "sysName", "sysLocation"):
            cls.manager.wait_for_value(mib.scalar(name), values[mib.scalar(name)][1], 180)
        return values

    @classmethod
    def tearDownClass(cls):
        cls.end()


def main(*kinds):
    """Runs the tests of the calling file. See require_sandbox for the kinds."""
    machine.require_sandbox(*kinds)
    unittest.main(verbosity=2)
