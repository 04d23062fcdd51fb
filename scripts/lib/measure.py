"""Measures, in the sandbox, the daemon's footprint with a full array: peak memory and idle processor time. --quick only
shows that it runs."""

import glob
import os
import re
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import array, daemon, machine  # noqa: E402  (found through the line above)

WANTED_PEAK_MIB = 64
WANTED_IDLE_PERCENT = 0.8
QUICK = "--quick" in sys.argv
IDLE_S = 2 if QUICK else 60
LARGEST_ANSWER_S = 0 if QUICK else 300


def peak_mib(pid):
    status = machine.read_file(f"/proc/{pid}/status")
    return int(re.search(r"VmHWM:\s+(\d+) kB", status).group(1)) / 1024


def processor_s(pid):
    """Returns the processor time that a process has used, in seconds."""
    return sum(int(machine.read_file(path).split()[0]) for path in glob.glob(f"/proc/{pid}/task/*/schedstat")) / 1e9


def main():
    machine.require_sandbox()
    machine.configure_daemon()
    simulated, subagent = array.Array(), daemon.Daemon()
    try:
        simulated.start("full")
        begin = time.monotonic()
        subagent.start()
        print(f"start with the full array      {time.monotonic() - begin:8.1f} s")
        pid = subagent.pid()
        time.sleep(2)  # the start itself is not idle time
        before = processor_s(pid)
        time.sleep(IDLE_S)
        idle_percent = (processor_s(pid) - before) / IDLE_S * 100
        print(f"idle processor time            {idle_percent:8.2f} % of one core   (wanted: at most {WANTED_IDLE_PERCENT})")
        # The largest response, the list of alerts, is fetched in the background.
        fetched = simulated.exchanges("GetList", "TsAlert")
        while simulated.exchanges("GetList", "TsAlert") == fetched and time.monotonic() - begin < LARGEST_ANSWER_S:
            time.sleep(1)
        time.sleep(5)
        print(f"peak resident memory           {peak_mib(pid):8.1f} MiB            (wanted: at most {WANTED_PEAK_MIB})")
    finally:
        subagent.stop()
        simulated.stop()
    return 0


if __name__ == "__main__":
    sys.exit(main())
