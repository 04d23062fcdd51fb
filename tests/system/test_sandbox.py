"""Isolation by the sandbox. These tests run outside and start sandboxes."""

import os
import signal
import subprocess
import sys
import tempfile
import unittest

from harness import machine, waiting

SANDBOX = os.path.join(machine.REPOSITORY, "sandbox", "sandbox")
MADE = subprocess.run([SANDBOX, "--which"], capture_output=True, text=True, check=False).stdout.strip()
ORDINARY_USER = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if os.geteuid() == 0 else []
PRIVATE = ("/etc", "/tmp", "/var", "/run", "/mnt", "/usr/local", "/dev")


def inside(script, *options, status=0, user=()):
    """Returns the output of a shell script in a new sandbox. user: a command that changes to another user first."""
    result = subprocess.run([*user, SANDBOX, *options, "--", "bash", "-euc", script], stdin=subprocess.DEVNULL,
                            capture_output=True, text=True, check=False)
    if result.returncode != status:
        raise AssertionError(f"status {result.returncode}: {result.stdout}{result.stderr}")
    return result.stdout


def running_with(mark):
    """Returns the processes of the whole machine whose command line contains a mark."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/cmdline", "rb") as file:
                if mark.encode() in file.read():
                    found.append(int(pid))
        except (FileNotFoundError, ProcessLookupError):
            pass
    return [pid for pid in found if pid != os.getpid() and machine.is_running(pid)]


def names_in(folder):
    return set(os.listdir(folder))


class Isolation(unittest.TestCase):
    def test_processes_outside_are_neither_visible_nor_killed(self):
        # A unique name, so that a broken sandbox kills no other process.
        name = f"bystander{os.getpid() % 100000}"
        with tempfile.TemporaryDirectory(dir="/var/tmp") as folder:
            os.symlink("/bin/sleep", os.path.join(folder, name))
            process = subprocess.Popen([os.path.join(folder, name), "600"])
            try:
                count = inside("ps ax -o pid= | wc -l")
                self.assertLessEqual(int(count), 4)
                self.assertEqual(inside(f"killall -9 {name} 2>/dev/null && echo ended one; "
                                        f"kill -9 {process.pid} 2>/dev/null && echo reached it; true"), "")
                self.assertIsNone(process.poll())
            finally:
                process.kill()
                process.wait()

    def test_files_written_inside_do_not_reach_the_outside(self):
        before = {folder: names_in(folder) for folder in PRIVATE}
        snmpd_conf = machine.read_file("/etc/snmpd.conf")
        mark = f"sandbox-test-{os.getpid()}"
        inside("for folder in " + " ".join(PRIVATE) + f"; do echo x > $folder/{mark}; done; "
               "echo changed > /etc/snmpd.conf; rm -rf /var/log /usr/local/sbin; mount -t tmpfs x /srv")
        for folder in PRIVATE:
            self.assertFalse(os.path.exists(f"{folder}/{mark}"), folder)
        self.assertEqual(names_in("/etc"), before["/etc"])
        self.assertEqual(names_in("/usr/local"), before["/usr/local"])
        self.assertEqual(machine.read_file("/etc/snmpd.conf"), snmpd_conf)
        self.assertFalse([line for line in machine.read_file("/proc/mounts").splitlines() if line.startswith("x ")])

    def test_the_network_is_loopback_alone_and_up(self):
        listener = subprocess.Popen(["/usr/bin/python3", "-c",
                                     "import socket; s = socket.create_server(('127.0.0.1', 0));"
                                     "print(s.getsockname()[1], flush=True); input()"],
                                    stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        try:
            port = listener.stdout.readline().strip()
            links = inside("ls /sys/class/net >/dev/null; ip -o link | cut -d' ' -f2")
            self.assertEqual(links.split(), ["lo:"])
            self.assertIn("127.0.0.1/8", inside("ip -o addr show dev lo"))
            self.assertEqual(inside(f"(: < /dev/tcp/127.0.0.1/{port}) 2>/dev/null && echo reached || true"), "")
        finally:
            listener.communicate("\n")


class Exit(unittest.TestCase):
    def test_the_exit_status_is_passed_on(self):
        for status in (0, 1, 7, 255):
            inside(f"exit {status}", status=status)
        inside("kill -KILL $$", status=128 + signal.SIGKILL)

    def test_no_process_survives_the_command(self):
        mark = f"7{os.getpid()}0"
        inside(f"setsid sleep {mark} >/dev/null 2>&1 & disown")
        waiting.wait_until(lambda: not running_with(mark), "all processes of the sandbox have exited")

    def test_a_signal_terminates_all_processes(self):
        for number, expected in ((signal.SIGTERM, 143), (signal.SIGINT, 130), (signal.SIGHUP, 129),
                                 (signal.SIGKILL, -9)):
            with self.subTest(signal=number.name):
                mark = f"8{os.getpid()}{number.value}"
                process = subprocess.Popen([SANDBOX, "bash", "-c", f"setsid sleep {mark} & exec sleep {mark}"],
                                           stdin=subprocess.DEVNULL)
                # bash's command line contains the mark as well, so the sandbox is complete when there are two sleeps
                waiting.wait_until(lambda: len([pid for pid in running_with(mark) if machine.read_file(
                    f"/proc/{pid}/comm") == "sleep\n"]) == 2, "the sandbox runs")
                process.send_signal(number)
                self.assertEqual(process.wait(60), expected)
                waiting.wait_until(lambda: not running_with(mark), "all processes have exited")

    def test_errors_are_reported(self):
        for arguments, text in (((), "no command given"), (("--frobnicate", "true"), "unknown option"),
                                (("--keep", "/no/such/folder", "true"), "no such file or directory"),
                                (("--keep", "/etc", "true"), "cannot be kept"),
                                (("/no/such/program",), "not found in the sandbox")):
            with self.subTest(arguments=arguments):
                result = subprocess.run([SANDBOX, *arguments], capture_output=True, text=True, check=False)
                self.assertEqual(result.returncode, 125)
                self.assertIn(text, result.stderr)


class WithoutRoot(unittest.TestCase):
    def test_snmpd_changes_to_its_user_and_answers(self):
        user = ["env", "SNMPSUBAGENT_SANDBOX=user", *ORDINARY_USER]
        if subprocess.run([*user, SANDBOX, "--which"], capture_output=True, check=False).returncode != 0:
            self.skipTest("needs user namespaces")
        shown = inside("id -u; stat -c %U /etc /etc/wirelink.key; "
                       "/usr/local/sbin/snmpd -C -c /etc/snmpd.conf -u daemon -Lf /dev/null; "
                       "until snmpget -t 1 -v2c -c public localhost 1.3.6.1.2.1.1.3.0 >/dev/null 2>&1; do :; done", user=user)
        self.assertEqual(shown, "0\nroot\nroot\n")


class ContainerItself(unittest.TestCase):
    """The third kind of sandbox, a container. A sandbox of namespaces simulates the container."""

    PRELUDE = f"""
