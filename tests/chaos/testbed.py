"""The processes of a run, and operations on them for faults and clients."""

import os
import random
import re
import subprocess
import sys
import threading
import time

from harness import array, berWriter, daemon, machine, management, mib, receiver, waiting, wallClock

from . import snmp
from .history import History
from .responseChecks import ResponseChecks
from .notices import COMMUNITY, Notices
from .spares import with_spares
from .states import States
from .timeline import Timeline
from .violations import ViolationLog
from .watch import Watch

FOLDER = "/tmp/chaos"
SUBREAPER = os.path.join(os.path.dirname(os.path.realpath(__file__)), "subreaper.py")
LOG_FOLDER, LOG_FOLDER_SIZE = "/var/log", "6m"
RECOVERY_S = 150
MARK_S = 3
RECORDS_HEADING = "7,7,7: trapNum, "
RECORD = re.compile(r"\d+,\d+,\d+: (\d+), (\d+), .*ownerVar")
TEXT_SOURCES = {"sysContact": "tsTsContact", "sysName": "tsTsName", "sysLocation": "tsTsLocation"}


class Testbed:
    def __init__(self, seed, preset):
        self.random = random.Random(f"{seed} testbed")
        self.preset = preset
        self.stopping = threading.Event()
        self.array_lock = threading.RLock()  # held while the array or its objects are changed
        self.timeline, self.log = Timeline(), ViolationLog()
        self.states = States()
        self.history = History(self.timeline, self.states)
        self.checks = ResponseChecks(self.history, self.log)
        self.array, self.objects = array.Array(), None
        self.failures = []  # conditions that did not hold after a fault
        self.subreaper = self.watch = self.receiver = None
        self.killed_by_fault = set()
        self.affected = None  # number of exchanges that the latest fault affected; None if unknown

    # --- start-up and shutdown

    def start(self):
        os.makedirs(FOLDER)
        machine.run("mount", "-t", "tmpfs", "-o", f"size={LOG_FOLDER_SIZE}", "chaos", LOG_FOLDER)
        array.OUTPUT = os.path.join(FOLDER, "arraySim.log")
        daemon.SANITIZER_REPORTS = os.path.join(FOLDER, "sanitizer")
        self.receiver = receiver.Receiver()
        self.version = self.random.choice((1, 2, 3))
        machine.configure_daemon(trapsEnabled="yes", trapDest="127.0.0.1", trapPort=self.receiver.port,
                                 trapCommun=COMMUNITY, trapVer=self.version)
        machine.write_file(machine.MODE_CONF, "isdebugmode=false\n")
        self.notices = Notices(self.timeline, self.receiver)
        self.start_array(with_spares(array.preset(self.preset)), since=0)
        wallClock.set_to(0)
        self.subreaper = subprocess.Popen([sys.executable, SUBREAPER], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                          text=True, env={**daemon.Daemon.environment(), **wallClock.environment()})
        self.watch = Watch(self)
        self.watch.start()
        waiting.wait_until(self.is_served, "the daemon serves", 60)
        self.served_since = time.monotonic()

    def start_daemon(self):
        self.subreaper.stdin.write(machine.DAEMON + "\n")
        self.subreaper.stdin.flush()

    def stop(self):
        """Stops everything that was started."""
        self.stopping.set()
        if self.watch:
            self.watch.stop()
            daemon.Daemon().stop()
        with self.array_lock:
            self.array.stop()
        if self.watch:
            self.subreaper.stdin.close()
            self.subreaper.wait(30)
            self.watch.listener.join(30)
            self.subreaper.stdout.close()
        if self.receiver:
            self.receiver.close()

    # --- the array

    def start_array(self, objects, since=None):
        """Starts the array with these objects; its undelivered events are lost."""
        with self.array_lock:
            since = time.monotonic() if since is None else since
            self.array.start(self.preset, "--events", objects=objects)
            self.remember(since, reported=False)

    def change(self, *words):
        """Sends the array a command, and records its new objects."""
        with self.array_lock:
            since = time.monotonic()
            answer = self.array.tell(*words)
            self.remember(since, reported=True)
            return answer

    def replace(self, objects):
        """Replaces the array's objects without an event."""
        with self.array_lock:
            since = time.monotonic()
            self.array.load(objects)
            self.remember(since, reported=False)

    def remember(self, since, reported):
        self.objects = self.array.dump()
        self.history.record(self.objects, since)
        self.states.record(self.objects, since, reported)

    def known_oids(self):
        return self.history.oids()

    def set_text(self, name, value, since):
        """Records that a manager will set a value."""
        self.history.record_set(mib.scalar(name), value, since)
        self.history.record_set(mib.oid(TEXT_SOURCES[name], 1), value, since)

    # --- conditions

    def is_served(self):
        """Returns whether a manager gets a value from the daemon."""
        manager = snmp.Manager()
        try:
            exchange = manager.read(berWriter.GET, [mib.scalar("productName")])
        finally:
            manager.close()
        response = exchange.response
        return bool(response and response.error == "noError" and response.bindings[0].type == "STRING")

    def is_well(self):
        """Returns whether a manager gets a response and an event is reported."""
        if not self.is_served():
            return False
        marks = self.notices.send()
        end = time.monotonic() + MARK_S * waiting.PATIENCE
        while marks and not marks[0].notified and time.monotonic() < end:
            time.sleep(waiting.POLL_S)
        return bool(marks and marks[0].notified)

    def wait_until_well(self):
        """Waits until everything works three times in a row."""
        waiting.wait_until(lambda: all(self.is_well() for _ in range(3)), "the daemon serves again", RECOVERY_S)

    def log_is_written(self):
        """Makes the daemon write a log line, and waits for it."""
        before = machine.read_file(daemon.LOG).count(RECORDS_HEADING)
        management.send(management.message(management.DISPLAY_TRAPS))
        waiting.wait_until(lambda: machine.read_file(daemon.LOG).count(RECORDS_HEADING) > before,
                           "the daemon writes its log", 20)

    def records(self):
        """Returns (number, first argument) of the daemon's records of unhealthy objects."""
        self.log_is_written()
        self.log_is_written()  # the first list is complete when the second begins
        return set(RECORD.findall(machine.read_file(daemon.LOG).split(RECORDS_HEADING)[-2]))
