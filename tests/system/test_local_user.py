"""A malicious local user, who creates files in /tmp first and tries everything within reach. He must not read a secret,
change a response or stop the service. The packages set up the machine."""

import contextlib
import os
import socket
import time
import unittest

from harness import daemon, debian, machine, manager, mib
from harness.packageTest import UNIT, PackageTest

USER = ("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups")
PROGRAM = "/usr/sbin/snmpSubagent"
CONNECT = "import socket, sys; socket.socket(socket.AF_UNIX).connect(sys.argv[1])"
SECRETS = (machine.SESSION_KEY, machine.DAEMON_CONF, machine.SNMPD_CONF, daemon.LOG, "/run/snmpSubagent.pid",
           "/var/lib/snmpsubagent/snmpd.conf")
SOCKETS = ("/var/agentx/master", "/tmp/snmpsubagent.sock", "/tmp/apimgr.sock")
DAMAGE = (("rm", "-f", "/tmp/snmpsubagent.sock"), ("mv", "/tmp/apps", "/tmp/mine"), ("rm", "-f", machine.MODE_CONF),
          ("touch", "/tmp/apps/mine"), ("touch", "/var/agentx/mine"), ("touch", "/run/snmpsubagent/mine"),
          ("touch", "/var/lib/snmpsubagent/snmp.conf"), ("touch", "/mnt/root/mine"), ("rm", "-f", "/run/snmpd.pid"))


class LocalUser(PackageTest):
    def as_user(self, *words):
        """Returns the exit status of a command that the user runs."""
        return self.host.status(*USER, *words)

    def main_pid(self):
        return int(self.host.unit(UNIT, "MainPID"))

    def test_1_files_created_first_in_tmp_do_not_disturb_the_service(self):
        for words in (("mkdir", "/tmp/apps"), ("ln", "-s", "/dev/zero", machine.MODE_CONF),
                      ("mkdir", "-p", "/tmp/snmpsubagent.sock/full")):
            self.assertEqual(self.as_user(*words), 0)
        self.host.run("dpkg", "--install", *self.files)
        self.host.write(machine.SESSION_KEY, "a-key-of-the-platform\n", 0o600)
        self.start_array("--serial", "1")
        self.systemctl("enable", "--now", UNIT)
        self.wait_for_next_start(0)
        self.assert_served_by_one()

    def test_2_secrets_and_sockets_are_inaccessible(self):
        for path in SECRETS:
            self.assertTrue(self.host.exists(path), path)
            self.assertNotEqual(self.as_user("cat", path), 0, path)
        for path in SOCKETS:
            self.assertEqual(self.host.status("python3", "-c", CONNECT, path), 0, path)
            self.assertNotEqual(self.as_user("python3", "-c", CONNECT, path), 0, path)
        for name in ("snmpSubagent", "snmpd"):
            self.assertIn("Umask:\t0077", self.host.run("cat", f"/proc/{self.host.pids(name)[0]}/status"), name)

    def test_3_damage_is_impossible(self):
        before = self.main_pid()
        for words in DAMAGE:
            self.assertNotEqual(self.as_user(*words), 0, words)
        self.as_user(PROGRAM)
        with contextlib.ExitStack() as idle:
            for _ in range(100):
                idle.enter_context(socket.create_connection(("127.0.0.1", 35003)))
            with socket.create_connection(("127.0.0.1", 35003), timeout=4) as watcher:
                watcher.sendall(b"ping")
                self.assertEqual(watcher.recv(4), b"ping")
        self.assertEqual(self.main_pid(), before)
        self.assert_served_by_one()

    def test_4_a_second_daemon_and_a_wrong_option_leave_the_first_alone(self):
        before = (self.main_pid(), self.host.pids("snmpd"))
        for words, status in (((PROGRAM,), 1), ((PROGRAM, "--nonsense"), 2), ((PROGRAM, "--help"), 0)):
            self.assertEqual(self.host.status(*words), status, words)
        self.assertEqual((self.main_pid(), self.host.pids("snmpd")), before)
        self.assert_served_by_one()

    def test_5_a_daemon_that_hangs_is_replaced_but_not_one_that_waits(self):
        self.host.write(f"/etc/systemd/system/{UNIT}.d/watchdog.conf", "[Service]\nWatchdogSec=6\n")
        self.systemctl("daemon-reload")
        start_count = self.start_count()
        self.systemctl("restart", UNIT)
        self.wait_for_next_start(start_count)
        before = self.main_pid()
        self.host.run("kill", "-STOP", *self.host.pids("arraySim"))
        time.sleep(10)  # longer than the watchdog's timeout
        self.assertEqual(self.main_pid(), before)
        self.host.run("kill", "-CONT", *self.host.pids("arraySim"))
        self.assertTrue(manager.Manager(timeout_s=30).value(mib.oid("tsCtlrName", 1)))
        start_count = self.start_count()
        self.host.run("kill", "-STOP", before)
        self.wait_for_next_start(start_count)
        self.assertNotEqual(self.main_pid(), before)

    def test_6_files_left_in_tmp_do_not_prevent_the_removal(self):
        self.systemctl("stop", UNIT)
        self.host.run("rm", "-f", "/tmp/snmpsubagent.sock")
        self.assertEqual(self.as_user("mkdir", "/tmp/snmpsubagent.sock"), 0)
        self.host.run("dpkg", "--purge", "snmpsubagent")
        self.assertTrue(os.path.isdir(debian.ROOT + "/tmp/snmpsubagent.sock"), "it belongs to the user")


if __name__ == "__main__":
    machine.require_sandbox("namespaces")
    unittest.main(verbosity=2, failfast=True)
