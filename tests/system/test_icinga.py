"""The configuration for Icinga 2: Debian's Icinga checks it, then monitors a disk that fails and recovers."""

import os
import re
import subprocess

from harness import machine, monitors, systemTest, waiting

PROGRAM, HOME = "/usr/sbin/icinga2", "/tmp/monitors/icinga"
MAIN = f"""\
include <itl>
include "tessera.conf"
const PluginDir = "{monitors.PLUGINS}"
const NodeName = "monitor"
object CheckerComponent "checker" {{}}
object StatusDataWriter "status" {{
  status_path = "{HOME}/status"
  objects_path = "{HOME}/objects"
  update_interval = 1s
}}
object Host "array1" {{
  import "tessera-array"
  address = "127.0.0.1"
  vars.tessera["disk"] = {{ check = "tsDiskStatus", instance = "1" }}
  vars.tessera["space"] = {{ check = "tsDiskFolderFreePercent", instance = "1" }}
}}
"""
FOLDERS = ("DataDir", "CacheDir", "LogDir", "InitRunDir", "SpoolDir", "ConfigDir")
STATUS = re.compile(r"(?:host|service)status \{(.*?)\n\t\}", re.DOTALL)


class Icinga(monitors.MonitorStory):
    @classmethod
    def launch(cls):
        super().launch()
        cls.wait_until_settled()
        os.makedirs(HOME)
        machine.write_file(f"{HOME}/main.conf", MAIN)
        text = machine.read_file(monitors.made("icinga2", "tessera.conf"))
        machine.write_file(f"{HOME}/tessera.conf", re.sub(r"_interval = \dm", "_interval = 1s", text))
        cls.command = [PROGRAM, "daemon", "-c", f"{HOME}/main.conf", "-D", "RunAsUser=root", "-D", "RunAsGroup=root",
                       *(word for name in FOLDERS for word in ("-D", f"{name}={HOME}"))]

    def statuses(self):
        """Returns {service: (state, output, performance data)}; "" is the host."""
        found = {}
        for block in STATUS.findall(machine.read_file(f"{HOME}/status")):
            values = dict(line.strip().split("=", 1) for line in block.strip().splitlines() if "=" in line)
            if values["has_been_checked"] == "1":
                found[values.get("service_description", "")] = tuple(
                    values.get(name, "") for name in ("current_state", "plugin_output", "performance_data"))
        return found

    def wait_for(self, **wanted):
        waiting.wait_until(lambda: wanted.items() <= self.statuses().items(), f"Icinga: {wanted}", 180)

    def test_a_disk_fails_and_recovers(self):
        self.assertNotIn("warning", machine.run(*self.command, "-C").replace("warning/StatusDataWriter", ""))
        process = subprocess.Popen(self.command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        waiting.wait_until(lambda: len(self.statuses()) == 6, "everything is checked", 60)
        statuses = self.statuses()
        self.assertEqual(statuses[""][0], "0", statuses)
        self.assertRegex(statuses["space"][2], r"^tsDiskFolderFreePercent=\d+%;15:;5:")
        self.assertNotIn("UNKNOWN", str(statuses))
        index = self.array.first("TsDisk")
        self.array.fail("TsDisk", index)
        self.wait_for(disk=("2", f"tsDiskStatus CRITICAL - {self.NAMED[1]}: down", ""))
        self.array.recover("TsDisk", index)
        self.wait_for(disk=("0", f"tsDiskStatus OK - {self.NAMED[1]}: up", ""))


if __name__ == "__main__":
    if not os.path.exists(PROGRAM):
        machine.skip("icinga2 is not installed")
    systemTest.main()
