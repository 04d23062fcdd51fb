"""Support for the tests of codegen: a data directory with small files, a run, and rows of errors.

The tests of the daemon, the library and the MIB module cover the output of the writers.

Puts the root of the sources on the path, so import codegen after this module.
"""

import contextlib
import io
import os
import re
import sys
import tempfile
import unittest
from unittest import mock

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "../../.."))
sys.path.insert(0, ROOT)
from codegen import __main__ as program  # noqa: E402  (found through the line above)


class CodegenCase(unittest.TestCase):
    KIND = ""   # argument of codegen
    FILES = {}  # {name below the data directory: text}

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.out = os.path.join(self.folder, "out")

    def write(self, files):
        for name, text in files.items():
            path = os.path.join(self.folder, "data", name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)

    def run_on(self, changed=None):
        """Runs codegen on FILES, some of them replaced. Returns the exit status and standard error."""
        self.write({**self.FILES, **(changed or {})})
        errors = io.StringIO()
        arguments = ["codegen", self.KIND, "--data", os.path.join(self.folder, "data"), "--out", self.out]
        with mock.patch.object(sys, "argv", arguments), contextlib.redirect_stderr(errors):
            status = program.main()
        return status, errors.getvalue()

    def check_wrong(self, name, rows):
        """rows: the beginning of a line of the file, its replacement, and the message, which refers to the replaced
        line unless it begins with another one; {BEGINNING} in it is a line's number. Checks that nothing was written."""
        good = self.FILES[name].split("\n")

        def number_of(beginning):
            return next(i for i, line in enumerate(good) if line.startswith(beginning))

        for beginning, instead, message in rows:
            number = number_of(beginning)
            message = re.sub(r"\{(.+?)\}", lambda match: str(number_of(match[1]) + 1), message)
            if not re.match(r"\d+: |data/|\w+\.def", message):
                message = f"{number + 1}: {message}"
            if re.match(r"\d+: ", message):
                message = f"data/{name}:{message}"
            with self.subTest(line=instead or f"without {beginning}"):
                wrong = "\n".join([*good[:number], instead, *good[number + 1:]])
                self.assertEqual(self.run_on({name: wrong}), (1, message + "\n"))
                self.assertFalse(os.path.exists(self.out))
