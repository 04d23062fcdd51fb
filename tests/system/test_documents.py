"""Runs every command in the README, the manual pages and the other documents verbatim.

All of them run on one Debian machine, one document after the other, as a reader would try them. harness/documents.py
lists commands that run in a shorter form or in another test.
"""

import glob
import os
import shlex
import unittest

from harness import debian, documents, machine, manager, mib, waiting
from harness.packageTest import UNIT, PackageTest

PACKAGES = f"{machine.REPOSITORY}/build/release/packages"
# The working directory for a document, if it is not the repository.
FOLDERS = {"docs/administrators.md": PACKAGES}
# This one ends by removing everything that the others use.
LAST = "docs/administrators.md"

# A reader confirms what apt-get asks, and keeps existing settings.
APT_CONF = 'APT::Get::Assume-Yes "true";\nDpkg::Options { "--force-confold"; };\n'
SETTINGS = {"controllerIdThis 1": "controllerIdThis 64702", "trapsEnabled no": "trapsEnabled yes",
            "trapDest 192.0.2.1": "trapDest 127.0.0.1", "trapCommun public": "trapCommun traps"}
USERS = {"#createUser monitor": "createUser monitor", "#rouser monitor": "rouser monitor",
         "signing passphrase": "SIGNING-WORD", "encrypting passphrase": "ENCRYPTING-WORD"}

# Each block runs in a separate shell that exits at the first failing command. MIBDIRS replaces snmp-mibs-downloader.
SCRIPT = "/tmp/block"
PRELUDE = f"""
cd {{folder}}
export MIBDIRS={machine.REPOSITORY}/mib/standard:/usr/share/snmp/mibs
output=/tmp/block.output printed=/tmp/block.printed errors=/tmp/block.errors
trap 'kill $(jobs -p) 2>/dev/null' EXIT
"""
# Net-SNMP's tools exit with 0 even if the object does not exist.
PLAIN = """
{{ {text}
}} >$output 2>$errors || {{ status=$?; cat $output $errors; exit $status; }}
if head -1 $output | grep 'No Such\\|No more variables'; then exit 1; fi"""
# The next command can run when this one has printed something.
IN_BACKGROUND = """
: >$printed
{text} >$printed 2>&1 &
until test -s $printed; do kill -0 $! || exit; sleep 0.1; done"""
PRINTS = """
test "$(cat $output)" = {prints} || {{ cat $output; exit 1; }}"""


def shell_lines(command):
    text = documents.SHORTER.get(command.text, command.text)
    lines = f"\necho {shlex.quote(f'{command.document}:{command.line}: {text}')}"
    lines += IN_BACKGROUND.format(text=text[:-1]) if text.endswith("&") else PLAIN.format(text=text)
    if command.prints is not None:
        lines += PRINTS.format(prints=shlex.quote(command.prints))
    return lines


class Documents(PackageTest):
    @classmethod
    def prepare(cls):
        cls.host.write("/etc/apt/apt.conf.d/reader", APT_CONF)
        cls.host.write("/etc/hosts", cls.host.read("/etc/hosts") + "127.0.0.1 ARRAY array1\n")
        cls.host.write("/etc/snmp/snmptrapd.conf", "authCommunity log traps\n")
        cls.host.write(machine.SESSION_KEY, "a-key-of-the-platform\n", 0o600)
        for path, changes in ((machine.DAEMON_CONF, SETTINGS), (machine.SNMPD_CONF, USERS)):
            text = machine.read_file(f"{machine.REPOSITORY}/packaging{path}")
            for before, after in changes.items():
                text = text.replace(before, after)
            cls.host.write(path, text, 0o600)
        os.symlink("/", debian.ROOT + "/srv/image")
        cls.done = set()
        cls.start_array("--events", program=machine.ARRAY_SIM)

    def run_document(self, document):
        for block in documents.blocks(document):
            commands = [each for each in block if not documents.is_omitted(each) and not self.need_not_run(each, block)]
            self.done.update(each.text for each in commands)
            if commands:
                self.wait_until_served()
                self.run_commands(commands, FOLDERS.get(document, machine.REPOSITORY))

    def need_not_run(self, command, block):
        """Scripts and single commands run only once. In a block, each command may need those before it."""
        return command.text in self.done and (len(block) == 1 or command.text.startswith("scripts/"))

    def run_commands(self, commands, folder):
        text = "\n".join(each.text for each in commands)
        starts_array = "arraySim serve" in text and "--socket" not in text
        if starts_array:
            self.stop_array()
        self.host.write(SCRIPT, "\n".join([PRELUDE.format(folder=folder), *map(shell_lines, commands)]))
        print(self.host.run("bash", SCRIPT, limit_s=600), end="", flush=True)
        if starts_array:
            self.start_array("--events")
        elif machine.SESSION_KEY in text:
            self.stop_array()
            self.start_array("--events")

    def wait_until_served(self):
        """Waits until a service that was just started serves the array."""
        if self.host.status("systemctl", "is-enabled", "--quiet", UNIT) == 0:
            # snmpget also exits with status 0 while the daemon has not registered the array's objects yet.
            reader, oid = manager.Manager(), mib.scalar("selfTestVersion")
            waiting.wait_until(lambda: any(each.value for each in reader.get(oid).bindings), "the array is served", 60)


def test_of(document):
    def test(self):
        self.run_document(document)
        if document == "README.md":
            self.host.run("sh", "-c", f"apt-get install {PACKAGES}/*.deb")
            package, = glob.glob(f"{debian.ROOT}{PACKAGES}/snmpsubagent_*.deb")
            self.make_newer(package.removeprefix(debian.ROOT), f"{PACKAGES}/snmpsubagent_NEW.deb")

    return test


for number, path in enumerate(sorted(documents.paths(), key=lambda path: path == LAST)):
    setattr(Documents, f"test_{number:02}_{path}", test_of(path))

if __name__ == "__main__":
    machine.require_sandbox("namespaces")
    unittest.main(verbosity=2)
