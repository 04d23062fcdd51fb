"""The MIB module, used by Net-SNMP's tools: names, types and values of all instances and notifications."""

import re
import subprocess

from harness import machine, management, manager, mib, systemTest, waiting
from harness.notificationTest import IDS, NotificationTest
from harness.traps import Event

MODULE, OLD_MODULE = mib.MODULE, mib.OLD_MODULE
LINE = re.compile(rf"^{MODULE}::(\w+)\.([\d.]+) = (.*)$")
ENUMERATED = re.compile(r"INTEGER: \w+\(-?\d+\)$")
TYPES = {"string": ("STRING: ", "Hex-STRING: ", '""'), "integer": ("INTEGER: ",), "enumeration": ("INTEGER: ",),
         "unsigned": ("Gauge32: ",)}
# Numbers of the array application, whose meaning the MIB does not define.
BARE_INTEGERS = ("trapSIDeviceType", "trapSIDeviceStatus", "tsAlertType")


def with_module(tool, *arguments, modules=MODULE):
    """Returns the standard output of one of Net-SNMP's tools that has read only the module."""
    done = subprocess.run([tool, *map(str, arguments)], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          errors="replace", check=False, timeout=300 * waiting.PATIENCE,
                          env={**manager.Manager.environment(), "MIBS": modules, "MIBDIRS": mib.MODULE_FOLDERS})
    if done.returncode != 0:
        raise AssertionError(f"{tool}: status {done.returncode}: {done.stdout}{done.stderr}")
    return done.stdout


class MibModule(NotificationTest):
    def run_tool(self, tool, *arguments, community="public"):
        return with_module(tool, "-v2c", "-c", community, "-t", int(10 * waiting.PATIENCE), "-r", 3, *arguments)

    def test_a_walk_is_named_and_typed_throughout(self):
        served = self.manager.bulk_walk(mib.ENTERPRISE, "-Cr20").oids()
        lines = self.run_tool("snmpbulkwalk", "-Cr20", "127.0.0.1", f"{MODULE}::tesseraMIB").splitlines()
        self.assertGreater(len(served), 1000)
        self.assertEqual(len(lines), len(served))
        for oid, line in zip(served, lines):
            found = LINE.match(line)
            self.assertTrue(found, f"{oid}: {line}")
            name, instance, value = found.groups()
            self.assertEqual(f"{mib.oid(name)}.{instance}", oid)
            self.assertTrue(value.startswith(TYPES[mib.COLUMNS[name].type]), line)
            if value.startswith("INTEGER: ") and name not in BARE_INTEGERS:
                self.assertRegex(value, ENUMERATED, f"{name} has a number that the module does not name")

    def test_a_set_by_name_takes_its_type_from_the_module(self):
        """Runs the example of the administrators' guide. The first disk and volume have the API index 2."""
        page = machine.read_file(f"{machine.REPOSITORY}/docs/administrators.md")
        name, = re.findall(r"`snmpset \.\.\. (\S+) = ForceTrap`", page)
        self.run_tool("snmpset", "127.0.0.1", f"{MODULE}::{name}", "=", "ForceTrap", community="private")
        got = self.receiver.take()
        self.assertEqual(got.bindings[1].value, f"{mib.ENTERPRISE}.251.0.208")

    def test_the_older_number_is_known(self):
        self.assertEqual(with_module("snmptranslate", f"{mib.OLD_ENTERPRISE}.2.1.0", modules=OLD_MODULE).strip(),
                         f"{OLD_MODULE}::lumivantEnterprise.2.1.0")

    def test_notifications_have_the_names_and_objects_of_the_module(self):
        events = [case.event for case in self.cases()]
        events += [Event(IDS, 200), Event(IDS, 201, text="words"), Event(IDS, 213, 1, 2, 3)]
        self.assertEqual({event.number for event in events}, set(range(200, 214)))
        for event in events:
            management.send(management.trap(event.command()))
            got = self.receiver.take()
            details = with_module("snmptranslate", "-Td", got.bindings[1].value)
            self.assertIn("NOTIFICATION-TYPE", details, event)
            names = re.search(r"OBJECTS\s+{([^}]*)}", details).group(1).replace(",", " ").split()
            columns = [binding.oid for binding in got.bindings[2:]]
            self.assertEqual(len(columns), len(names), event)
            for name, oid in zip(names, columns):
                self.assertTrue(oid.startswith(mib.oid(name) + "."), f"{event}: {name} is not {oid}")


if __name__ == "__main__":
    systemTest.main()
