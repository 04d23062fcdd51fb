"""data/daemon: mistakes in the real settings are reported with their place, and nothing is written then."""

import os
import unittest

import codegenCase
from codegen.reader import Data  # noqa: E402

DATA = Data(os.path.join(codegenCase.ROOT, "data"))

DEFAULT = "default= is required for types text and number, and only there"
WRONG = [
    ("setting trapPort", "setting trapPort colour",
     "the type must be one of text, number, community, flag, controller"),
    ("setting trapPort", "setting trapPort number", DEFAULT),
    ("setting trapPort", "setting trapPort flag default=1", DEFAULT),
    ("setting trapPort", "setting trapPort number default=x", "'x' is not a number"),
    ("setting trapPort", "setting rocommunity flag",
     "duplicate setting 'rocommunity'; first defined at data/daemon/settings.def:{setting rocommunity}"),
    ('  "sends one test', "setting last flag", "settings.def: the last setting requires lines for the manual page"),
]


class SettingsDataTest(codegenCase.CodegenCase):
    KIND = "settings"
    FILES = {name: DATA.text(name) for name in ("daemon/settings.def", "daemon/snmpSubagent.conf.5")}

    def test_errors_are_reported_with_their_line(self):
        self.check_wrong("daemon/settings.def", WRONG)


if __name__ == "__main__":
    unittest.main()
