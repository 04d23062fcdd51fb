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

# MIBDIRS stands in for the package snmp-mibs-downloader.
PRELUDE = """
cd {folder}
export MIBDIRS={standard}:/usr/share/snmp/mibs
said=$(mktemp)
trap 'kill $(jobs -p) 2>/dev/null' EXIT
"""
# Whoever starts something in the background goes on when it has said that it is ready.
IN_BACKGROUND = """\
{text} >"$said" 2>&1 &
until test -s "$said"; do kill -0 $! || exit; sleep 0.1; done; cat "$said"
"""


def shell_lines(command):
    """What runs one command, shows it, and ends the shell when it fails or prints something else than it should."""
    text = documents.SHORTER.get(command.text, command.text)
    yield f"echo {shlex.quote(f'{command.document}:{command.line}: {text}')}"
    if text.endswith("&"):
        yield IN_BACKGROUND.format(text=text[:-1])
    elif command.prints is not None:
        yield f'printed=$({text}) || exit\necho "$printed"\ntest "$printed" = {shlex.quote(command.prints)} || exit'
    else:
        yield f"{{ {text}\n}} || exit"


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
            commands = [each for each in block if not documents.left_out(each)]
            # Scripts, and what stands in the running text, once.
            if len(block) == 1:
                commands = [each for each in commands if each.text not in self.done]
            commands = [each for each in commands if not each.text.startswith("scripts/") or each.text not in self.done]
            self.done.update(each.text for each in commands)
            if commands:
                self.wait_until_served()
                self.run_commands(commands, FOLDERS.get(document, machine.REPOSITORY))

    def run_commands(self, commands, folder):
        own_array = any(each.text.startswith("arraySim serve ") and "--socket" not in each.text for each in commands)
        if own_array:
            self.stop_array()
        lines = [PRELUDE.format(folder=folder, standard=f"{machine.REPOSITORY}/mib/standard")]
        for each in commands:
            lines += shell_lines(each)
        print(self.host.run("bash", "-c", "\n".join(lines), limit_s=600)[-2000:], flush=True)
        if own_array:
            self.start_array("--events")

    def wait_until_served(self):
        """A service that has just been started needs a moment."""
        if self.host.status("systemctl", "is-active", "--quiet", UNIT) == 0:
            reader = manager.Manager()
            waiting.wait_until(lambda: reader.get(mib.scalar("globalStatus")).status == 0, "the array is served", 60)


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
    machine.require_sandbox()
    unittest.main(verbosity=2)
