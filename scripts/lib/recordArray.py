"""Records, in the sandbox, what the daemon serves of a simulated array. Usage: recordArray.py PRESET FILE"""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import machine, systemTest  # noqa: E402  (found through the line above)

RECORDER = os.path.join(machine.REPOSITORY, "monitoring", "recordWalk")


class Recording(systemTest.SharedSystemTest):
    """One array and one daemon, as in the tests."""

    def write(self, path):
        """Waits until values that are derived from other tables exist as well."""
        self.wait_until_settled()
        machine.write_file(path, machine.run("/usr/bin/python3", RECORDER, "127.0.0.1", limit_s=300))


def main():
    machine.require_sandbox()
    Recording.PRESET, path = sys.argv[1:]
    Recording.setUpClass()
    try:
        Recording().write(path)
    finally:
        Recording.tearDownClass()
    return 0


if __name__ == "__main__":
    sys.exit(main())
