"""The little machine that the test runs in: its files, its processes, the programs under test."""

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


# How the sandbox was made: "namespaces", "user" or "container"; see sandbox/sandbox.
WAY = os.environ.get("SNMPSUBAGENT_SANDBOX", "")
# CTest counts a test that exits with this status as skipped.
SKIPPED = 77


def parent_of(pid):
    """0 for the first process, and for one that has just ended."""
    stat = read_file(f"/proc/{pid}/stat")
    return int(stat.rsplit(")", 1)[1].split()[1]) if stat else 0


def ancestors_of(pid):
    """The process itself, its parent and so on."""
    while pid:
        yield pid
        pid = parent_of(pid)


def first_process():
    """The first process of the sandbox, None outside one."""
    return next((pid for pid in ancestors_of(os.getpid()) if "\0--inside\0" in read_file(f"/proc/{pid}/cmdline")), None)


def require_sandbox(*ways):
    """The daemon kills every snmpd of its machine and the tests rewrite /etc: only ever in the sandbox. A test that
    names ways is skipped in a sandbox that was made in another."""
    if first_process() is None:
        raise SystemExit("this runs in the sandbox only: sandbox/sandbox --keep BUILD -- /usr/bin/python3 ...")
    if ways and WAY not in ways:
        skip(f"needs a sandbox made with {' or '.join(ways)}")


def skip(reason):
    print(f"skipped '{reason}'", flush=True)
    raise SystemExit(SKIPPED)


def has_users():
    """Whether there are other users than root here: not in every user namespace."""
    return sum(int(line.split()[2]) for line in read_file("/proc/self/uid_map").splitlines()) > 1


def has_ipv6():
    """Containers often have none."""
    return " lo\n" in read_file("/proc/net/if_inet6")


def write_file(path, text, mode=0o644):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(path, mode)


def read_file(path):
    """The text of a file, empty when there is none."""
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
    """Writes /etc/snmpSubagent.conf: what the sandbox has by default, changed by the arguments."""
    values = {"rwcommunity": "private", "rocommunity": "public", "trapsEnabled": "no",
              "controllerIdLeader": "64702", "controllerIdThis": "64702", "controllerIndexThis": "1",
              "verbose": "no"}
    values.update(settings)
    write_file(DAEMON_CONF, "".join(f"{key} {value}\n" for key, value in values.items() if value is not None))


def is_running(pid):
    """Whether there is such a process; one that has ended and waits for its parent does not count."""
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            return file.read().rsplit(")", 1)[1].split()[0] not in "ZX"
    except (FileNotFoundError, ProcessLookupError):
        return False


def processes_named(name):
    """Process ids of the sandbox's running programs, by the name that killall goes by."""
    found, first = [], first_process()
    for entry in filter(str.isdigit, os.listdir("/proc")):
        if (read_file(f"/proc/{entry}/comm").rstrip("\n") == name[:15] and is_running(int(entry))
                and first in ancestors_of(int(entry))):
            found.append(int(entry))
    return found


def end_processes_named(*names):
    """Ends what an earlier test has left. Safe: in here are only the sandbox's own processes."""

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
    """Runs a program to its end and returns what it printed."""
    result = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, capture_output=True,
                            text=True, errors="replace", env=environment, timeout=limit_s * waiting.PATIENCE)
    if check and result.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {result.returncode}: "
                             f"{result.stdout}{result.stderr}")
    return result.stdout


class Program:
    """A program that runs until close. options: those of Popen."""

    def __init__(self, *command, **options):
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, **options)

    def close(self):
        self.process.terminate()
        self.process.wait(30 * waiting.PATIENCE)
