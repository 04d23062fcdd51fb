"""Runs a fuzz target with a planted fault: findsFault.py PROGRAM [ARGUMENT...]. Success is that it finds it."""

import subprocess
import sys

run = subprocess.run(sys.argv[1:], capture_output=True, text=True, errors="replace")
found = [line for line in run.stderr.splitlines() if line.startswith("fuzz: ") or "Sanitizer" in line]
if run.returncode not in (0, 2) and found:
    print(f"found: {found[0]}")
    sys.exit(0)
print(run.stdout[-2000:], run.stderr[-2000:], f"exit status {run.returncode}: the fault was not found", sep="\n")
sys.exit(1)
