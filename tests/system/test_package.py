"""The Debian packages, from installation to purge, on a Debian machine with systemd."""

import glob
import os
import re
import subprocess
import unittest

from harness import daemon, debian, machine, manager, mib, waiting
from harness.packageTest import NEWER, PLACES, UNIT, PackageTest

PROGRAM = "/usr/sbin/snmpSubagent"
MASTER = "/var/agentx/master"
# Maximum exposure of the unit according to systemd-analyze, in tenths; 100 is the worst.
MAX_EXPOSURE = 26
# Files of systemd, dpkg and other programs.
OTHERS = re.compile(r"^/(run/(systemd|log|lock|udev)|var/log/(journal|dpkg|apt|alternatives)|etc/\.pwd\.lock"
                    r"|run/(agentx|utmp|user|motd)|usr/share/man/.*cat|etc/ld\.so\.cache)")


def with_user(tool, name, signing, encrypting, *words):
    """Runs one of Net-SNMP's tools as an SNMPv3 user."""
    return subprocess.run([tool, "-v3", "-l", "authPriv", "-u", name, "-a", "SHA-256", "-A", signing, "-x", "AES", "-X",
                           encrypting, "-t", "10", "-On", "127.0.0.1", *words], capture_output=True, text=True,
                          stdin=subprocess.DEVNULL, check=False, env=manager.Manager.environment())


