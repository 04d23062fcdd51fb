"""Supervision of the master agent: it is killed, grows too large, or another one is already running."""

import contextlib
import os
import signal
import subprocess
import unittest

from harness import daemon, machine, mib, systemTest, waiting

RESTART = "main-session down, or error on agentx-ping, or failed self-test: will try a restart..."
TOO_LARGE = "snmpd mem usage too high: %d"
PS = "/usr/bin/ps"
FAKE_PS = "/tmp/fake-ps"


@contextlib.contextmanager
def fake_ps(rss):
    """Makes ps print this resident size for every process, in the sandbox only."""
    machine.write_file(FAKE_PS, f'#!/bin/sh\nfor last; do :; done\necho "    PID   RSS"\necho "  $last $(cat {FAKE_PS}.rss)"\n',
                       0o755)
    machine.write_file(FAKE_PS + ".rss", f"{rss}\n")
    subprocess.run(["mount", "--bind", FAKE_PS, PS], check=True)
    try:
        yield
    finally:
        subprocess.run(["umount", PS], check=True)


class MasterAgent(systemTest.SystemTest):
    def setUp(self):
        self.begin()
        self.array.start()

    def start(self, arguments=()):
        self.daemon.start(arguments=arguments)
        self.before = (self.daemon.pid(), self.daemon.snmpd_pid())
        self.name = self.array.dump()["TsController"][0]["Name"]

    def has_new_daemon(self):
        """Waits for the restart. False if the new daemon exited because snmpd was late, as on a busy machine."""
        self.daemon.wait_for_log(RESTART, 90)
        waiting.wait_until(lambda: len(self.daemon.lines_with(daemon.UP)) == 2 or
                           daemon.SNMPD_IS_LATE in self.daemon.log() and not self.daemon.is_running(),
                           "the new daemon serves", 90)
        return len(self.daemon.lines_with(daemon.UP)) == 2

    def assert_served_by_a_new_daemon(self):
        old_daemon, old_snmpd = self.before
        waiting.wait_until(lambda: not machine.is_running(old_daemon), "the old daemon has exited")
        # A child of the daemon has its name until it executes another program.
        waiting.wait_until(lambda: machine.processes_named("snmpSubagent") == [self.daemon.pid()], "one daemon runs")
        self.assertNotEqual(self.daemon.snmpd_pid(), old_snmpd)
        self.assertEqual(len(machine.processes_named("snmpd")), 1)
        self.assertEqual(self.manager.value(mib.oid("tsCtlrName", 1)), self.name)

    @unittest.skipIf(machine.SANDBOX_KIND == "container", "mounts another ps")
    def test_snmpd_grows_too_large(self):
        with fake_ps(50000):
            self.start()
            # Exactly the limit is allowed: nothing happens during two more tests of the master agent.
            checks = self.array.exchanges()
            waiting.wait_until(lambda: self.array.exchanges() >= checks + 6, "the daemon continues", 60)
            self.assertEqual(self.daemon.lines_with("mem usage"), [])
            machine.write_file(FAKE_PS + ".rss", "50001\n")
            self.daemon.wait_for_log(TOO_LARGE % 50001, 60)
            machine.write_file(FAKE_PS + ".rss", "9000\n")
            if not self.has_new_daemon():
                self.daemon.start()
            self.assert_served_by_a_new_daemon()

    def test_the_restart_keeps_the_arguments(self):
        arguments = ["first", "two words; touch /tmp/owned"]
        for _ in range(daemon.START_TRIES):
            self.start(arguments)
            os.kill(self.daemon.snmpd_pid(), signal.SIGKILL)
            if self.has_new_daemon():
                break
        self.assert_served_by_a_new_daemon()
        words = machine.read_file(f"/proc/{self.daemon.pid()}/cmdline").split("\0")
        self.assertEqual(words[1:3], arguments)
        self.assertFalse(os.path.exists("/tmp/owned"))

    def change_settings_of_snmpd(self, change):
        text = machine.read_file(machine.SNMPD_CONF)
        self.addCleanup(machine.write_file, machine.SNMPD_CONF, text)
        machine.write_file(machine.SNMPD_CONF, change(text))

    def test_the_self_test_communities(self):
        self.change_settings_of_snmpd(lambda text: text.replace("rocommunity public", "rocommunity secret")
                                      .replace("rwcommunity private", "rwcommunity deeper"))
        for ro, rw, works in (("secret", "x", True), ("**none**", "deeper", True), ("x", "deeper", False)):
            with self.subTest(ro=ro, rw=rw):
                machine.configure_daemon(rocommunity=ro, rwcommunity=rw)
                self.daemon.start(wait=works)
                if works:
                    self.daemon.stop()
                else:
                    self.daemon.wait_for_log("ERROR: timed out waiting to receive snmp-GET of self-test oid.", 60)
                    self.daemon.wait_until_exited()



if __name__ == "__main__":
    systemTest.main()
