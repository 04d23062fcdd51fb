"""The frame of a test file: one array, one daemon, one manager for all its tests, or fresh ones for each."""

import sys
import unittest

from . import array, daemon, expected, machine, manager, mib


class Story(unittest.TestCase):
    """Each test starts what it needs; afterwards nothing of it is left. A failed test prints the log's end."""

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
            machine.end_processes_named("snmpSubagent", "snmpd", "arraySim")
            machine.remove_file(daemon.PID_FILE)
            cls.daemon.check_sanitizers()


class SharedStory(Story):
    """One array and one daemon serve all tests of the class, which must leave them as they found them."""

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
        """What is derived from other tables follows with the schedule, some seconds after the start. Returns what
        a manager must read from then on: {OID: (type, value)}."""
        values = expected.Expectation(cls.array.dump()).values
        for name in ("globalStatus", "worstAlertNbr", "sysContact", "sysName", "sysLocation"):
            cls.manager.wait_for_value(mib.scalar(name), values[mib.scalar(name)][1], 180)
        return values

    @classmethod
    def tearDownClass(cls):
        cls.end()


def tell(*ways):
    """Runs the tests of the file: what a test file calls at its end. See require_sandbox for the ways."""
    machine.require_sandbox(*ways)
    unittest.main(verbosity=2)
