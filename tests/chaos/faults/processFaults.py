"""Faults of the processes: snmpd and the daemon are killed or stopped."""

import os
import signal
from contextlib import contextmanager

from harness import daemon, machine, waiting

from .kind import Kind, draw_end, no_arguments

RESTART_S = 10


@contextmanager
def snmpd_killed(testbed, words):
    os.kill(daemon.Daemon.snmpd_pid(), signal.Signals[words[0]])
    yield


@contextmanager
def snmpd_stopped(testbed, _):
    """Stops snmpd for a short time, or until the daemon replaces it."""
    pid = daemon.Daemon.snmpd_pid()
    os.kill(pid, signal.SIGSTOP)
    try:
        yield
    finally:
        if machine.is_running(pid):
            os.kill(pid, signal.SIGCONT)


@contextmanager
def daemon_terminated(testbed, words):
    pid = daemon.Daemon.pid()
    testbed.killed_by_fault.add(pid)
    os.kill(pid, signal.Signals[words[0]])
    waiting.wait_until(lambda: not machine.is_running(pid), "the daemon has exited", 60)
    yield


KINDS = (
    Kind("snmpd is killed", lambda random: (random.choice(("SIGKILL", "SIGABRT")),), snmpd_killed, restarts=True,
         seconds=(0, 1), recovery_s=RESTART_S),
    Kind("snmpd is stopped", no_arguments, snmpd_stopped, restarts=True, seconds=(3, 9), recovery_s=RESTART_S),
    Kind("the daemon is terminated", draw_end, daemon_terminated, restarts=True, seconds=(0, 1), recovery_s=RESTART_S),
)
