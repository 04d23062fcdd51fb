"""Records the lifetimes, exit statuses and resources of the processes, and starts a daemon if none is running."""

import collections
import threading
import time

from harness import daemon, machine, waiting

from . import processes, vitals
from .timeline import Life

POLL_S = 0.1
ABSENCE_S = 5  # longer than a daemon needs to restart itself
SAMPLE_S = 1
# Expected exit statuses of snmpd: the daemon kills it with these signals; faults use the latter.
EXPECTED_STATUSES = (0, -6, -9)

# A process that has exited; status: negative for a signal.
Exited = collections.namedtuple("Exited", "pid name status")


class Watch(threading.Thread):
    def __init__(self, testbed):
        super().__init__(daemon=True)
        self.testbed = testbed
        self.exited = []
        self.snmpds = []
        self.starts = 0  # by this supervisor
        self.done = threading.Event()
        self.listener = threading.Thread(target=self.listen, daemon=True)
        self.absent_since = None
        self.next_sample = 0

    def run(self):
        self.listener.start()
        self.start_one()
        while not self.done.wait(POLL_S):
            self.poll()

    def stop(self):
        """Stops starting daemons."""
        self.done.set()
        self.join(10)

    def listen(self):
        for line in self.testbed.subreaper.stdout:
            pid, *name, status = line.split()
            self.exited.append(Exited(int(pid), " ".join(name), int(status)))

    def start_one(self):
        self.starts += 1
        self.absent_since = time.monotonic()
        self.testbed.start_daemon()

    def poll(self):
        self.update_life()
        self.update_snmpd()
        life = self.life()
        now = time.monotonic()
        if life is not None:
            self.absent_since = None
            if now >= self.next_sample:
                self.next_sample = now + SAMPLE_S
                vitals.sample(life, self.testbed.timeline)
        elif machine.processes_named("snmpSubagent"):
            self.absent_since = now
        elif self.absent_since is None:
            self.absent_since = now
        elif now - self.absent_since > ABSENCE_S * waiting.PATIENCE:
            self.start_one()

    def life(self):
        """Returns the running daemon, or None."""
        lives = self.testbed.timeline.lives
        return lives[-1] if lives and lives[-1].end is None else None

    def update_life(self):
        life, pid = self.life(), daemon.Daemon.pid()
        if life and not machine.is_running(life.pid):
            life.end = time.monotonic()
        if pid and (life is None or pid != life.pid) and machine.is_running(pid):
            try:
                begin = processes.begin_of(pid)
            except OSError:
                return
            if life and life.end is None:
                life.end = begin
            self.testbed.timeline.begin_life(Life(pid, begin))

    def update_snmpd(self):
        pid = daemon.Daemon.snmpd_pid()
        if pid and pid not in self.snmpds and machine.is_running(pid):
            self.snmpds.append(pid)

    # --- at the end

    def crashes(self):
        """Returns the daemons that neither exited by themselves nor were killed by a fault, and crashed snmpds."""
        return [each for each in self.exited
                if each.name == "snmpSubagent" and each.status != 0 and each.pid not in self.testbed.killed_by_fault or
                each.name == "snmpd" and each.status not in EXPECTED_STATUSES]
