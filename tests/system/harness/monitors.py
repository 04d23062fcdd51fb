"""Monitoring systems that use the files of the build: the Prometheus exporter, plugins of the Nagios family, and SNMPTT
with snmptrapd."""

import os
import re
import shlex
import subprocess
import urllib.error
import urllib.request
from collections import namedtuple

from . import machine, mib, receiver, systemTest, waiting

FOLDER = os.path.join(machine.BUILD, "monitoring")
HOME = "/tmp/monitors"
PLUGINS = os.path.join(machine.REPOSITORY, "monitoring")
EXPORTER_PORT = 9116
TRAP_PORT, COMMUNITY = 11162, "watch"

Sample = namedtuple("Sample", "name labels value")
SAMPLE = re.compile(r'([A-Za-z_:][\w:]*)(?:{(.*)})? (\S+)$')
LABEL = re.compile(r'(\w+)="((?:[^"\\]|\\.)*)"')
ESCAPES = {r"\\": "\\", r"\"": '"', r"\n": "\n"}


def made(*names):
    return os.path.join(FOLDER, *names)


def parse(text):
    """Parses the samples in the output of an exporter."""
    samples = []
    for line in text.splitlines():
        found = SAMPLE.match(line)
        if found and not line.startswith("#"):
            labels = {name: re.sub(r"\\.", lambda match: ESCAPES[match.group()], value)
                      for name, value in LABEL.findall(found.group(2) or "")}
            samples.append(Sample(found.group(1), labels, float(found.group(3))))
    return samples


def served(manager):
    """Returns {column: {instance: value}} of everything that the daemon serves, with decoded strings."""
    found = {name: {} for name in mib.COLUMNS}
    names = {column.oid: name for name, column in mib.COLUMNS.items()}
    for root in ("1.3.6.1.2.1.1", mib.ROOT):
        for binding in manager.bulk_walk(root, "-Cr20").bindings:
            oid = mib.arcs(binding.oid)
            name = next((names[oid[:end]] for end in (-1, -2) if oid[:end] in names), None)
            if name:
                value = binding.value
                found[name][oid[len(mib.COLUMNS[name].oid):]] = \
                    value.decode("utf-8", "replace") if isinstance(value, bytes) else value
    return found


class MonitorStory(systemTest.SharedSystemTest):
    """An array whose events reach the port of a trap translator, and whose first object of a kind has a special name."""

    NAMED = ("TsDisk", "disk ä")

    @classmethod
    def launch(cls):
        machine.configure_daemon(trapsEnabled="yes", trapDest="127.0.0.1", trapPort=TRAP_PORT, trapCommun=COMMUNITY,
                                 trapVer=2)
        kind, name = cls.NAMED
        cls.array.start(cls.PRESET, "--events")
        cls.array.set(kind, cls.array.first(kind), "Name", name)
        cls.daemon.start()


class Exporter(machine.Program):
    """prometheus-snmp-exporter with a module file of the build."""

    def __init__(self, file="snmp.yml", port=EXPORTER_PORT):
        self.address = f"127.0.0.1:{port}"
        super().__init__("prometheus-snmp-exporter", f"--config.file={made('prometheus', file)}",
                         f"--web.listen-address={self.address}", "--log.level=error")
        waiting.wait_until(lambda: self.page("/") is not None, "the exporter responds")

    def page(self, path):
        """Returns the contents of a page, or None if nobody listens."""
        try:
            with urllib.request.urlopen(f"http://{self.address}{path}",
                                        timeout=120 * waiting.PATIENCE) as response:
                return response.read().decode("utf-8")
        except urllib.error.HTTPError as error:
            raise AssertionError(f"{path}: {error}: {error.read().decode('utf-8', 'replace')}") from None
        except OSError:
            return None

    def scrape(self, module):
        return parse(self.page(f"/snmp?target=127.0.0.1&module={module}"))


class Plugins:
    """Runs the plugin commands of the build, as Nagios does."""

    def __init__(self):
        text = machine.read_file(made("nagios", "tessera.cfg"))
        self.commands = dict(re.findall(r"command_name +(\w+)\n +command_line +(.*)\n", text))

    def run(self, command, instance, snmp="-v2c -c public"):
        """Returns (status, output)."""
        line = self.commands[command]
        for macro, value in (("$USER1$", PLUGINS), ("$HOSTADDRESS$", "127.0.0.1"), ("$_HOSTSNMP$", snmp),
                             ("$ARG1$", instance)):
            line = line.replace(macro, value)
        done = subprocess.run(shlex.split(line), stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
                              timeout=60 * waiting.PATIENCE, env={**os.environ, "MIBS": ""})
        return done.returncode, done.stdout.strip() + done.stderr.strip()


SNMPTT_INI = """\
[General]
mode = standalone
multiple_event = 1
[Logging]
log_enable = 1
log_file = {log}
unknown_trap_log_enable = 1
unknown_trap_log_file = {log}.unknown
[TrapFiles]
snmptt_conf_files = <<END
{events}
END
"""


class TrapTranslator(receiver.SnmpTrapd):
    """snmptrapd that passes every notification to SNMPTT."""

    def __init__(self, log_path=os.path.join(HOME, "snmptt.log"), events=("snmptt", "tessera.conf")):
        os.makedirs(HOME, exist_ok=True)
        self.log_path = log_path
        ini = os.path.join(HOME, "snmptt.ini")
        machine.write_file(self.log_path, "")
        machine.write_file(ini, SNMPTT_INI.format(log=self.log_path, events=made(*events)))
        super().__init__(HOME, f"authCommunity execute {COMMUNITY}\ntraphandle default /usr/sbin/snmptt --ini={ini}\n",
                         f"udp:127.0.0.1:{TRAP_PORT}")

    def lines(self, name):
        """Returns the lines of SNMPTT that contain this name."""
        return [line for line in machine.read_file(self.log_path).splitlines() if name in line]

    def wait_for(self, name, *texts):
        """Waits for a line that contains this name and all of these strings, and returns it."""
        def found():
            return next((line for line in self.lines(name) if all(text in line for text in texts)), None)

        return waiting.wait_until(found, f"SNMPTT reports {name} with {texts}", 60)
