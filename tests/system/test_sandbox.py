"""The sandbox keeps what runs in it apart from the machine. Runs outside, and starts sandboxes."""

import os
import signal
import subprocess
import tempfile
import unittest

from harness import machine, waiting

SANDBOX = os.path.join(machine.REPOSITORY, "sandbox", "sandbox")
PRIVATE = ("/etc", "/tmp", "/var", "/run", "/mnt", "/usr/local", "/dev")


def inside(script, *options, status=0, environment=None):
    """What a shell script prints in a new sandbox."""
    result = subprocess.run([SANDBOX, *options, "--", "bash", "-euc", script], stdin=subprocess.DEVNULL,
                            capture_output=True, text=True, check=False, env=environment)
    if result.returncode != status:
        raise AssertionError(f"status {result.returncode}: {result.stdout}{result.stderr}")
    return result.stdout


def running_with(mark):
    """Processes of the whole machine whose command line holds a mark."""
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


class ItIsAMachineOfItsOwn(unittest.TestCase):
    def test_processes_outside_are_neither_seen_nor_ended(self):
        # A name of its own: were the sandbox broken, nobody else's process would be hit.
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

    def test_host_name_and_users_work(self):
        name = os.uname().nodename
        self.assertEqual(inside("hostname; id -un daemon; getent hosts localhost | grep -c .", "--hostname", "arr7"),
                         "arr7\ndaemon\n1\n")
        self.assertEqual(os.uname().nodename, name)


class ItIsPrepared(unittest.TestCase):
    def test_the_daemons_files_and_programs_are_there(self):
        shown = inside("stat -c '%U %a' /etc/wirelink.key; cat /etc/snmpd.conf /tmp/apps/snmpsubagent.conf; "
                       "test -s /etc/snmpSubagent.conf; /usr/local/sbin/snmpd -v | grep -c version; "
                       "test -x /usr/local/bin/snmpget; test -d /var/run -a -d /var/log -a -d /var/agentx; "
                       "test -d /var/lib/snmp -a -d /mnt/root -a -d /mnt/cores/logs; ls /etc/ld.so.cache")
        self.assertTrue(shown.startswith("root 600\n"))
        for line in ("master agentx", "rocommunity public", "agentxTimeout 30", "agentxRetries 0",
                     "maxGetbulkResponses 20", "isdebugmode=false"):
            self.assertIn(line + "\n", shown)
        key = inside("cat /etc/wirelink.key")
        self.assertRegex(key, r"^[A-Za-z0-9+/=]{32,}\n$")
        self.assertNotEqual(key, inside("cat /etc/wirelink.key"))

    def test_bare_leaves_the_files_out(self):
        self.assertEqual(inside("ls /etc/wirelink.key /etc/snmpd.conf /etc/snmpSubagent.conf /tmp/apps/* 2>/dev/null "
                                "|| true", "--bare"), "")

    def test_a_repository_or_build_folder_in_a_private_folder_stays_in_its_place(self):
        for home in ("/tmp", "/var/tmp", "/mnt"):
            with self.subTest(home=home), tempfile.TemporaryDirectory(dir=home) as folder:
                clone = os.path.join(folder, "clone")
                build = os.path.join(folder, "build")
                os.makedirs(build)
                os.makedirs(clone)
                subprocess.run(["cp", "-r", os.path.dirname(SANDBOX), clone], check=True)
                with open(os.path.join(folder, "secret"), "w", encoding="utf-8"):
                    pass
                result = subprocess.run(
                    [os.path.join(clone, "sandbox", "sandbox"), "--keep", build, "bash", "-euc",
                     f"pwd; ls {folder}; ls {clone}/sandbox/sandbox; echo kept > {build}/written"],
                    cwd=clone, capture_output=True, text=True, check=False)
                self.assertEqual((result.stdout, result.stderr),
                                 (f"{clone}\nbuild\nclone\n{clone}/sandbox/sandbox\n", ""))
                self.assertEqual(machine.read_file(os.path.join(build, "written")), "kept\n")


class ItEndsCleanly(unittest.TestCase):
    def test_the_exit_status_is_passed_on(self):
        for status in (0, 1, 7, 255):
            inside(f"exit {status}", status=status)
        inside("kill -KILL $$", status=128 + signal.SIGKILL)

    def test_nothing_runs_on_when_the_command_has_ended(self):
        mark = f"7{os.getpid()}0"
        inside(f"setsid sleep {mark} >/dev/null 2>&1 & disown")
        waiting.wait_until(lambda: not running_with(mark), "what ran in the sandbox has ended")

    def test_a_signal_ends_all_of_it(self):
        for number, expected in ((signal.SIGTERM, 143), (signal.SIGINT, 130), (signal.SIGHUP, 129),
                                 (signal.SIGKILL, -9)):
            with self.subTest(signal=number.name):
                mark = f"8{os.getpid()}{number.value}"
                process = subprocess.Popen([SANDBOX, "bash", "-c", f"setsid sleep {mark} & exec sleep {mark}"],
                                           stdin=subprocess.DEVNULL)
                # bash's own line holds the mark too, so two sleeps make the sandbox complete
                waiting.wait_until(lambda: len([pid for pid in running_with(mark) if machine.read_file(
                    f"/proc/{pid}/comm") == "sleep\n"]) == 2, "the sandbox runs")
                process.send_signal(number)
                self.assertEqual(process.wait(60), expected)
                waiting.wait_until(lambda: not running_with(mark), "all of it has ended")

    def test_what_cannot_work_is_said(self):
        for arguments, text in (((), "no command given"), (("--frobnicate", "true"), "unknown option"),
                                (("--keep", "/no/such/folder", "true"), "no such file or folder"),
                                (("--keep", "/etc", "true"), "cannot be kept"),
                                (("/no/such/program",), "no program that is visible")):
            with self.subTest(arguments=arguments):
                result = subprocess.run([SANDBOX, *arguments], capture_output=True, text=True, check=False)
                self.assertEqual(result.returncode, 125)
                self.assertIn(text, result.stderr)

    def test_without_root_or_namespaces_it_says_so(self):
        for reduced, text in ((["setpriv", "--reuid=65534", "--clear-groups"], "must be run as root"),
                              (["setpriv", "--bounding-set=-sys_admin", "--inh-caps=-sys_admin"],
                               "no namespaces allowed here")):
            with self.subTest(text=text):
                result = subprocess.run([*reduced, SANDBOX, "true"], capture_output=True, text=True, check=False)
                self.assertEqual(result.returncode, 125)
                self.assertIn(text, result.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
