"""The daemon, found as a supervisor finds it: by its pid file and its log."""

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
ENDED = "snmpSubagent is exiting."
SNMPD_IS_LATE = "Unable to read_pid_file()"
START_TRIES = 10


class SnmpdIsLate(Exception):
    pass


class Daemon:
    def __init__(self):
        self.foreground = None  # the process, when the daemon was started in debug mode
        self.log_begin = 0

    # --- starting

    def start(self, wait=True, arguments=()):
        """Starts it as a service: the call returns when it has gone into the background and, unless `wait` is false,
        serves requests."""
        machine.write_file(machine.MODE_CONF, "isdebugmode=false\n")
        return self.start_again_while_snmpd_is_late(lambda: self.launch(arguments), wait)

    def start_in_foreground(self):
        """Starts it in debug mode, so that its exit status can be read with wait_for_exit_status."""
        machine.write_file(machine.MODE_CONF, "isdebugmode=true\n")
        return self.start_again_while_snmpd_is_late(self.launch_in_foreground)

    def start_again_while_snmpd_is_late(self, launch, wait=True):
        """snmpd gets a tenth of a second to write its process number. On a machine with more to do than it can that
        may not be enough; then the daemon ends, and whoever watches over it starts it again."""
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
            if ENDED in self.log():
                late = SNMPD_IS_LATE in self.log()
                raise SnmpdIsLate() if late else AssertionError("the daemon ended during its start")
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
        """Ends it in the orderly way and waits until it has ended. One that is still starting takes no notice of a
        SIGTERM, so it gets another one now and then."""
        pid = self.pid()
        if pid is None or not machine.is_running(pid):
            return
        end = time.monotonic() + limit_s * waiting.PATIENCE
        while machine.is_running(pid):
            if time.monotonic() > end:
                raise waiting.WaitedInVain("the daemon does not end on SIGTERM")
            self.terminate(pid)
        if self.foreground:
            self.foreground.wait(30)
        self.check_sanitizers()

    @staticmethod
    def terminate(pid):
        """Sends the signal, and waits a moment for the end."""
        try:
            os.kill(pid, signal.SIGTERM)
            waiting.wait_until(lambda: not machine.is_running(pid), "it ends", 10)
        except (ProcessLookupError, waiting.WaitedInVain):
            pass

    def wait_until_ended(self, limit_s=60):
        waiting.wait_until(lambda: not machine.processes_named("snmpSubagent"), "the daemon has ended", limit_s)

    def wait_for_exit_status(self, limit_s=60):
        """Of a daemon in the foreground."""
        waiting.wait_until(lambda: self.foreground.poll() is not None, "the daemon ends", limit_s)
        return self.foreground.returncode

    @staticmethod
    def check_sanitizers():
        reports = glob.glob(SANITIZER_REPORTS + ".*")
        if reports:
            raise AssertionError("sanitizer report:\n" + "\n".join(machine.read_file(path) for path in reports))

    # --- the log

    def begin_log(self):
        """What is in the log now belongs to an earlier daemon."""
        self.log_begin = os.path.getsize(LOG) if os.path.exists(LOG) else 0

    def log(self):
        """What the daemon has logged since it was started, or since begin_log."""
        try:
            with open(LOG, "rb") as file:
                file.seek(self.log_begin)
                return file.read().decode("utf-8", "replace")
        except FileNotFoundError:
            return ""

    def lines_with(self, text):
        return [line for line in self.log().splitlines() if text in line]

    def wait_for_log(self, text, limit_s=30):
        return waiting.wait_until(lambda: self.lines_with(text), f"the log holds '{text}'", limit_s)

    @staticmethod
    def log_tail(count=60):
        return "\n".join(machine.read_file(LOG).splitlines()[-count:])
