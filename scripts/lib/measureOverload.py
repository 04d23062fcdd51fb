"""Measures, in the sandbox, how the daemon, snmpd and a second manager behave while a reader requests more than
the daemon may serve. --quick only shows that it runs."""

import collections
import re
import select
import sys
import time

from probe import AGENT, QUICK, Background, get, load, open_link, read_answer, running_daemon, verdict
from harness import machine, mib  # found through probe

PRESET = "typical" if QUICK else "full"
LOAD_S = 3 if QUICK else 60
MEMORY_LIMIT_KB = 50000  # the daemon kills an snmpd that is larger
SAMPLE_S = 0.2

BURST_S = 0.01
LARGEST_BURST = 200
DISTINCT = 500
BINDINGS = 100
LARGE_OCTETS = 2300

MANAGER_OID = mib.scalar("productVendor")
MANAGER_INTERVAL_S, MANAGER_TIMEOUT_S, MANAGER_RETRIES = 0.5, 1, 3
FIRST_OF_MANAGER = 1 << 20


def cell(number):
    return mib.oid(("tsDiskName", "tsDiskStatus", "tsDiskSizeGb")[number % 3], number % 100 + 1)


def small_requests():
    return [get(number, cell(number)) for number in range(DISTINCT)]


def large_requests():
    packets = [get(number, *(cell(number + place) for place in range(BINDINGS)))
               for number in range(DISTINCT)]
    assert min(map(len, packets)) >= LARGE_OCTETS
    return packets


def flood(pipe, packets, rate):
    """Sends `rate` packets per second in bursts for LOAD_S without waiting for responses. Returns how many it
    sent, and how many responses came with each error status."""
    link, sent, statuses = open_link(), 0, collections.Counter()
    link.setblocking(False)
    begin = time.monotonic()
    while (elapsed := time.monotonic() - begin) < LOAD_S and not select.select((pipe,), (), (), 0)[0]:
        for _ in range(min(int(elapsed * rate) - sent, LARGEST_BURST)):
            link.sendto(packets[sent % len(packets)], AGENT)
            sent += 1
        drain(link, statuses)
        time.sleep(BURST_S)
    time.sleep(1)
    drain(link, statuses)
    return sent, statuses


def drain(link, statuses):
    try:
        while True:
            statuses[read_answer(link.recv(65535))[1]] += 1
    except BlockingIOError:
        pass


def ask_patiently(pipe):
    """Sends a GET at regular intervals and, as managers do, repeats each that gets no response. Returns the
    number of GETs with each outcome."""
    link, outcomes = open_link(), collections.Counter()
    begin, count = time.monotonic(), 0
    open_gets = {}  # number: (time of the next try, tries so far)
    while count * MANAGER_INTERVAL_S < LOAD_S or open_gets:
        now = time.monotonic()
        if count * MANAGER_INTERVAL_S < LOAD_S and now >= begin + count * MANAGER_INTERVAL_S:
            open_gets[FIRST_OF_MANAGER + count] = (now, 0)
            count += 1
        for number, (due, tries) in list(open_gets.items()):
            if now >= due and tries > MANAGER_RETRIES:
                outcomes["none"] += 1
                del open_gets[number]
            elif now >= due:
                link.sendto(get(number, MANAGER_OID), AGENT)
                open_gets[number] = (now + MANAGER_TIMEOUT_S, tries + 1)
        if select.select((link,), (), (), BURST_S)[0]:
            number, word = verdict(link.recv(65535))
            if open_gets.pop(number, None):
                outcomes[word] += 1
    return outcomes


def resident_kb(pid):
    found = re.search(r"VmRSS:\s+(\d+) kB", machine.read_file(f"/proc/{pid}/status")) if pid else None
    return int(found.group(1)) if found else 0


def watch(subagent, seconds):
    """Returns the peak memory of snmpd, and the process ids that the daemon and snmpd have had."""
    peak_kb, daemons, masters, end = 0, set(), set(), time.monotonic() + seconds
    while time.monotonic() < end:
        pid = subagent.snmpd_pid()
        peak_kb = max(peak_kb, resident_kb(pid))
        daemons.add(subagent.pid())
        masters.add(pid)
        time.sleep(SAMPLE_S)
    return peak_kb, daemons - {None}, masters - {None}


def measure(name, packets, rate):
    with running_daemon(PRESET) as (_, subagent):
        reader, manager = Background(flood, packets, rate), Background(ask_patiently)
        peak_kb, daemons, masters = watch(subagent, LOAD_S + MANAGER_TIMEOUT_S * (MANAGER_RETRIES + 1))
        (sent, statuses), outcomes = reader.result(), manager.result()
        too_large = len(subagent.lines_with("snmpd mem usage too high"))
    others = ", ".join(f"{outcomes[word]} {word}" for word in outcomes.keys() - {"value", "genErr", "none"})
    print(f"{name:26} {sent / LOAD_S:7.0f} {statuses[0] / LOAD_S:7.0f} {statuses[5] / LOAD_S:7.0f}   "
          f"{len(daemons) - 1:6} {len(masters) - 1:6} {too_large:9} {peak_kb:8}   "
          f"{outcomes['value']:5} {outcomes['genErr']:6} {outcomes['none']:6}  {load():4.1f}  {others}",
          flush=True)


def main():
    print(f"wanted: no restart, snmpd below {MEMORY_LIMIT_KB} kB; the second manager sends a GET every "
          f"{MANAGER_INTERVAL_S} s, waits {MANAGER_TIMEOUT_S} s, retries {MANAGER_RETRIES} times")
    print(f"{'':26} {'reader, per second':^23}   {'restarts of':^13} {'snmpd':^18}   {'second manager':^19}")
    print(f"{f'{LOAD_S} s of':26} {'sent':>7} {'values':>7} {'genErr':>7}   {'daemon':>6} {'snmpd':>6} "
          f"{'too large':>9} {'peak kB':>8}   {'value':>5} {'genErr':>6} {'none':>6}  load", flush=True)
    measure("5000 GET/s", small_requests(), 5000)
    measure(f"600 GET/s of {BINDINGS} variables", large_requests(), 600)
    return 0


if __name__ == "__main__":
    sys.exit(main())
