"""A short chaos run with a fixed seed. See tests/chaos."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), ".."))
from chaos.run import Run  # noqa: E402  (see the line above)
from harness import systemTest  # noqa: E402

MINUTES = 3
SEED = 29


class Chaos(unittest.TestCase):
    def test_three_minutes_under_faults(self):
        self.assertEqual(Run(MINUTES, SEED, "small").run(), 0)


if __name__ == "__main__":
    systemTest.main("namespaces", "user")  # it mounts
