"""Every command that the README, the manual pages and the other documents show works as it is written there.

All of them run on one Debian machine of its own, a document after the other, as a reader would try them. What runs in a
shorter form or in another test is said in harness/documents.py.
"""

import glob
import os
import shlex
import unittest

from harness import debian, documents, machine, manager, mib, waiting
from harness.packageStory import UNIT, PackageStory

PACKAGES = f"{machine.REPOSITORY}/build/release/packages"
# The folder that the reader is in, when it is not the repository.
FOLDERS = {"docs/administrators.md": PACKAGES}
# This one ends with the removal of all that the others use.
LAST = "docs/administrators.md"

# A reader says yes to apt-get, and keeps the settings that are there.
APT_CONF = 'APT::Get::Assume-Yes "true";\nDpkg::Options { "--force-confold"; };\n'
SETTINGS = {"controllerIdThis 1": "controllerIdThis 64702", "trapsEnabled no": "trapsEnabled yes",
            "trapDest 192.0.2.1": "trapDest 127.0.0.1", "trapCommun public": "trapCommun traps"}
USERS = {"#createUser monitor": "createUser monitor", "#rouser monitor": "rouser monitor",
         "signing passphrase": "SIGNING-WORD", "encrypting passphrase": "ENCRYPTING-WORD"}

# A block is a shell of its own that ends at the first command that fails. MIBDIRS stands in for snmp-mibs-downloader.
SCRIPT = "/tmp/block"
PRELUDE = f"""
cd {{folder}}
export MIBDIRS={machine.REPOSITORY}/mib/standard:/usr/share/snmp/mibs
output=/tmp/block.output said=/tmp/block.said complaints=/tmp/block.complaints
trap 'kill $(jobs -p) 2>/dev/null' EXIT
"""
# Net-SNMP's tools end well without an answer to show, too.
PLAIN = """
{{ {text}
}} >$output 2>$complaints || {{ status=$?; cat $output $complaints; exit $status; }}
if head -1 $output | grep 'No Such\\|No more variables'; then exit 1; fi"""
# The next command can come when this one has said that it is ready.
IN_BACKGROUND = """
: >$said
{text} >$said 2>&1 &
until test -s $said; do kill -0 $! || exit; sleep 0.1; done"""
PRINTS = """
test "$(cat $output)" = {prints} || {{ cat $output; exit 1; }}"""


def shell_lines(command):
    text = documents.SHORTER.get(command.text, command.text)
    lines = f"\necho {shlex.quote(f'{command.document}:{command.line}: {text}')}"
    lines += IN_BACKGROUND.format(text=text[:-1]) if text.endswith("&") else PLAIN.format(text=text)
    if command.prints is not None:
        lines += PRINTS.format(prints=shlex.quote(command.prints))
    return lines


class Documents(PackageStory):
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

    def follow(self, document):
        for block in documents.blocks(document):
            commands = [each for each in block if not documents.left_out(each) and not self.runs_again(each, block)]
            self.done.update(each.text for each in commands)
            if commands:
                self.wait_until_served()
                self.run_commands(commands, FOLDERS.get(document, machine.REPOSITORY))

    def runs_again(self, command, block):
        """Scripts run once, and so does what stands alone; in a block each command may need those before it."""
        return command.text in self.done and (len(block) == 1 or command.text.startswith("scripts/"))

    def run_commands(self, commands, folder):
        text = "\n".join(each.text for each in commands)
        brings_array = "arraySim serve" in text and "--socket" not in text
        if brings_array:
            self.stop_array()
        self.host.write(SCRIPT, "\n".join([PRELUDE.format(folder=folder), *map(shell_lines, commands)]))
        print(self.host.run("bash", SCRIPT, limit_s=600), end="", flush=True)
        if brings_array:
            self.start_array("--events")
        elif machine.SESSION_KEY in text:
            self.stop_array()
            self.start_array("--events")

    def wait_until_served(self):
        """A service that has just been started needs a moment."""
        if self.host.status("systemctl", "is-enabled", "--quiet", UNIT) == 0:
            # snmpget also exits with status 0 while the daemon has not registered the array's objects yet.
            reader, oid = manager.Manager(), mib.scalar("selfTestVersion")
            waiting.wait_until(lambda: any(each.value for each in reader.get(oid).bindings), "the array is served", 60)


def test_of(document):
    def test(self):
        self.follow(document)
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
