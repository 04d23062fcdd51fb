"""An SNMP manager that uses Net-SNMP's tools."""

import os
import re
import subprocess
from collections import namedtuple

from . import machine, waiting

HOME = "/tmp/manager"

# type: INTEGER, Gauge32, STRING (value: bytes), OID, Timeticks, ..., or noSuchInstance, noSuchObject,
# endOfMibView (value None).
Binding = namedtuple("Binding", "oid type value")

EXCEPTIONS = {
    "No Such Instance currently exists at this OID": "noSuchInstance",
    "No Such Object available on this agent at this OID": "noSuchObject",
    "No more variables left in this MIB View (It is past the end of the MIB tree)": "endOfMibView",
}
REASON = re.compile(r"^Reason: \(?(\w+)", re.MULTILINE)
FAILED_OBJECT = re.compile(r"^Failed object: (\S+)", re.MULTILINE)


class Response:
    """The output of a tool: bindings, or an error and the object that caused it."""

    def __init__(self, status, output, errors):
        self.status = status
        self.output = output
        self.errors = errors
        self.bindings = parse_bindings(output)
        reason = REASON.search(output + errors)
        failed = FAILED_OBJECT.search(output + errors)
        self.error = reason.group(1) if reason else ""
        self.failed_oid = failed.group(1).lstrip(".") if failed else ""

    def __repr__(self):
        return f"status {self.status}: {self.output}{self.errors}"

    def by_oid(self):
        return {binding.oid: binding for binding in self.bindings}

    def oids(self):
        return [binding.oid for binding in self.bindings]


def parse_bindings(output):
    bindings = []
    for line in output.splitlines():
        name, found, text = line.partition(" = ")
        if found and name.startswith("."):
            bindings.append(parse_binding(name.lstrip("."), text.strip()))
    return bindings


def parse_binding(oid, text):
    if text in EXCEPTIONS:
        return Binding(oid, EXCEPTIONS[text], None)
    if text == '""':
        return Binding(oid, "STRING", b"")
    kind, _, value = text.partition(": ")
    if kind == "Hex-STRING":
        return Binding(oid, "STRING", bytes.fromhex(value))
    if kind in ("INTEGER", "Gauge32", "Counter32"):
        return Binding(oid, kind, int(value))
    return Binding(oid, kind, value)


class Manager:
    """community, version: of its requests, as the tools accept them ("1", "2c")."""

    def __init__(self, community="public", version="2c", timeout_s=10, retries=3):
        self.community = community
        self.version = version
        self.timeout_s = timeout_s
        self.retries = retries
        os.makedirs(HOME, exist_ok=True)
        # Octets are printed in hexadecimal and on one line, so that every value can be parsed exactly.
        machine.write_file(os.path.join(HOME, "snmp.conf"), "mibs :\nhexOutputLength 0\n")

    def command(self, tool, *arguments):
        return [tool, f"-v{self.version}", "-c", self.community, "-On", "-Ox", "-t",
                str(int(self.timeout_s * waiting.PATIENCE)), "-r", str(self.retries), *map(str, arguments)]

    @staticmethod
    def environment():
        return {**os.environ, "SNMPCONFPATH": HOME, "MIBS": "", "SNMP_PERSISTENT_DIR": HOME}

    def start(self, tool, *arguments):
        """Starts a tool and returns its process for finish()."""
        return subprocess.Popen(self.command(tool, *arguments), stdin=subprocess.DEVNULL, env=self.environment(),
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, errors="replace")

    @staticmethod
    def finish(process, limit_s=300):
        output, errors = process.communicate(timeout=limit_s * waiting.PATIENCE)
        return Response(process.returncode, output, errors)

    def run_tool(self, tool, *arguments):
        return self.finish(self.start(tool, *arguments))

    def get(self, *oids):
        """Sends one GET; after an error the tool does not retry without the failed binding."""
        return self.run_tool("snmpget", "-Cf", "127.0.0.1", *oids)

    def get_next(self, *oids):
        return self.run_tool("snmpgetnext", "-Cf", "127.0.0.1", *oids)

    def get_bulk(self, repetitions, *oids, non_repeaters=0):
        return self.run_tool("snmpbulkget", f"-Cn{non_repeaters}", f"-Cr{repetitions}", "127.0.0.1", *oids)

    def walk(self, oid, *options):
        return self.run_tool("snmpwalk", *options, "127.0.0.1", oid)

    def bulk_walk(self, oid, *options):
        """Walks, twice at most for the same reason as value()."""
        walked = self.run_tool("snmpbulkwalk", *options, "127.0.0.1", oid)
        if walked.error == "genError":
            walked = self.run_tool("snmpbulkwalk", *options, "127.0.0.1", oid)
        return walked

    def set(self, *assignments):
        """Sends one SET. assignments: (oid, type letter of snmpset, value)."""
        return self.run_tool("snmpset", "127.0.0.1", *(word for each in assignments for word in each))

    def value(self, oid):
        """Returns the value of one instance that must exist; strings as str. Requests it twice at most, because a
        request that arrives while the daemon waits for the response to its ping is rejected."""
        response = self.get(oid)
        if response.status != 0:
            response = self.get(oid)
        if response.status != 0 or len(response.bindings) != 1 or response.bindings[0].value is None:
            raise AssertionError(f"no value at {oid}: {response}")
        value = response.bindings[0].value
        return value.decode("utf-8", "replace") if isinstance(value, bytes) else value

    def wait_for_value(self, oid, value, limit_s=30):
        """Waits until an instance has a value; a missing instance is another value."""

        def has_value():
            bindings = self.get(oid).bindings
            wanted = value.encode() if isinstance(value, str) else value
            return len(bindings) == 1 and bindings[0].value == wanted

        waiting.wait_until(has_value, f"{oid} becomes {value!r}", limit_s)
