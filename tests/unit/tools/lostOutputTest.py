"""Checks that tools report an error if their output cannot be written.

Usage: lostOutputTest.py APICLIENT MGMTSEND ARRAYSIM CHECKCONF
"""

import subprocess
import sys


def faults_of(lost_status, program, *words):
    faults = []
    for path, status, message in (("/dev/full", lost_status, "standard output could not be written"),
                               ("/dev/null", 0, "")):
        with open(path, "w", encoding="utf-8") as output:
            done = subprocess.run((program, *words), stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.PIPE,
                                  text=True, check=False)
        if done.returncode != status or message not in done.stderr or (message == "") != (done.stderr == ""):
            faults.append(f"{program} {' '.join(words)} > {path}: status {done.returncode}, {done.stderr!r}")
    return faults


def main(api_client, mgmt_send, array_sim, checkconf):
    faults = faults_of(1, api_client, "--list") + faults_of(1, api_client, "TsDisk", "GetList", "--print")
    faults += faults_of(1, mgmt_send, "trap", "test", "--print") + faults_of(1, mgmt_send, "--list")
    # Longer than any buffer, so that the write fails before the end.
    faults += faults_of(1, array_sim, "dump", "--preset", "small")
    faults += faults_of(2, checkconf, "--help")
    print("\n".join(faults) or "nothing found")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
