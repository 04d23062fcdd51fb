"""The little machine that the test runs in: its files, its processes, the programs under test."""

import os
import signal
import subprocess

from . import waiting

REPOSITORY = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
BUILD = os.environ.get("SNMPSUBAGENT_BUILD", os.path.join(REPOSITORY, "build", "release"))
DAEMON = os.path.join(BUILD, "apiMgmt", "snmpSubagent", "snmpSubagent")
ARRAY_SIM = os.path.join(BUILD, "tools", "arraySim", "arraySim")

SNMPD_CONF = "/etc/snmpd.conf"
DAEMON_CONF = "/etc/snmpSubagent.conf"
MODE_CONF = "/tmp/apps/snmpsubagent.conf"
SESSION_KEY = "/etc/wirelink.key"


def require_sandbox():
    """The daemon ends every snmpd of its machine and the tests rewrite /etc: only ever in the sandbox."""
    with open("/proc/1/cmdline", "rb") as file:
        words = file.read().split(b"\0")
    if b"--inside" not in words:
        raise SystemExit("this runs in the sandbox only: sandbox/sandbox --keep BUILD -- /usr/bin/python3 ...")


def write_file(path, text, mode=0o644):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(path, mode)


def read_file(path):
    """The text of a file, empty when there is none."""
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            return file.read()
    except FileNotFoundError:
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
    """Process ids of running programs, by the name that killall goes by."""
    found = []
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{entry}/comm", encoding="utf-8", errors="replace") as file:
                if file.read().rstrip("\n") == name[:15] and is_running(int(entry)):
                    found.append(int(entry))
        except (FileNotFoundError, ProcessLookupError):
            pass
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