export SNMPSUBAGENT_SANDBOX=container
echo theirs >/etc/snmpd.conf
names() {{ find /dev /etc /mnt /tmp /usr/local /var | sort; }}
names >/run/before
check() {{ names | diff /run/before - && cat /etc/snmpd.conf && ps ax -o comm= | grep sleep || true; }}
within="{SANDBOX} -- bash -c"
"""

    def test_files_and_processes_are_as_before(self):
        command = "grep -o \"master agentx\" /etc/snmpd.conf; echo x >/var/log/snmpSubagent.log; setsid sleep 600 & exit 5"
        self.assertEqual(inside(f"{self.PRELUDE} $within '{command}' || echo $?; check"), "master agentx\n5\ntheirs\n")

    def test_the_next_one_cleans_up_after_one_that_was_killed(self):
        self.assertEqual(inside(f"""{self.PRELUDE}
$within 'setsid sleep 600 & echo >/run/ready; sleep 601' &
until test -e /run/ready; do sleep 0.1; done
kill -KILL $!
$within 'ps ax -o comm= | grep sleep; echo next'
check"""), "next\ntheirs\n")

    def test_programs_and_sockets_of_others_are_left_alone(self):
        for foreign, text in (("ln -s /bin/sleep /run/snmpd; /run/snmpd 600 & until pgrep snmpd; do :; done",
                               "snmpd runs in this container"),
                              ("mkfifo /tmp/apimgr.sock", "/tmp/apimgr.sock exists")):
            with self.subTest(text=text):
                shown = inside(f"{self.PRELUDE} {foreign}\n$within true 2>&1 || echo $?; "
                               "ls /tmp; pgrep -c snmpd || true; cat /etc/snmpd.conf")
                self.assertIn(text, shown)
                left = "apps\n1\n" if "snmpd" in foreign else "apimgr.sock\napps\n0\n"
                self.assertTrue(shown.endswith(f"125\n{left}theirs\n"), shown)


if __name__ == "__main__":
    if MADE == "container":
        print("skipped 'needs a sandbox made with namespaces or user'")
        sys.exit(machine.SKIPPED)
    unittest.main(verbosity=2)
