"""Checks that the commands in documents that test_documents.py omits run elsewhere.

Usage: documentCommandsTest.py ROOT
"""

import os
import sys
import unittest

ROOT = os.path.realpath(sys.argv.pop(1))
sys.path.insert(0, os.path.join(ROOT, "tests", "system"))
from harness import documents  # noqa: E402  (found through the line above)


class Commands(unittest.TestCase):
    def test_omitted_commands_run_elsewhere(self):
        commands = [each for path in documents.paths() for block in documents.blocks(path) for each in block]
        self.assertGreater(len(commands), 100)
        for pattern, path, text in documents.ELSEWHERE:
            with open(os.path.join(ROOT, path), encoding="utf-8") as file:
                self.assertIn(text, file.read(), f"'{pattern}' does not run in {path}")
        rows = [row[0] for row in documents.ELSEWHERE] + list(documents.SHORTER) + list(documents.BY_HAND)
        for row in rows:
            self.assertTrue(any(documents.matching([row], each) for each in commands), f"no document shows '{row}'")
        for each in commands:
            if each.document == "README.md" or each.document.startswith("docs/man/"):
                self.assertFalse(documents.matching(documents.BY_HAND, each),
                                 f"{each.document}:{each.line}: no test runs '{each.text}'")


if __name__ == "__main__":
    unittest.main()
