"""Measures, in the sandbox, how long a manager waits for a GET while the array is slow, hangs or is being
changed. Arguments select cases by name; --quick only shows that it runs."""

import random
import sys
import time

from probe import (AGENT, QUICK, TIMEOUT_S, Background, Latencies, berWriter, get, load, open_link, request,
                   running_daemon, send_on_schedule)
from harness import daemon, mib  # found through probe

PRESET = "typical" if QUICK else "full"
CASE_S = 2 if QUICK else 60
LONGEST_CASE_S = 4 if QUICK else 300
WANTED_P99_MS, WANTED_GREATEST_MS = 10, 20

INTERVAL_S = 0.02  # between GETs of the daemon's variables, on average
# The floor: snmpd serves one request in three without the daemon, which shows how much of the latency is the
# machine's and the client's. A daemon that reads nothing delays the floor as well, because snmpd blocks when
# it writes to it.
FLOOR_SHARE = 3
FLOOR_OID = "1.3.6.1.2.1.1.3.0"  # sysUpTime
FIRST_FLOOR = 1 << 24  # request number
OIDS = [mib.scalar("tsSerialNumber"), mib.scalar("productName"), mib.oid("tsCtlrName", 1),
        mib.oid("tsDiskStatus", 7), mib.oid("tsDiskName", 100), mib.oid("tsEnclName", 1),
        mib.oid("tsDiskFolderName", 1), mib.oid("tsFolderUsageFreeGib", 1), mib.oid("tsAlertMessage", 1, 2)]

USAGE = "TsDiskFolderStorageUsage"
SET_BINDINGS = 40
SET_INTERVAL_S = 15


def schedule(seconds):
    """Returns request numbers, packets and times. The intervals are irregular, so that the requests meet
    every phase of the daemon's loop."""
    numbers, packets, times, moment = [], [], [], 0.0
    interval_s = INTERVAL_S * (FLOOR_SHARE - 1) / FLOOR_SHARE
    while moment < seconds:
        moment += random.uniform(0.2, 1.8) * interval_s
        is_floor = random.randrange(FLOOR_SHARE) == 0
        numbers.append(len(numbers) + FIRST_FLOOR * is_floor)
        packets.append(get(numbers[-1], FLOOR_OID if is_floor else random.choice(OIDS)))
        times.append(moment)
    return numbers, packets, times


# --- what happens during a case; each function returns a note for the table

def only_wait(_):
    time.sleep(CASE_S)
    return ""


def await_folder_refresh(simulated):
    """Waits until the daemon has fetched every folder's usage again."""
    whole, begin = simulated.exchanges("Get", USAGE), time.monotonic()  # as many were fetched at start-up
    fetched = 0
    while fetched < whole and time.monotonic() - begin < LONGEST_CASE_S - 2:
        time.sleep(1)
        fetched = simulated.exchanges("Get", USAGE) - whole
    time.sleep(0 if QUICK else 5)
    return f"{fetched} of {whole} usages in {time.monotonic() - begin:.0f} s"


def send_sets(simulated):
    """Sends SETs whose bindings all write the same variable, each with another value."""
    link, begin = open_link(), time.monotonic()
    for number in range(max(1, CASE_S // SET_INTERVAL_S)):
        bindings = [(mib.scalar("sysContact"), berWriter.octets(f"contact {number} {each}"))
                    for each in range(SET_BINDINGS)]
        link.sendto(request(berWriter.SET, number, bindings, community="private"), AGENT)
        time.sleep(min(SET_INTERVAL_S, CASE_S))
    time.sleep(max(0, CASE_S - (time.monotonic() - begin)))
    value = simulated.get("Tessera", "1", "Contact")
    return f"{simulated.exchanges('Modify')} changes, the last to '{value}'"


# name: description, fault of the array, function that runs during the case
CASES = {
    "immediate": ("array answers immediately", (), only_wait),
    "delay50": ("50 ms per answer", ("delay", 50), only_wait),
    "delay2000": ("2 s per answer", ("delay", 2000), only_wait),
    "hang": ("array hangs", ("hang",), only_wait),
    "folders": ("folder refresh, 20 ms per answer", ("delay", 20), await_folder_refresh),
    "set": (f"SETs of {SET_BINDINGS} bindings, 200 ms", ("delay", 200), send_sets),
}


def measure(name):
    description, fault, meanwhile = CASES[name]
    numbers, packets, times = schedule(LONGEST_CASE_S if meanwhile is await_folder_refresh else CASE_S + 1)
    with running_daemon(PRESET) as (simulated, subagent):
        if fault:
            simulated.fault(*fault)
        background = Background(send_on_schedule, packets, times)
        note = meanwhile(simulated)
        sent, came = background.stop().result()
        restarts = len(subagent.lines_with(daemon.UP)) - 1
    numbered = list(zip(numbers, sent))
    own = Latencies({number: at for number, at in numbered if number < FIRST_FLOOR}, came)
    floor = Latencies({number: at for number, at in numbered if number >= FIRST_FLOOR}, came)
    show(description, own, floor, restarts, note)


def show(description, own, floor, restarts, note):
    print(f"{description:33} {own.count:6} " + " ".join(f"{each:8.2f}" for each in own.figures()) +
          f" {own.unanswered:5} {own.errors:6} {restarts:6}   " +
          " ".join(f"{each:7.2f}" for each in floor.figures()) + f"  {load():4.1f}  {note}", flush=True)


def main():
    names = [word for word in sys.argv[1:] if not word.startswith("-")] or list(CASES)
    print(f"milliseconds; wanted: 99 % at most {WANTED_P99_MS}, maximum at most {WANTED_GREATEST_MS}; "
          f"a timeout counts as {TIMEOUT_S * 1000}; the floor is sysUpTime of snmpd itself")
    print(f"{'':33} {'daemon':^33} {'time-':>5} {'':6} {'re-':>6}   {'floor':^23}")
    print(f"{'case':33} {'GETs':>6} {'median':>8} {'99 %':>8} {'maximum':>8} {'outs':>5} {'errors':>6} "
          f"{'starts':>6}   {'median':>7} {'99 %':>7} {'maximum':>7}  load", flush=True)
    for name in names:
        measure(name)
    return 0


if __name__ == "__main__":
    sys.exit(main())
