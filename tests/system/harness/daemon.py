"""The daemon, observed like a service: through its pid file and its log."""

import glob
import os
import signal
import subprocess
import time

from . import machine, waiting

LOG = "/var/log/snmpSubagent.log"
PID_FILE = "/var/run/snmpSubagent.pid"
SNMPD_PID_FILE = "/var/run/snmpd.pid"
SANITIZER_REPORTS = "/var/log/sanitizer"

UP = "snmpSubagent is up and running."
EXITING = "snmpSubagent is exiting."
SNMPD_IS_LATE = "Unable to read_pid_file()"
START_TRIES = 10


class SnmpdIsLate(Exception):
    pass


class Daemon:
    def __init__(self):
        self.foreground = None  # the process, if the daemon was started in debug mode
        self.log_begin = 0

    # --- starting

    def start(self, wait=True, arguments=()):
        """Starts it as a service: the call returns when it has gone into the background and, unless `wait` is false,
        serves requests."""
        machine.write_file(machine.MODE_CONF, "isdebugmode=false\n")
        return self.retry_while_snmpd_is_late(lambda: self.launch(arguments), wait)

    def start_in_foreground(self):
        """Starts it in debug mode, so that its exit status can be read with wait_for_exit_status."""
        machine.write_file(machine.MODE_CONF, "isdebugmode=true\n")
        return self.retry_while_snmpd_is_late(self.launch_in_foreground)

    def retry_while_snmpd_is_late(self, launch, wait=True):
        """The daemon exits if snmpd has not written its pid file within a tenth of a second, as may happen on a busy
        machine. It is then started again, as a supervisor would do."""
        for _ in range(START_TRIES):
            self.begin_log()
            launch()
            if not wait:
                return self
            try:
                return self.wait_until_served()
            except SnmpdIsLate:
                if self.foreground:
                    self.foreground.wait(30)
        raise AssertionError(f"snmpd was late {START_TRIES} times")

    def launch(self, arguments):
        self.foreground = None
        status = subprocess.run([machine.DAEMON, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL, env=self.environment(), check=False).returncode
        if status != 0:
            raise AssertionError(f"the daemon did not go into the background: status {status}")

    def launch_in_foreground(self):
        self.foreground = subprocess.Popen([machine.DAEMON], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                           stderr=subprocess.DEVNULL, env=self.environment())

    @staticmethod
    def environment():
        options = f"log_path={SANITIZER_REPORTS}:exitcode=99"
        return {**os.environ, "ASAN_OPTIONS": options, "UBSAN_OPTIONS": options + ":print_stacktrace=1",
                "TSAN_OPTIONS": options}

    def wait_until_served(self, limit_s=60):
        def is_up():
            if UP in self.log():
                return True
            if EXITING in self.log():
                late = SNMPD_IS_LATE in self.log()
                raise SnmpdIsLate() if late else AssertionError("the daemon exited during start-up")
            return False

        waiting.wait_until(is_up, "the daemon is up and running", limit_s)
        return self

    # --- processes

    @staticmethod
    def pid():
        text = machine.read_file(PID_FILE)
        return int(text) if text.isdigit() else None

    def is_running(self):
        return self.pid() is not None and machine.is_running(self.pid())

    @staticmethod
    def snmpd_pid():
        text = machine.read_file(SNMPD_PID_FILE).strip()
        return int(text) if text.isdigit() else None

    def signal(self, number):
        os.kill(self.pid(), number)

    def stop(self, limit_s=60):
        """Sends SIGTERM and waits until the daemon has exited. During start-up it ignores SIGTERM, so the signal is
        repeated."""
        pid = self.pid()
        if pid is None or not machine.is_running(pid):
            return
        end = time.monotonic() + limit_s * waiting.PATIENCE
        while machine.is_running(pid):
            if time.monotonic() > end:
                raise waiting.TimedOut("the daemon does not exit on SIGTERM")
            self.terminate(pid)
        if self.foreground:
            self.foreground.wait(30)
        self.check_sanitizers()

    @staticmethod
    def terminate(pid):
        """Sends SIGTERM, and waits for a limited time."""
        try:
            os.kill(pid, signal.SIGTERM)
            waiting.wait_until(lambda: not machine.is_running(pid), "the daemon exits", 10)
        except (ProcessLookupError, waiting.TimedOut):
            pass

    def wait_until_exited(self, limit_s=60):
        waiting.wait_until(lambda: not machine.processes_named("snmpSubagent"), "the daemon has exited", limit_s)

    def wait_for_exit_status(self, limit_s=60):
        """Returns the exit status of a daemon in the foreground."""
        waiting.wait_until(lambda: self.foreground.poll() is not None, "the daemon exits", limit_s)
        return self.foreground.returncode

    @staticmethod
    def check_sanitizers():
        reports = glob.glob(SANITIZER_REPORTS + ".*")
        if reports:
            raise AssertionError("sanitizer report:\n" + "\n".join(machine.read_file(path) for path in reports))

    # --- the log

    def begin_log(self):
        """Makes log() omit everything that was logged before."""
        self.log_begin = os.path.getsize(LOG) if os.path.exists(LOG) else 0

    def log(self):
        """Returns what the daemon has logged since it was started, or since begin_log."""
        try:
            with open(LOG, "rb") as file:
                file.seek(self.log_begin)
                return file.read().decode("utf-8", "replace")
        except FileNotFoundError:
            return ""

    def lines_with(self, text):
        return [line for line in self.log().splitlines() if text in line]

    def wait_for_log(self, text, limit_s=30):
        return waiting.wait_until(lambda: self.lines_with(text), f"the log contains '{text}'", limit_s)

    @staticmethod
    def log_tail(count=60):
        return "\n".join(machine.read_file(LOG).splitlines()[-count:])
