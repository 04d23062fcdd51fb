"""The base of package tests: a Debian machine, the packages of this build, and an array."""

import glob
import unittest

from . import daemon, debian, machine, manager, mib, waiting

UNIT = "snmpsubagent.service"
PACKAGES = "/tmp/packages"
NEWER = "9.9.9"
# Directories in which the packages may leave files.
PLACES = ("/etc", "/usr", "/lib", "/var/lib/snmpsubagent", "/var/log", "/var/agentx", "/mnt/root", "/mnt/cores", "/run",
          "/tmp/apps")


class PackageTest(unittest.TestCase):
    """The tests of a class share one machine. They run in the order of their names, each in the state that the previous
    one has left."""

    @classmethod
    def setUpClass(cls):
        cls.host = debian.Debian()
        try:
            cls.host.boot()
            cls.prepare()
        except BaseException:
            cls.host.halt()
            raise

    @classmethod
    def prepare(cls):
        cls.host.run("cpack", "--config", f"{machine.BUILD}/CPackConfig.cmake", "-B", PACKAGES)
        cls.files = [path[len(debian.ROOT):] for path in sorted(glob.glob(f"{debian.ROOT}{PACKAGES}/*.deb"))]
        cls.before = cls.host.files(*PLACES)

    @classmethod
    def tearDownClass(cls):
        cls.host.halt()

    def run(self, result=None):
        before = len(result.failures) + len(result.errors)
        super().run(result)
        if len(result.failures) + len(result.errors) > before:
            print(f"--- the journal at the end of {self.id()}\n{self.host.journal(UNIT)[-4000:]}\n--- and the daemon's "
                  f"log\n{self.host.read(daemon.LOG)[-4000:]}", flush=True)
        return result

    # --- operations

    def systemctl(self, *words, check=True):
        return self.host.run("systemctl", *words, check=check)

    @classmethod
    def start_array(cls, *options, program="arraySim"):
        cls.array = cls.host.start(program, "serve", "--preset", "small", *options)
        waiting.wait_until(lambda: cls.host.exists("/tmp/apimgr.sock"), "the array listens")

    def stop_array(self):
        for pid in self.host.pids("arraySim"):
            self.host.run("kill", pid)
        self.array.wait(30)

    @classmethod
    def make_newer(cls, package, path):
        """Builds the same package with a newer version."""
        cls.host.run("dpkg-deb", "--raw-extract", package, "/tmp/newer")
        cls.host.run("sed", "-i", f"s/^Version: .*/Version: {NEWER}/", "/tmp/newer/DEBIAN/control")
        cls.host.run("dpkg-deb", "-Znone", "--build", "--root-owner-group", "/tmp/newer", path)

    def log_contains(self, text):
        return text in self.host.read(daemon.LOG)

    def wait_for_log(self, text, limit_s=60):
        waiting.wait_until(lambda: self.log_contains(text), f"the log contains '{text}'", limit_s)

    def start_count(self):
        return self.host.read(daemon.LOG).count(daemon.UP)

    def wait_for_next_start(self, start_count, limit_s=180):
        waiting.wait_until(lambda: self.start_count() > start_count, "the daemon is up again", limit_s)

    def assert_served_by_one(self):
        """Checks that there is one daemon, started by the unit, with one snmpd, and that it serves the array."""
        self.assertEqual(self.systemctl("is-active", UNIT), "active\n")
        main = int(self.host.unit(UNIT, "MainPID"))
        self.assertEqual(self.host.pids("snmpSubagent"), [main])
        waiting.wait_until(lambda: len(self.host.pids("snmpd")) == 1, "there is one snmpd")
        self.assertLessEqual({"snmpSubagent", "snmpd"}, set(self.host.programs_of(UNIT)))
        self.assertTrue(self.manager_with("public").value(mib.oid("tsCtlrName", 1)))

    @staticmethod
    def manager_with(community):
        return manager.Manager(community=community)

    def assert_nothing_runs(self):
        for name in ("snmpSubagent", "snmpd"):
            waiting.wait_until(lambda wanted=name: not self.host.pids(wanted), f"{name} has exited")
