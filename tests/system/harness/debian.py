"""A Debian machine with its own systemd, inside the sandbox: a temporary copy of this machine.

Overlays on the root file system, the repository and the build receive all changes, so the same packages are installed.
The machine shares the sandbox's network and has its own processes and control groups.
"""

import os
import signal
import subprocess
import tempfile

from . import machine, waiting

PLACE = "/mnt/debian"
ROOT = f"{PLACE}/root"
CGROUPS = "/sys/fs/cgroup"
UNIFIED = f"{PLACE}/cgroups"
# Starts no other units of this machine; the tests start what they need.
TARGET = "installed-here.target"
TARGET_TEXT = "[Unit]\nRequires=basic.target\nAfter=basic.target\nAllowIsolate=yes\n"

# The first process of the copy: mounts what belongs to its own namespaces, then becomes systemd.
BOOT = r"""
set -eu
root=$1 target=$2
mount -t proc proc "$root/proc"
mount -t sysfs -o ro sysfs "$root/sys"
if [ "$3" = unified ]; then
    mount -t cgroup2 cgroup2 "$root/sys/fs/cgroup"
else
    mount -t tmpfs -o mode=755 cgroups "$root/sys/fs/cgroup"
    mkdir "$root/sys/fs/cgroup/systemd"
    mount -t cgroup -o none,name=systemd cgroup "$root/sys/fs/cgroup/systemd"
fi
exec env -i container=sandbox PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 chroot "$root" \
    /lib/systemd/systemd --system --unit="$target" --log-target=journal --show-status=0
"""


def mount(*arguments):
    subprocess.run(["mount", *arguments], check=True)


def mount_copy(name, folder, place):
    """Mounts a copy of a directory at another path. Changes of the copy do not affect the original."""
    for each in (f"{PLACE}/{name}/changes", f"{PLACE}/{name}/work", place):
        os.makedirs(each, exist_ok=True)
    mount("-t", "overlay", "-o", f"lowerdir={folder},upperdir={PLACE}/{name}/changes,workdir={PLACE}/{name}/work",
          "debian", place)


class Debian:
    def __init__(self):
        self.outer = None
        self.pid = None
        self.groups = []
        os.makedirs(PLACE, exist_ok=True)
        mount("-t", "tmpfs", "debian", PLACE)
        mount_copy("machine", "/", ROOT)
        for folder in ("/tmp", "/run"):
            mount("-t", "tmpfs", "-o", "mode=1777" if folder == "/tmp" else "mode=755", "debian", ROOT + folder)
        mount("--rbind", "/dev", ROOT + "/dev")
        mount_copy("repository", machine.REPOSITORY, ROOT + machine.REPOSITORY)
        if not machine.BUILD.startswith(machine.REPOSITORY + "/"):
            mount_copy("build", machine.BUILD, ROOT + machine.BUILD)
        # Names are resolved as in the sandbox. Services may start, which container images forbid with policy-rc.d.
        for name in ("hosts", "nsswitch.conf"):
            machine.write_file(f"{ROOT}/etc/{name}", machine.read_file(f"/etc/{name}"))
        machine.remove_file(ROOT + "/etc/resolv.conf")
        machine.remove_file(ROOT + "/usr/sbin/policy-rc.d")
        # The file systems of the original machine must not be mounted.
        machine.write_file(ROOT + "/etc/fstab", "")
        self.write("/etc/systemd/system/" + TARGET, TARGET_TEXT)

    # --- start and stop

    def boot(self):
        kind, trees = "unified", [CGROUPS]
        if not os.path.exists(f"{CGROUPS}/cgroup.controllers"):
            # With version 1 of control groups, systemd has groups in two trees; the copy needs its own in each.
            os.mkdir(UNIFIED)
            mount("-t", "cgroup2", "cgroup2", UNIFIED)
            kind, trees = "legacy", [f"{CGROUPS}/systemd", UNIFIED]
        # Not named after this process: groups of an earlier run that was killed may still exist.
        self.groups = [tempfile.mkdtemp(prefix="sandbox-debian-", dir=tree) for tree in trees]
        joined = " && ".join(f"echo 0 >{group}/cgroup.procs" for group in self.groups)
        script = joined + ' && exec unshare --mount --pid --cgroup --uts --fork --kill-child bash -c "$0" "$@"'
        self.outer = subprocess.Popen(["bash", "-c", script, BOOT, "boot", ROOT, TARGET, kind], stdin=subprocess.DEVNULL)
        self.pid = waiting.wait_until(self.first_process, "the machine has a first process")
        waiting.wait_until(lambda: self.status("systemctl", "is-active", "--quiet", TARGET) == 0, "systemd is up", 60)

    def first_process(self):
        children = machine.read_file(f"/proc/{self.outer.pid}/task/{self.outer.pid}/children").split()
        return int(children[0]) if children else None

    def halt(self):
        if self.outer:
            self.outer.send_signal(signal.SIGKILL)  # this also kills its child and so the whole machine
            self.outer.wait()
            for group in self.groups:
                for folder, _, _ in os.walk(group, topdown=False):
                    waiting.wait_until(lambda place=folder: self.remove_group(place), f"{folder} is empty")

    @staticmethod
    def remove_group(folder):
        try:
            os.rmdir(folder)
        except OSError:
            return not os.path.exists(folder)
        return True

    # --- operations inside

    def command(self, *words):
        return ["nsenter", f"--target={self.pid}", "--mount", "--pid", "--uts", "--cgroup", "--root", "--wd",
                "env", "-i", "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", "LANG=C.UTF-8",
                "DEBIAN_FRONTEND=noninteractive", "HOME=/root", *map(str, words)]

    def status(self, *words):
        return subprocess.run(self.command(*words), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, check=False).returncode

    def run(self, *words, check=True, limit_s=300):
        """Runs a program and returns its output."""
        return machine.run(*self.command(*words), check=check, limit_s=limit_s)

    def start(self, *words):
        return subprocess.Popen(self.command(*words), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)

    def unit(self, name, property_name):
        return self.run("systemctl", "show", "--value", f"--property={property_name}", name).strip()

    def journal(self, unit):
        return self.run("journalctl", "--no-pager", "--output=cat", f"--unit={unit}")

    def pids(self, name):
        return [int(pid) for pid in self.run("pgrep", "--exact", name[:15], check=False).split()]

    def programs_of(self, unit):
        """Returns the names of all processes in a unit's control group."""
        members = machine.read_file(f"{self.groups[0]}{self.unit(unit, 'ControlGroup')}/cgroup.procs").split()
        return [machine.read_file(f"/proc/{pid}/comm").strip() for pid in members]

    def read(self, path):
        return machine.read_file(ROOT + path)

    def write(self, path, text, mode=0o644):
        os.makedirs(os.path.dirname(ROOT + path), exist_ok=True)
        machine.write_file(ROOT + path, text, mode)

    def exists(self, path):
        return os.path.lexists(ROOT + path)

    def files(self, *folders):
        """Returns the paths of everything in some directories."""
        found = set()
        for top in folders:
            for folder, folders_in_it, files in os.walk(ROOT + top):
                found.update(os.path.join(folder, name)[len(ROOT):] for name in folders_in_it + files)
        return found
