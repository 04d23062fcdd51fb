"""Records what the daemon serves of a simulated array, in the sandbox. Usage: recordArray.py PRESET FILE"""

import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import machine, story  # noqa: E402  (found through the line above)

RECORDER = os.path.join(machine.REPOSITORY, "monitoring", "recordWalk")


class Recording(story.SharedStory):
    """One array and one daemon, as the tests have them."""

    def write(self, path):
        """Once all that is derived from other tables is there as well."""
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
