"""The service script for FreeBSD, with stubs of FreeBSD's shell functions and of the daemon."""

import os
import shutil
import stat
import subprocess
import unittest

from harness import daemon, machine

SCRIPT = os.path.join(machine.REPOSITORY, "packaging", "freebsd", "snmpsubagent")
SUBR = os.path.join(machine.REPOSITORY, "tests", "system", "harness", "rc.subr")
PROGRAM = "/usr/local/sbin/snmpSubagent"
DAEMON = f"""#!/bin/sh
[ "$SNMP_PERSISTENT_DIR" = /var/db/snmpsubagent ] || exit 1
sh -c 'while :; do sleep 0.1; done' {PROGRAM} >/dev/null 2>&1 & echo $! >{daemon.PID_FILE}
"""
# FreeBSD's stat -f '%HT %u' FILE.
STAT = """#!/bin/sh
exec /usr/bin/stat -c '%F %u' "$3" | sed 's/^directory/Directory/; s/^regular.* file/Regular File/'
"""
RUNNING, GONE = True, False


class RcScript(unittest.TestCase):
    def setUp(self):
        shutil.copy(SUBR, "/etc/rc.subr")
        for path, text in ((PROGRAM, DAEMON),
                           ("/usr/local/bin/snmpSubagent-checkconf", "#!/bin/sh\ntest ! -e /tmp/bad\n"),
                           ("/usr/local/bin/logger", "#!/bin/sh\n"), ("/usr/local/bin/stat", STAT),
                           ("/usr/local/etc/snmpsubagent/start.conf", "isdebugmode=false\n")):
            os.makedirs(os.path.dirname(path), exist_ok=True)
            machine.write_file(path, text, 0o755)
        for path in (machine.DAEMON_CONF, machine.SNMPD_CONF, machine.SESSION_KEY):
            machine.write_file(path, "")
        for path in ("/tmp/bad", machine.MODE_CONF, "/var/run/snmpsubagent.started"):
            machine.remove_file(path)
        self.enable("YES")

    def tearDown(self):
        self.kill_daemon()

    def enable(self, word):
        machine.write_file("/etc/rc.conf", f"snmpsubagent_enable={word}\n")

    def daemon_runs(self):
        pid = machine.read_file(daemon.PID_FILE).strip()
        return bool(pid) and PROGRAM in machine.read_file(f"/proc/{pid}/cmdline")

    def kill_daemon(self):
        if self.daemon_runs():
            os.kill(int(machine.read_file(daemon.PID_FILE)), 9)
        machine.remove_file(daemon.PID_FILE)

    def expect(self, *steps):
        """Each step: command, whether the daemon runs afterwards, status, pattern of its output."""
        for command, runs, status, output in steps:
            done = subprocess.run(["/bin/sh", SCRIPT, command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, text=True, timeout=60, check=False)
            self.assertRegex(done.stdout, f"^{output}$", command)
            self.assertEqual((done.returncode, self.daemon_runs()), (status, runs), command)

    def test_check_restarts_a_daemon_that_has_exited_until_it_is_stopped(self):
        self.expect(("check", GONE, 0, ""), ("start", RUNNING, 0, "Starting snmpsubagent.\n"),
                    ("check", RUNNING, 0, ""))
        self.kill_daemon()
        self.expect(("check", RUNNING, 0, ""), ("stop", GONE, 0, "Stopping snmpsubagent.\n"), ("check", GONE, 0, ""),
                    ("faststart", RUNNING, 0, ""))
        self.kill_daemon()
        self.expect(("stop", GONE, 1, "snmpsubagent not running.*\n"), ("check", GONE, 0, ""))

    def test_a_disabled_service_starts_only_with_one_and_prints_nothing_for_cron(self):
        self.enable("NO")
        self.expect(("start", GONE, 0, "Cannot 'start'.*\n"), ("check", GONE, 0, ""),
                    ("onestart", RUNNING, 0, "Starting.*\n"))
        self.kill_daemon()
        self.expect(("check", GONE, 0, ""))

    def test_it_does_not_start_without_its_files_or_with_wrong_settings(self):
        for path in (machine.DAEMON_CONF, machine.SNMPD_CONF, machine.SESSION_KEY):
            os.rename(path, path + ".away")
            self.expect(("start", GONE, 1, f".*{path} is not readable.\n"))
            os.rename(path + ".away", path)
        machine.write_file("/tmp/bad", "")
        self.expect(("start", GONE, 1, ".*failed precmd.*\n"), ("check", GONE, 0, ""))
        os.unlink("/tmp/bad")
        self.expect(("start", RUNNING, 0, "Starting.*\n"), ("restart", RUNNING, 0, "Stopping.*\nStarting.*\n"))
        # The daemon's fixed paths exist.
        self.assertEqual(machine.read_file(machine.MODE_CONF), "isdebugmode=false\n")
        for path, mode in (("/mnt/root", 0o755), ("/mnt/cores/logs", 0o750), ("/var/db/snmpsubagent", 0o700)):
            self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), mode, path)


if __name__ == "__main__":
    machine.require_sandbox("namespaces", "user")
    if not machine.has_users():
        machine.skip("needs a user besides root")
    unittest.main(verbosity=2)
