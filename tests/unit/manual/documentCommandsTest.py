"""That no command of a document escapes: how commands are found, and what test_documents.py leaves out.

Usage: documentCommandsTest.py ROOT
"""

import os
import sys
import unittest

ROOT = os.path.realpath(sys.argv.pop(1))
sys.path.insert(0, os.path.join(ROOT, "tests", "system"))
from harness import documents  # noqa: E402  (found through the line above)

MARKDOWN = """\
Say `mgmtSend --list`, not `arraySim check FILE`, nor `status 3`.

    first --option \\
        'more # of it'     # prints 4

    second
and on.

```sh
third   # a remark
```

1. In a list:

       fourth

```text
no command
```
"""
PAGE = r"""
.Sh DESCRIPTION
.Bd -literal
no command
.Ed
.Sh EXAMPLES
.Bd -literal -offset indent
first \e
    --option
.Ed
.Dl second && third
.Sh SEE ALSO
.Dl no command
"""


def found(path, text):
    return [[(each.line, each.text, each.prints) for each in block] for block in documents.blocks(path, text)]


class Commands(unittest.TestCase):
    def test_they_are_found_wherever_they_stand(self):
        self.assertEqual(found("a.md", MARKDOWN), [
            [(1, "mgmtSend --list", None)],
            [(4, "first --option 'more # of it'", "4"), (6, "second", None)],
            [(10, "third", None)],
            [(15, "fourth", None)]])
        self.assertEqual(found("docs/man/a.8", PAGE), [[(9, "first --option", None)], [(11, "second && third", None)]])
        self.assertEqual(found("docs/man/a.5", PAGE), [])
        with self.assertRaisesRegex(AssertionError, "a.md:2: this block does not say what it holds"):
            documents.blocks("a.md", "Look:\n```\nls\n```\n")
        with self.assertRaisesRegex(AssertionError, "a.md:2: this block ends within a command: ls"):
            documents.blocks("a.md", "```sh\nls \\\n```\n")

    def test_what_is_left_out_runs_elsewhere(self):
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
