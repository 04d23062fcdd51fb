"""What the tests of the generators share: a folder of inputs, a run of the program, and rows of mistakes.

Puts the root of the sources on the path: the generators are imported after it.
"""

import contextlib
import io
import os
import re
import sys
import tempfile
import unittest
from unittest import mock

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "../.."))
sys.path.insert(0, ROOT)


class FactsCase(unittest.TestCase):
    def assert_in_order(self, text, facts):
        """Each line of the facts ends a line of the text, in their order."""
        place = 0
        for fact in facts.strip("\n").split("\n"):
            found = text.find(fact + "\n", place)
            self.assertGreaterEqual(found, 0, f"missing, or not in its place: {fact}\n{text}")
            place = found

    def check_wrong(self, name, good, rows, check):
        """rows: the beginning of a line of the good file, what stands there instead, and the message. The message is
        at the line replaced unless it begins with a number and a colon, or names a place of its own. check: called
        with the wrong text and the whole message."""
        for beginning, instead, message in rows:
            lines = good.split("\n")
            number = next(i for i, line in enumerate(lines) if line.startswith(beginning))
            lines[number] = instead
            if re.match(r"\d+: ", message):
                message = f"{name}:{message}"
            elif not re.match(r"[\w.]+\.def:\d|the descriptions", message):
                message = f"{name}:{number + 1}: {message}"
            with self.subTest(line=instead or f"without {beginning}"):
                check("\n".join(lines), message)


class GeneratorCase(FactsCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def read(self, name, encoding="utf-8"):
        """A file that was made."""
        with open(self.path("out/" + name), encoding=encoding) as file:
            return file.read()

    @staticmethod
    def run_program(program, *arguments):
        """Exit status and what was written to standard error."""
        errors = io.StringIO()
        with mock.patch.object(sys, "argv", ["generator", *arguments]), contextlib.redirect_stderr(errors):
            status = program.main()
        return status, errors.getvalue()

    def check_wrong_runs(self, name, good, rows, run):
        """run: the exit status and the errors of a run on the wrong text. Nothing may have been made."""

        def check(text, message):
            self.assertEqual(run(text), (1, message + "\n"))
            self.assertFalse(os.path.exists(self.path("out")))

        self.check_wrong(name, good, rows, check)