class Packages(PackageTest):
    # --- before installation

    def test_01_lintian_finds_nothing(self):
        self.assertEqual(self.host.run("lintian", "--allow-root", "--fail-on", "error,warning", *self.files,
                                       check=False), "")

    def test_02_each_package_contains_its_files(self):
        names = {os.path.basename(path).split("_")[0]: path for path in self.files}
        self.assertLessEqual({"snmpsubagent", "snmpsubagent-tools", "snmpsubagent-mib"}, set(names))
        own = {"snmpsubagent": [PROGRAM, "/usr/bin/snmpSubagent-checkconf", machine.DAEMON_CONF],
               "snmpsubagent-tools": ["/usr/bin/arraySim", "/usr/bin/mgmtSend"],
               "snmpsubagent-mib": ["/usr/share/snmp/mibs/VORN-LUMIVANT-TESSERA-MIB.txt"],
               "snmpsubagent-monitoring": ["/usr/share/snmpSubagent/monitoring/recordWalk"],
               "libtesseraapi-dev": ["/usr/lib/cmake/tesseraApi/tesseraApiConfig.cmake"]}
        for package, file in names.items():
            listed = self.host.run("dpkg-deb", "-c", file)
            for path in own[package]:
                self.assertIn(f" .{path}\n", listed)
            self.assertNotIn("/usr/local", listed)

    # --- installation and configuration

    def test_10_installation_disturbs_nothing(self):
        self.systemctl("start", "snmpd")
        of_debian = self.host.pids("snmpd")
        # A symlink of the administrator that looks like ours.
        os.symlink("/usr/bin/snmpget", debian.ROOT + "/usr/local/bin/snmpget")
        self.host.run("dpkg", "--install", *self.files)
        self.assertEqual(self.host.pids("snmpd"), of_debian)
        self.assertEqual(self.host.pids("snmpSubagent"), [])
        self.assertEqual(self.systemctl("is-enabled", UNIT, check=False), "disabled\n")
        self.assertEqual(os.readlink(debian.ROOT + "/usr/local/bin/snmpget"), "/usr/bin/snmpget")
        self.assertEqual(self.host.run("realpath", "/usr/local/sbin/snmpd"), "/usr/sbin/snmpd\n")

    def test_11_without_a_session_key_it_logs_an_error_and_does_not_start(self):
        self.systemctl("start", UNIT, check=False)
        self.assertEqual(self.systemctl("is-active", UNIT, check=False), "inactive\n")
        self.assertIn("ERROR: no session key (No such file or directory)", self.host.journal(UNIT))
        self.assertEqual(self.host.run("journalctl", "--no-pager", "--output=cat", "--grep=Scheduled restart",
                                       check=False).count(UNIT), 0)

    def test_12_the_unit_is_sound(self):
        self.assertEqual(self.host.run("sh", "-c", f"systemd-analyze verify {UNIT} 2>&1"), "")
        self.assertEqual(self.host.run("sh", "-c", "systemd-tmpfiles --create snmpsubagent.conf 2>&1"), "")
        report = self.host.run("systemd-analyze", "--no-pager", "security", "--offline=yes",
                               f"--threshold={MAX_EXPOSURE}", UNIT)
        print(report, flush=True)
        # The unit must mention each option that the report criticises: with a value or with the reason.
        unit = self.host.read(f"/lib/systemd/system/{UNIT}")
        unexplained = [name for name in re.findall(r"^✗ (\w+)", report, re.MULTILINE) if name not in unit]
        self.assertEqual(unexplained, [])

    def test_13_it_starts_and_serves(self):
        self.host.write(machine.SESSION_KEY, "a-key-of-the-platform\n", 0o600)
        self.start_array("--serial", "1")
        self.assertEqual(self.host.status("snmpSubagent-checkconf"), 0)
        self.systemctl("enable", "--now", UNIT)
        self.wait_for_next_start(0)
        self.assert_served_by_one()
        # Debian's snmpd service has been stopped and cannot be started.
        self.assertEqual(self.systemctl("is-active", "snmpd", check=False), "inactive\n")
        self.systemctl("start", "snmpd")
        self.assertEqual(self.systemctl("is-active", "snmpd", check=False), "inactive\n")
        self.assert_served_by_one()

    def test_14_access_follows_the_settings(self):
        reader = self.manager_with("public")
        contact = mib.scalar("sysContact")
        self.assertGreater(len(reader.bulk_walk(mib.ENTERPRISE, "-Cr20").bindings), 500)
        self.assertEqual(reader.walk("1.3.6.1.2.1.25").bindings[0].value, None, "outside the view")
        device = [binding.value for binding in reader.get("1.3.6.1.2.1.1.1.0", "1.3.6.1.2.1.1.2.0").bindings]
        self.assertEqual(device, [b"Vorn-Lumivant Tessera storage array", f".{mib.ENTERPRISE}.250.255"])
        self.assertNotEqual(reader.set((contact, "s", "somebody")).status, 0)
        self.assertNotEqual(manager.Manager(community="private", timeout_s=1, retries=0).get(contact).status, 0)

    def test_15_snmpv3_users_have_their_rights(self):
        text = self.host.read(machine.SNMPD_CONF)
        for line in ("createUser monitor", "rouser monitor", "createUser operator", "rwuser operator"):
            text = text.replace("#" + line, line)
        start_count = self.start_count()
        self.host.write(machine.SNMPD_CONF, text, 0o600)
        self.systemctl("restart", UNIT)
        self.wait_for_next_start(start_count)
        name, contact = mib.oid("tsCtlrName", 1), mib.scalar("sysContact")
        monitor = ("monitor", "signing passphrase", "encrypting passphrase")
        operator = ("operator", "another passphrase", "yet another passphrase")
        got = with_user("snmpget", *monitor, name)
        self.assertIn(f".{name} = STRING: ", got.stdout, got.stderr)
        self.assertNotEqual(with_user("snmpset", *monitor, contact, "s", "me").returncode, 0)
        self.assertNotEqual(with_user("snmpget", "monitor", "wrong passphrase", "encrypting passphrase", name).returncode, 0)
        done = with_user("snmpset", *operator, contact, "s", "the operator")
        self.assertEqual(done.returncode, 0, done.stderr)
        # snmpd stores their keys in a directory that others cannot read.
        self.assertIn("oldEngineID", self.host.read("/var/lib/snmpsubagent/snmpd.conf"))
        self.assertEqual(os.stat(debian.ROOT + "/var/lib/snmpsubagent").st_mode & 0o007, 0)

    def test_16_programs_are_hardened(self):
        for program in self.host.run("sh", "-c", "dpkg -L snmpsubagent snmpsubagent-tools | grep -E '/s?bin/.'").split():
            facts = self.host.run("readelf", "--wide", "--segments", "--dynamic", "--dyn-syms", program)
            for what, pattern in (("PIE", r"FLAGS_1\) +Flags: NOW PIE"), ("no-exec stack", r"GNU_STACK .* RW +0x"),
                                  ("relocations", r"GNU_RELRO .* R +0x"), ("binding", r"FLAGS\) +BIND_NOW"),
                                  ("stack protector", r" __stack_chk_fail@"), ("fortified functions", r" __\w+_chk@")):
                self.assertRegex(facts, pattern, f"{program}: {what}")

    # --- supervision

    def test_20_snmpd_is_killed(self):
        start_count, before = self.start_count(), self.host.unit(UNIT, "MainPID")
        self.host.run("kill", "-KILL", *self.host.pids("snmpd"))
        self.wait_for_next_start(start_count)
        self.assertNotEqual(self.host.unit(UNIT, "MainPID"), before)
        self.assert_served_by_one()

    def test_21_the_daemon_is_killed(self):
        start_count = self.start_count()
        self.host.run("kill", "-KILL", self.host.unit(UNIT, "MainPID"))
        self.wait_for_next_start(start_count)
        self.assert_served_by_one()

    def test_23_after_a_longer_absence_the_unit_is_restarted(self):
        start_count = self.start_count()
        self.stop_array()
        self.wait_for_log("3 retries and no connect", 90)
        restarts = int(self.host.unit(UNIT, "NRestarts"))
        waiting.wait_until(lambda: int(self.host.unit(UNIT, "NRestarts")) > restarts + 1, "the unit tries again", 60)
        self.start_array("--serial", "1")
        self.wait_for_next_start(start_count)
        self.assert_served_by_one()

    def test_25_stop_is_clean(self):
        self.systemctl("stop", UNIT)
        self.assertEqual((self.host.pids("snmpSubagent"), self.host.pids("snmpd")), ([], []))
        self.assertEqual(self.host.unit(UNIT, "Result"), "success")
        start_count = self.start_count()
        self.systemctl("start", UNIT)
        self.wait_for_next_start(start_count)

    # --- upgrade, removal

    def test_30_an_upgrade_keeps_settings_and_restarts_the_service(self):
        settings = self.host.read(machine.DAEMON_CONF) + "# changed here\n"
        self.host.write(machine.DAEMON_CONF, settings)
        self.make_newer(next(path for path in self.files if "/snmpsubagent_" in path), "/tmp/newer.deb")
        start_count, before = self.start_count(), self.host.unit(UNIT, "MainPID")
        self.host.run("dpkg", "--install", "/tmp/newer.deb")
        self.wait_for_next_start(start_count)
        self.assertEqual(self.host.run("dpkg-query", "-W", "-f", "${Version}", "snmpsubagent"), NEWER)
        self.assertEqual(self.host.read(machine.DAEMON_CONF), settings)
        self.assertNotEqual(self.host.unit(UNIT, "MainPID"), before)
        self.assert_served_by_one()

    def test_31_removal_stops_it_and_keeps_settings(self):
        self.host.run("dpkg", "--remove", "snmpsubagent")
        self.assert_nothing_runs()
        for path in (machine.DAEMON_CONF, machine.SNMPD_CONF, daemon.LOG):
            self.assertTrue(self.host.exists(path), path)
        self.assertFalse(self.host.exists("/usr/local/sbin/snmpd"))
        self.assertEqual(os.readlink(debian.ROOT + "/usr/local/bin/snmpget"), "/usr/bin/snmpget")
        self.systemctl("start", "snmpd")
        self.assertEqual(self.systemctl("is-active", "snmpd"), "active\n")
        # A later purge does not affect Debian's service.
        self.host.run("dpkg", "--purge", "snmpsubagent")
        self.assertTrue(self.host.exists(MASTER), "subagents of Debian's snmpd need it")
        self.systemctl("stop", "snmpd")

    def test_32_removal_also_stops_a_daemon_started_manually(self):
        self.host.run("dpkg", "--install", *self.files)
        start_count = self.start_count()

        # On a busy machine the daemon may exit because snmpd is late. Without the unit, the user must start it again.
        def is_up():
            if not self.host.pids("snmpSubagent"):
                self.host.run(PROGRAM)
            return self.start_count() > start_count

        waiting.wait_until(is_up, "the daemon is up", 180)
        self.host.run("dpkg", "--remove", "snmpsubagent")
        self.assert_nothing_runs()

    def test_33_a_purge_leaves_nothing(self):
        self.stop_array()
        names = [os.path.basename(path).split("_")[0] for path in self.files]
        self.host.run("dpkg", "--purge", *names)
        self.assertTrue(self.host.exists(machine.SESSION_KEY), "the session key belongs to the platform")
        os.unlink(debian.ROOT + machine.SESSION_KEY)
        os.unlink(debian.ROOT + "/usr/local/bin/snmpget")
        left = {path for path in self.host.files(*PLACES) - self.before if not OTHERS.match(path)}
        self.assertEqual(left, set())
        self.assertEqual(glob.glob(debian.ROOT + "/tmp/snmpsubagent*"), [])


if __name__ == "__main__":
    machine.require_sandbox("namespaces")
    unittest.main(verbosity=2, failfast=True)
