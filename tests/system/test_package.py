"""The Debian packages on a machine of their own with a systemd of its own: from the installation to the purge."""

import glob
import os
import re
import subprocess
import unittest

from harness import daemon, debian, machine, manager, mib, waiting
from harness.packageStory import NEWER, PLACES, UNIT, PackageStory

PROGRAM = "/usr/sbin/snmpSubagent"
MASTER = "/var/agentx/master"
# Systemd's own figure for what the unit leaves open, in tenths: 100 is everything.
GREATEST_EXPOSURE = 26
# What systemd, dpkg and others keep of their own.
OTHERS = re.compile(r"^/(run/(systemd|log|lock|udev)|var/log/(journal|dpkg|apt|alternatives)|etc/\.pwd\.lock"
                    r"|run/(agentx|utmp|user|motd)|usr/share/man/.*cat|etc/ld\.so\.cache)")


def with_user(tool, name, signing, encrypting, *words):
    """One of Net-SNMP's tools as a user of SNMPv3."""
    return subprocess.run([tool, "-v3", "-l", "authPriv", "-u", name, "-a", "SHA-256", "-A", signing, "-x", "AES", "-X",
                           encrypting, "-t", "10", "-On", "127.0.0.1", *words], capture_output=True, text=True,
                          stdin=subprocess.DEVNULL, check=False, env=manager.Manager.environment())


