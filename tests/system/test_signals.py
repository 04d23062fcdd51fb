"""The daemon as a process: background, pid file, exit."""

import os
import signal

from harness import daemon, machine, systemTest

SIGTERM_LINE = "(((((((((((((((((( SIGTERM ))))))))))))))))))))"


class DaemonProcess(systemTest.SystemTest):
    def setUp(self):
        self.begin()
        self.array.start()

    def test_it_goes_into_the_background(self):
        self.daemon.start()
        pid = self.daemon.pid()
        self.assertEqual(machine.read_file(daemon.PID_FILE), str(pid))
        self.assertEqual(os.readlink(f"/proc/{pid}/cwd"), "/mnt/root")
        self.assertEqual([os.readlink(f"/proc/{pid}/fd/{number}") for number in range(3)], ["/dev/null"] * 3)
        self.assertEqual(int(self.status(pid, "SigIgn"), 16) & 1, 1, "SIGHUP is ignored")
        self.assertEqual(self.status(pid, "Umask"), "0077")
        # It is in a new session but not its leader, so it cannot acquire a terminal.
        session, group = os.getsid(pid), os.getpgid(pid)
        self.assertNotIn(pid, (session, group))
        self.assertNotEqual(session, os.getsid(0))
        self.assertEqual(machine.read_file(f"/proc/{pid}/stat").rsplit(")", 1)[1].split()[4], "0")

    @staticmethod
    def status(pid, name):
        return dict(line.split(":\t", 1) for line in machine.read_file(f"/proc/{pid}/status").splitlines())[name].strip()

    def test_sigterm_makes_it_exit_cleanly(self):
        self.daemon.start_in_foreground()
        self.daemon.signal(signal.SIGTERM)
        self.assertEqual(self.daemon.wait_for_exit_status(), 0)
        log = self.daemon.log()
        self.assertIn(SIGTERM_LINE, log)
        self.assertGreater(log.find(daemon.EXITING), log.find(SIGTERM_LINE))
        self.assertNotIn("will try a restart", log)
        for name in ("snmpd", "snmpSubagent", "sh", "sleep"):
            self.assertEqual(machine.processes_named(name), [], name)
        self.assertFalse(os.path.exists(daemon.PID_FILE))


if __name__ == "__main__":
    systemTest.main()
