"""Compares the daemon, in the sandbox, with a plain Net-SNMP subagent (bench/tablePeer): latency of a GET
after a quiet second, and processor time per variable of a bulk walk. --quick only shows that it runs."""

import contextlib
import os
import random
import statistics
import subprocess
import sys
import time

from probe import (AGENT, EXCEPTIONS, QUICK, berWriter, exchange, get, load, open_link, percentile, read_answer,
                   request, running_daemon, verdict)
from harness import ber, machine, mib, waiting  # found through probe
from measure import processor_s

PRESET = "typical" if QUICK else "full"

SINGLE_GETS = 3 if QUICK else 60
PAUSE_S = (0.2, 0.3) if QUICK else (0.5, 0.75)  # between GETs, which go to the two subagents in turn
WANTED_GET_RATIO = 1.5

WALK_VARIABLES = 1000 if QUICK else 10000
WALKS = 1 if QUICK else 3
IDLE_S = 1 if QUICK else 10
REPETITIONS = 20
WANTED_VARIABLE_US = 40  # on a quiet machine; other work on it raises the figures of both subagents

PEER = os.path.join(machine.BUILD, "bench", "tablePeer")
PEER_FOLDER = "/tmp/peer"
PEER_AGENT = ("127.0.0.1", 1161)
PEER_TABLE = "1.3.6.1.4.1.8072.9999.9999.913"
PEER_ROWS = 500
PEER_SETTINGS = f"""master agentx
agentXSocket unix:{PEER_FOLDER}/agentx
agentaddress udp:127.0.0.1:{PEER_AGENT[1]}
rocommunity public
"""


class Subject:
    """One of the two subagents: the address of its master agent, a variable, a table, its process id."""

    def __init__(self, name, address, oid, table, pid):
        self.name, self.address, self.oid, self.table, self.pid = name, address, oid, table, pid
        self.link = open_link()

    def serves(self):
        return verdict(exchange(self.link, self.address, get(0, self.oid))[1])[1] == "value"

    def get_s(self):
        seconds, datagram = exchange(self.link, self.address, get(0, self.oid))
        if datagram is None or verdict(datagram)[1] != "value":
            raise AssertionError(f"{self.name}: no value at {self.oid}")
        return seconds

    def walk(self, wanted):
        """Walks the table, again from its start if need be, until it has delivered at least `wanted`
        variables. Returns their number."""
        delivered, after = 0, self.table
        while delivered < wanted:
            packet = request(berWriter.GET_BULK, 0, [(after, berWriter.NULL)], 0, REPETITIONS)
            datagram = exchange(self.link, self.address, packet)[1]
            if datagram is None or read_answer(datagram)[1]:
                raise AssertionError(f"{self.name}: no answer to a GETBULK after {after}")
            bindings = ber.bindings(read_answer(datagram)[2], EXCEPTIONS)
            names = [each.oid for each in bindings]
            inside = [name for name in names if name.startswith(self.table + ".")]
            delivered += len(inside)
            after = names[-1] if len(inside) == len(names) else self.table
        return delivered

    def microseconds_per_variable(self):
        """Returns the processor time of a walk, less the time that the subagent uses when idle for as
        long."""
        before = processor_s(self.pid)
        time.sleep(IDLE_S)
        idle_share = (processor_s(self.pid) - before) / IDLE_S
        before, begin = processor_s(self.pid), time.monotonic()
        delivered = self.walk(WALK_VARIABLES)
        used_s = processor_s(self.pid) - before - idle_share * (time.monotonic() - begin)
        return used_s / delivered * 1e6


@contextlib.contextmanager
def running_peer():
    """Starts the peer and its master agent, and yields the peer's process id. The master agent runs under
    another name, because the daemon kills every snmpd."""
    os.makedirs(PEER_FOLDER, mode=0o700, exist_ok=True)
    machine.write_file(f"{PEER_FOLDER}/snmpd.conf", PEER_SETTINGS)
    master = f"{PEER_FOLDER}/peerMaster"
    os.symlink("/usr/local/sbin/snmpd", master)
    environment = {**os.environ, "MIBS": "", "SNMPCONFPATH": PEER_FOLDER, "SNMP_PERSISTENT_DIR": PEER_FOLDER}

    def start(*command):
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=environment)
        stack.callback(process.wait, 30)
        stack.callback(process.terminate)
        return process.pid

    with contextlib.ExitStack() as stack:
        log = stack.enter_context(open(f"{PEER_FOLDER}/log", "wb"))
        start(master, "-f", "-C", "-c", f"{PEER_FOLDER}/snmpd.conf", "-Le", "-r")
        waiting.wait_until(lambda: os.path.exists(f"{PEER_FOLDER}/agentx"), "the peer's master agent listens")
        yield start(PEER, f"unix:{PEER_FOLDER}/agentx", str(PEER_ROWS))


def show_idle_gets(daemon, peer):
    times_ms = {daemon: [], peer: []}
    for _ in range(SINGLE_GETS):
        for subject in (daemon, peer):
            time.sleep(random.uniform(*PAUSE_S))
            times_ms[subject].append(subject.get_s() * 1000)
    medians = {subject: statistics.median(each) for subject, each in times_ms.items()}
    for subject, each in times_ms.items():
        print(f"GET after a quiet second, {subject.name:8} median {medians[subject]:7.2f} ms   "
              f"90 % {percentile(sorted(each), 90):7.2f} ms   maximum {max(each):7.2f} ms")
    ratio = medians[daemon] / medians[peer]
    print(f"ratio of the medians {ratio:20.2f}   (wanted: at most {WANTED_GET_RATIO})   load {load():.1f}",
          flush=True)


def show_walks(daemon, peer):
    """Alternates between the two, so that other work on the machine affects both."""
    pairs = [(daemon.microseconds_per_variable(), peer.microseconds_per_variable()) for _ in range(WALKS)]
    for subject, each in zip((daemon, peer), zip(*pairs)):
        print(f"bulk walk, {subject.name:8} {statistics.median(each):6.1f} us of processor time per variable "
              f"  ({min(each):.1f} to {max(each):.1f} in {len(each)} walks of {WALK_VARIABLES} variables)   "
              f"load {load():.1f}", flush=True)
    daemon_us, peer_us = (statistics.median(each) for each in zip(*pairs))
    print(f"ratio of the medians {daemon_us / peer_us:.2f}   "
          f"(wanted: daemon at most {WANTED_VARIABLE_US} us)", flush=True)


def main():
    with running_daemon(PRESET) as (_, subagent), running_peer() as peer_pid:
        daemon = Subject("daemon", AGENT, mib.oid("tsDiskName", 100), mib.table_oid("tsDisk"), subagent.pid())
        peer = Subject("peer", PEER_AGENT, f"{PEER_TABLE}.1.4.100", PEER_TABLE, peer_pid)
        waiting.wait_until(peer.serves, "the peer serves its table")
        show_idle_gets(daemon, peer)
        show_walks(daemon, peer)
    return 0


if __name__ == "__main__":
    sys.exit(main())