class Packages(PackageStory):
    # --- before it is installed

    def test_01_lintian_finds_nothing(self):
        self.assertEqual(self.host.run("lintian", "--allow-root", "--fail-on", "error,warning", *self.files,
                                       check=False), "")

    def test_02_each_package_holds_what_is_its_own(self):
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

    def test_10_it_comes_in_and_disturbs_nobody(self):
        self.systemctl("start", "snmpd")
        of_debian = self.host.pids("snmpd")
        # Somebody's own link, which looks like ours.
        os.symlink("/usr/bin/snmpget", debian.ROOT + "/usr/local/bin/snmpget")
        self.host.run("dpkg", "--install", *self.files)
        self.assertEqual(self.host.pids("snmpd"), of_debian)
        self.assertEqual(self.host.pids("snmpSubagent"), [])
        self.assertEqual(self.systemctl("is-enabled", UNIT, check=False), "disabled\n")
        self.assertEqual(os.readlink(debian.ROOT + "/usr/local/bin/snmpget"), "/usr/bin/snmpget")
        self.assertEqual(self.host.run("realpath", "/usr/local/sbin/snmpd"), "/usr/sbin/snmpd\n")

    def test_11_without_a_session_key_it_does_not_start_and_says_so(self):
        self.systemctl("start", UNIT, check=False)
        self.assertEqual(self.systemctl("is-active", UNIT, check=False), "inactive\n")
        self.assertIn("ERROR: no session key (No such file or directory)", self.host.journal(UNIT))
        self.assertEqual(self.host.run("journalctl", "--no-pager", "--output=cat", "--grep=Scheduled restart",
                                       check=False).count(UNIT), 0)

    def test_12_the_unit_is_sound(self):
        self.assertEqual(self.host.run("sh", "-c", f"systemd-analyze verify {UNIT} 2>&1"), "")
        self.assertEqual(self.host.run("sh", "-c", "systemd-tmpfiles --create snmpsubagent.conf 2>&1"), "")
        report = self.host.run("systemd-analyze", "--no-pager", "security", "--offline=yes",
                               f"--threshold={GREATEST_EXPOSURE}", UNIT)
        print(report, flush=True)
        # What the report finds open is either set as far as can be, or the unit says why it is open.
        unit = self.host.read(f"/lib/systemd/system/{UNIT}")
        unexplained = [name for name in re.findall(r"^✗ (\w+)", report, re.MULTILINE) if name not in unit]
        self.assertEqual(unexplained, [])

    def test_13_it_starts_and_serves(self):
        self.host.write(machine.SESSION_KEY, "a-key-of-the-platform\n", 0o600)
        self.start_array("--serial", "1")
        self.assertEqual(self.host.status("snmpSubagent-checkconf"), 0)
        self.systemctl("enable", "--now", UNIT)
        self.wait_for_another_start(0)
        self.assert_served_by_one()
        # Debian's own service has made way, and does not come back by a start of its own.
        self.assertEqual(self.systemctl("is-active", "snmpd", check=False), "inactive\n")
        self.systemctl("start", "snmpd")
        self.assertEqual(self.systemctl("is-active", "snmpd", check=False), "inactive\n")
        self.assert_served_by_one()

    def test_14_who_may_do_what_is_as_the_settings_say(self):
        reader = self.ask("public")
        contact = mib.scalar("sysContact")
        self.assertGreater(len(reader.bulk_walk(mib.ENTERPRISE, "-Cr20").bindings), 500)
        self.assertEqual(reader.walk("1.3.6.1.2.1.25").bindings[0].value, None, "outside the view")
        device = [binding.value for binding in reader.get("1.3.6.1.2.1.1.1.0", "1.3.6.1.2.1.1.2.0").bindings]
        self.assertEqual(device, [b"Vorn-Lumivant Tessera storage array", f".{mib.ENTERPRISE}.250.255"])
        self.assertNotEqual(reader.set((contact, "s", "somebody")).status, 0)
        self.assertNotEqual(manager.Manager(community="private", timeout_s=1, retries=0).get(contact).status, 0)

    def test_15_users_of_version_3_read_what_they_may(self):
        text = self.host.read(machine.SNMPD_CONF)
        for line in ("createUser monitor", "rouser monitor", "createUser operator", "rwuser operator"):
            text = text.replace("#" + line, line)
        ups = self.ups()
        self.host.write(machine.SNMPD_CONF, text, 0o600)
        self.systemctl("restart", UNIT)
        self.wait_for_another_start(ups)
        name, contact = mib.oid("tsCtlrName", 1), mib.scalar("sysContact")
        monitor = ("monitor", "signing passphrase", "encrypting passphrase")
        operator = ("operator", "another passphrase", "yet another passphrase")
        got = with_user("snmpget", *monitor, name)
        self.assertIn(f".{name} = STRING: ", got.stdout, got.stderr)
        self.assertNotEqual(with_user("snmpset", *monitor, contact, "s", "me").returncode, 0)
        self.assertNotEqual(with_user("snmpget", "monitor", "wrong passphrase", "encrypting passphrase", name).returncode, 0)
        done = with_user("snmpset", *operator, contact, "s", "the operator")
        self.assertEqual(done.returncode, 0, done.stderr)
        # What snmpd must remember for them, and for nobody else to read.
        self.assertIn("oldEngineID", self.host.read("/var/lib/snmpsubagent/snmpd.conf"))
        self.assertEqual(os.stat(debian.ROOT + "/var/lib/snmpsubagent").st_mode & 0o007, 0)

    def test_16_programs_are_guarded_against_overruns(self):
        for program in self.host.run("sh", "-c", "dpkg -L snmpsubagent snmpsubagent-tools | grep -E '/s?bin/.'").split():
            facts = self.host.run("readelf", "--wide", "--segments", "--dynamic", "--dyn-syms", program)
            for what, pattern in (("any address", r"FLAGS_1\) +Flags: NOW PIE"), ("a stack without code", r"GNU_STACK .* RW +0x"),
                                  ("read-only relocations", r"GNU_RELRO .* R +0x"), ("all of them", r"FLAGS\) +BIND_NOW"),
                                  ("guarded stacks", r" __stack_chk_fail@"), ("guarded buffers", r" __\w+_chk@")):
                self.assertRegex(facts, pattern, f"{program}: {what}")

    # --- supervision

    def test_20_snmpd_is_lost(self):
        ups, before = self.ups(), self.host.unit(UNIT, "MainPID")
        self.host.run("kill", "-KILL", *self.host.pids("snmpd"))
        self.wait_for_another_start(ups)
        self.assertNotEqual(self.host.unit(UNIT, "MainPID"), before)
        self.assert_served_by_one()

    def test_21_the_daemon_is_killed(self):
        ups = self.ups()
        self.host.run("kill", "-KILL", self.host.unit(UNIT, "MainPID"))
        self.wait_for_another_start(ups)
        self.assert_served_by_one()

    def test_23_the_array_is_away_for_longer(self):
        ups = self.ups()
        self.stop_array()
        self.wait_for_log("3 retries and no connect", 90)
        restarts = int(self.host.unit(UNIT, "NRestarts"))
        waiting.wait_until(lambda: int(self.host.unit(UNIT, "NRestarts")) > restarts + 1, "the unit tries again", 60)
        self.start_array("--serial", "1")
        self.wait_for_another_start(ups)
        self.assert_served_by_one()

    def test_25_it_stops_in_order(self):
        self.systemctl("stop", UNIT)
        self.assertEqual((self.host.pids("snmpSubagent"), self.host.pids("snmpd")), ([], []))
        self.assertEqual(self.host.unit(UNIT, "Result"), "success")
        ups = self.ups()
        self.systemctl("start", UNIT)
        self.wait_for_another_start(ups)

    # --- upgrade, removal

    def test_30_an_upgrade_keeps_changed_settings_and_goes_on(self):
        settings = self.host.read(machine.DAEMON_CONF) + "# changed here\n"
        self.host.write(machine.DAEMON_CONF, settings)
        self.make_newer(next(path for path in self.files if "/snmpsubagent_" in path), "/tmp/newer.deb")
        ups, before = self.ups(), self.host.unit(UNIT, "MainPID")
        self.host.run("dpkg", "--install", "/tmp/newer.deb")
        self.wait_for_another_start(ups)
        self.assertEqual(self.host.run("dpkg-query", "-W", "-f", "${Version}", "snmpsubagent"), NEWER)
        self.assertEqual(self.host.read(machine.DAEMON_CONF), settings)
        self.assertNotEqual(self.host.unit(UNIT, "MainPID"), before)
        self.assert_served_by_one()

    def test_31_removal_ends_it_and_keeps_settings(self):
        self.host.run("dpkg", "--remove", "snmpsubagent")
        self.assert_nothing_runs()
        for path in (machine.DAEMON_CONF, machine.SNMPD_CONF, daemon.LOG):
            self.assertTrue(self.host.exists(path), path)
        self.assertFalse(self.host.exists("/usr/local/sbin/snmpd"))
        self.assertEqual(os.readlink(debian.ROOT + "/usr/local/bin/snmpget"), "/usr/bin/snmpget")
        self.systemctl("start", "snmpd")
        self.assertEqual(self.systemctl("is-active", "snmpd"), "active\n")
        # A purge some time later takes nothing away from it.
        self.host.run("dpkg", "--purge", "snmpsubagent")
        self.assertTrue(self.host.exists(MASTER), "subagents of Debian's snmpd find it no more")
        self.systemctl("stop", "snmpd")

    def test_32_a_daemon_started_by_hand_is_ended_by_removal_too(self):
        self.host.run("dpkg", "--install", *self.files)
        ups = self.ups()

        # On a busy machine snmpd may be too late for the daemon, which then ends: with no unit, a person tries again.
        def is_up():
            if not self.host.pids("snmpSubagent"):
                self.host.run(PROGRAM)
            return self.ups() > ups

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
