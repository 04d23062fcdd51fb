"""Errors in data/daemon and their messages, in a small table of settings."""

import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import codegenCase  # noqa: E402

SETTINGS = """\
setting reader community secret
setting writer community secret
  "Who asks."
setting port number default=162
  "Where to."
setting loud flag variable=verbose
  "Says more."
"""

WRONG = [
    ("setting port", "set port number default=1", "unknown line 'set port number default=1'"),
    ("setting port", "setting port colour", "the type must be one of text, number, community, flag, controller"),
    ("setting port", "setting port number", "default= is required for types text and number, and only there"),
    ("setting port", "setting port flag default=1", "default= is required for types text and number, and only there"),
    ("setting port", "setting port number default=x", "'x' is not a number"),
    ("setting port", "setting reader flag", "duplicate setting 'reader'; first defined at data/daemon/settings.def:1"),
    ('  "Says more."', "", "settings.def: the last setting requires lines for the manual page"),
]


class SettingsDataTest(codegenCase.CodegenCase):
    KIND = "settings"
    FILES = {"daemon/settings.def": SETTINGS, "daemon/snmpSubagent.conf.5": ".Bl\n@SETTINGS@\n.El\n"}

    def test_errors_are_reported_with_their_line(self):
        self.check_wrong("daemon/settings.def", WRONG)


if __name__ == "__main__":
    unittest.main()
