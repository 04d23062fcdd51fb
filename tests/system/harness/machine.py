"""The sandbox in which the test runs: its files, its processes, the programs under test."""

import os
import signal
import subprocess

from . import waiting

REPOSITORY = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
BUILD = os.environ.get("SNMPSUBAGENT_BUILD", os.path.join(REPOSITORY, "build", "release"))
DAEMON = os.path.join(BUILD, "apiMgmt", "snmpSubagent", "snmpSubagent")
ARRAY_SIM = os.path.join(BUILD, "arraySim", "arraySim")

SNMPD_CONF = "/etc/snmpd.conf"
DAEMON_CONF = "/etc/snmpSubagent.conf"
MODE_CONF = "/tmp/apps/snmpsubagent.conf"
SESSION_KEY = "/etc/wirelink.key"


# "namespaces", "user" or "container"; see sandbox/sandbox.
SANDBOX_KIND = os.environ.get("SNMPSUBAGENT_SANDBOX", "")
# CTest counts a test that exits with this status as skipped.
SKIPPED = 77


def parent_of(pid):
    """Returns 0 for the first process, and for one that has just exited."""
    stat = read_file(f"/proc/{pid}/stat")
    return int(stat.rsplit(")", 1)[1].split()[1]) if stat else 0


def ancestors_of(pid):
    """Yields the process itself, its parent and so on."""
    while pid:
        yield pid
        pid = parent_of(pid)


def first_process():
    """Returns the first process of the sandbox, or None outside one."""
    return next((pid for pid in ancestors_of(os.getpid()) if "\0--inside\0" in read_file(f"/proc/{pid}/cmdline")), None)


def require_sandbox(*kinds):
    """Exits outside the sandbox, because the daemon kills every snmpd that it can see and the tests rewrite /etc. Skips
    the test in any other kind of sandbox than these, if any are given."""
    if first_process() is None:
        raise SystemExit("runs only in the sandbox: sandbox/sandbox --keep BUILD -- /usr/bin/python3 ...")
    if kinds and SANDBOX_KIND not in kinds:
        skip(f"needs a sandbox made with {' or '.join(kinds)}")


def skip(reason):
    print(f"skipped '{reason}'", flush=True)
    raise SystemExit(SKIPPED)


def has_users():
    """Returns whether there are users besides root; some user namespaces have none."""
    return sum(int(line.split()[2]) for line in read_file("/proc/self/uid_map").splitlines()) > 1


def has_ipv6():
    """Returns whether there is IPv6, which containers often lack."""
    return " lo\n" in read_file("/proc/net/if_inet6")


def write_file(path, text, mode=0o644):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(path, mode)


def read_file(path):
    """Returns the contents of a file, or an empty string if it does not exist."""
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            return file.read()
    except (FileNotFoundError, ProcessLookupError):
        return ""


def remove_file(path):
    try:
        os.unlink(path)
    except FileNotFoundError:
        pass


def configure_daemon(**settings):
    """Writes /etc/snmpSubagent.conf: the sandbox's defaults, with the given settings replaced. None removes one."""
    values = {"rwcommunity": "private", "rocommunity": "public", "trapsEnabled": "no",
              "controllerIdLeader": "64702", "controllerIdThis": "64702", "controllerIndexThis": "1",
              "verbose": "no"}
    values.update(settings)
    write_file(DAEMON_CONF, "".join(f"{key} {value}\n" for key, value in values.items() if value is not None))


def is_running(pid):
    """Returns whether there is such a process. Zombies do not count."""
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            return file.read().rsplit(")", 1)[1].split()[0] not in "ZX"
    except (FileNotFoundError, ProcessLookupError):
        return False


def processes_named(name):
    """Returns the ids of the sandbox's running processes with this name, as killall compares it."""
    found, first = [], first_process()
    for entry in filter(str.isdigit, os.listdir("/proc")):
        if (read_file(f"/proc/{entry}/comm").rstrip("\n") == name[:15] and is_running(int(entry))
                and first in ancestors_of(int(entry))):
            found.append(int(entry))
    return found


def kill_processes_named(*names):
    """Kills processes that an earlier test has left. Affects only processes of the sandbox."""

    def all_gone():
        found = [pid for name in names for pid in processes_named(name)]
        for pid in found:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        return not found

    waiting.wait_until(all_gone, f"no process of {', '.join(names)} is left")


def run(*command, environment=None, limit_s=60, check=True):
    """Runs a program until it exits and returns its output."""
    result = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, capture_output=True,
                            text=True, errors="replace", env=environment, timeout=limit_s * waiting.PATIENCE)
    if check and result.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} exited with {result.returncode}: "
                             f"{result.stdout}{result.stderr}")
    return result.stdout


class Program:
    """A program that runs until close. options: those of Popen."""

    def __init__(self, *command, **options):
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, **options)

    def close(self):
        self.process.terminate()
        self.process.wait(30 * waiting.PATIENCE)
