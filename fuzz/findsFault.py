"""Runs a fuzz target with planted faults, once without and once with each: findsFault.py KIND,... PROGRAM [ARGUMENT...]

Succeeds if the run without a fault is clean and each fault is found, a memory fault by AddressSanitizer.
"""

import os
import subprocess
import sys

SIGNS = {"logic": "fuzz: ", "memory": "ERROR: AddressSanitizer: "}


def run(kind):
    """Returns the exit status and standard error of the program with that fault."""
    environment = os.environ | {"FUZZ_FAULT": kind, "ASAN_OPTIONS": "detect_leaks=0"}
    ended = subprocess.run(sys.argv[2:], capture_output=True, text=True, errors="replace", env=environment)
    return ended.returncode, ended.stderr


def main():
    status, errors = run("none")
    if status != 0:
        raise SystemExit(f"exit status {status} without a fault:\n{errors[-2000:]}")
    for kind in sys.argv[1].split(","):
        status, errors = run(kind)
        found = [line for line in errors.splitlines() if SIGNS[kind] in line]
        if status == 0 or not found:
            raise SystemExit(f"the {kind} fault was not found, exit status {status}:\n{errors[-2000:]}")
        print(f"{kind}: {found[0]}")


if __name__ == "__main__":
    main()
