"""A recorded walk, played back by snmpsim, looks like the array to a manager."""

import os
import pwd
import unittest

from harness import machine, mib, systemTest, waiting

RECORDER = os.path.join(machine.REPOSITORY, "monitoring", "recordWalk")
HOME = "/tmp/recording"
PORT = 11161
SYSTEM_TEXTS = ("sysContact", "sysName", "sysLocation")


class Player(machine.Program):
    """snmpsim with the recordings in a directory; the community selects the recording."""

    def __init__(self, folder):
        # It drops root, and must then read the recordings and write its index next to them.
        user = "nobody"
        for path in (HOME, folder):
            os.chown(path, pwd.getpwnam(user).pw_uid, -1)
        self.log = os.path.join(HOME, "snmpsim.log")
        with open(self.log, "wb") as output:
            super().__init__(
                "snmpsimd", f"--data-dir={folder}", f"--cache-dir={folder}",
                f"--agent-udpv4-endpoint=127.0.0.1:{PORT}", f"--process-user={user}", "--process-group=nogroup",
                "--variation-modules-dir=/nonexistent",
                stdout=output, stderr=output, cwd=HOME, env={**os.environ, "HOME": HOME})
        waiting.wait_until(self.listens, "snmpsim listens", 60)

    def listens(self):
        if self.process.poll() is not None:
            raise AssertionError(f"snmpsimd exited: {machine.read_file(self.log)}")
        return f"127.0.0.1:{PORT}" in machine.read_file(self.log)


class Recording(systemTest.SharedSystemTest):
    PRESET = "typical"

    @classmethod
    def launch(cls):
        super().launch()
        cls.wait_until_settled()
        cls.served = cls.manager.bulk_walk(mib.ENTERPRISE, "-Cr20").bindings
        cls.folder = os.path.join(HOME, "data")
        os.makedirs(cls.folder)
        cls.path = os.path.join(cls.folder, "array.snmprec")
        machine.write_file(cls.path, machine.run("/usr/bin/python3", RECORDER, "127.0.0.1", limit_s=300))

    @unittest.skipUnless(machine.has_users(), "snmpsim needs another user than root")
    def test_snmpsim_plays_it_back_unchanged(self):
        texts = {name: self.manager.value(mib.scalar(name)) for name in SYSTEM_TEXTS}
        player = Player(self.folder)
        try:
            played = self.manager.run_tool("snmpbulkwalk", "-Cr20", "-c", "array", f"127.0.0.1:{PORT}", mib.ENTERPRISE)
            # The recording ends here; the array continues under the old number.
            bindings = [each for each in played.bindings if each.type != "endOfMibView"]
            for before, after in zip(self.served, bindings):
                self.assertEqual(before, after)
            self.assertEqual(len(bindings), len(self.served))
            for name, text in texts.items():
                response = self.manager.run_tool("snmpget", "-c", "array", f"127.0.0.1:{PORT}", mib.scalar(name))
                self.assertEqual(response.bindings[0].value.decode(), text)
        finally:
            player.close()


if __name__ == "__main__":
    systemTest.main()
