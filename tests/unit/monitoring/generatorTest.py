"""The generator of the files for monitors: wrong data is told with its place, and nothing is written then."""

import contextlib
import io
import os
import shutil
import sys
import tempfile
import unittest
from unittest import mock

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.normpath(os.path.join(HERE, "../../.."))
sys.path.insert(0, ROOT)

from apiMgmt.common.generator import reader  # noqa: E402
from mib.generator.__main__ import build as build_mib  # noqa: E402
from monitoring.generator import __main__ as program  # noqa: E402
from monitoring.generator import expressions, metrics, nagios, snmptt, yamlText, zabbix  # noqa: E402

DATA = os.path.join(ROOT, "apiMgmt/snmpSubagent/snmpSubagentMibParser/data")
OWN = os.path.join(ROOT, "monitoring")

# File, the beginning of its line, what stands there instead, and the message behind the place ("" for none).
WRONG = [
    ("metrics.def", "module tessera_alerts", 'module tessera_alerts 5m "x"',
     "expected: module NAME INTERVALm TEXT, with an interval of 1m to 4m"),
    ("metrics.def", "table tsVolume ", "table tsVolumes tessera tessera_inventory", "there is no table 'tsVolumes'"),
    ("metrics.def", "table tsVolume ", "table tsVolume tessara tessera_inventory", "there is no module 'tessara'"),
    ("metrics.def", "table tsVolume ", "table tsVolume tessera tessera tsVolumeNam",
     "there is no column 'tsVolumeNam'"),
    ("metrics.def", "leave worstAlertNbr", "leave worstAlert", "there is no column 'worstAlert'"),
    ("metrics.def", "leave worstAlertNbr", "leave tsSerialNumber", "'tsSerialNumber' stands there twice"),
    ("metrics.def", "info ", "infos TesseraPortType", "no such line: 'infos TesseraPortType'"),
    ("watches.def", "severity TesseraStatus ", "severity TesseraStatus up=ok down=bad",
     "'bad' is none of ok, warning, critical"),
    ("watches.def", "severity TesseraStatus ", "severity TesseraStatus up=ok down=critical unknown=ok",
     "nothing is said about 'degraded'"),
    ("watches.def", "watch tsDiskStatus ", "watch tsDiskName for=2m", "no metric is made of 'tsDiskName'"),
    ("watches.def", "watch tsDiskStatus ", "watch tsDiskStatus for=2", "for=MINUTESm is needed first"),
    ("watches.def", "watch tsDiskStatus ", "watch tsDiskStatus for=2m gone=critical",
     "'gone=critical' stands where only unknown=, up=, down=, degraded= may stand"),
    ("watches.def", "watch tsDiskStatus ", "watch tsDiskSizeGb for=2m",
     "no line above says how grave the states of 'tsDiskSizeGb' are"),
    ("watches.def", "limit ", "limit tsDiskFolderFreePercent below for=1m warning=9/8 critical=5/8",
     "warning=AT/OVER is needed, with OVER not below AT"),
    ("watches.def", "limit ", "limit tsDiskFolderFreePercent below for=1m warning=8/9 critical=5/8 while=tsDiskSizeGb",
     "'tsDiskSizeGb' has other rows"),
    ("panels.def", 'panel stat  4  none      "Disks', 'panel pie 4 none "x" "" tsDiskSizeGb',
     "a panel has a kind of stat, lines, bars, table and a width of 1 to 24"),
    ("panels.def", 'panel stat  4  none      "Disks', 'panel stat 4 none "x" "" tsDiskSize',
     "there is no metric 'tsDiskSize'"),
    ("panels.def", 'panel stat  4  none      "Disks', 'panel stat 4 none "x" "{{tsDisk}}" tsDiskSizeGb',
     "no metric of the panel has the label 'tsDisk'"),
]

# Files, the beginning of a line that is taken away, and the whole message.
MISSING = [
    ("metrics.def", "table tsVolume ", "metrics.def says nothing about table tsVolume"),
    ("metrics.def", "scalars", "metrics.def says nothing about the scalars"),
    ("watches.def", "watch tsDiskStatus ", "watches.def does not say when 'tsDiskStatus' is a trouble"),
    ("watches.def", "notification tsTestTrap", "watches.def: a line 'notification tsTestTrap' is needed"),
]

EXPRESSIONS = [
    ('sum by (tsDiskStatus, instance) (tsDiskStatus{tsDiskStatus=~"up|down",job="a"})', None),
    ("max_over_time(tsDiskSizeGb[5m]) and on (tsDiskRow) up > 1e3", None),
    ("sum(tsDiskSize)", "there is no metric 'tsDiskSize'"),
    ('tsDiskStatus{tsDiskStatus="broken"}', "'tsDiskStatus' has no state 'broken'"),
    ('tsDiskStatus{tsDiskStatus=~"up|broken"}', "'tsDiskStatus' has no state 'broken'"),
    ('tsDiskStatus{tsVolumeName="x"}', "'tsDiskStatus' has no label 'tsVolumeName'"),
    ("sum by (tsVolumeName) (tsDiskSizeGb)", "no metric of 'sum by (tsVolumeName) (tsDiskSizeGb)' has the label "
                                             "'tsVolumeName'"),
    ("tsDiskIoPortType", "there is no metric 'tsDiskIoPortType'"),  # it is tsDiskIoPortType_info
]


class GeneratorTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def run_with(self, name, beginning, instead):
        """Exit status, standard error and the number of the line, with one line of a data file exchanged."""
        own = os.path.join(self.folder, "own")
        shutil.copytree(OWN, own, dirs_exist_ok=True)
        path = os.path.join(own, "data", name)
        with open(path, encoding="utf-8") as file:
            lines = file.read().split("\n")
        number = next(i for i, line in enumerate(lines) if line.startswith(beginning))
        lines[number] = instead
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(lines))
        arguments = ["generator", "--data", DATA, "--own", own, "--out", os.path.join(self.folder, "out")]
        errors = io.StringIO()
        with mock.patch.object(sys, "argv", arguments), contextlib.redirect_stderr(errors):
            status = program.main()
        return status, errors.getvalue(), number + 1

    def test_tells_where_data_are_wrong(self):
        for name, beginning, instead, message in WRONG:
            with self.subTest(line=instead):
                status, text, number = self.run_with(name, beginning, instead)
                self.assertEqual((status, text), (1, f"{name}:{number}: {message}\n"))
                self.assertFalse(os.path.exists(os.path.join(self.folder, "out")))

    def test_nothing_is_forgotten(self):
        for name, beginning, message in MISSING:
            with self.subTest(without=beginning):
                status, text, _ = self.run_with(name, beginning, "")
                self.assertEqual(status, 1)
                self.assertTrue(text.endswith(message + "\n"), text)


class PartsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.metrics = metrics.build(build_mib(DATA), reader.read_lines(os.path.join(OWN, "data/metrics.def")))

    def test_expressions_name_only_what_exists(self):
        for text, message in EXPRESSIONS:
            with self.subTest(expression=text):
                try:
                    expressions.Checker(self.metrics, AssertionError).check(text)
                    found = None
                except AssertionError as error:
                    found = str(error)
                self.assertEqual(found, message)

    def test_ranges_hold_the_states_and_no_other(self):
        for numbers, inside, outside in (([2], "@2:2", "2:2"), ([4, 5, 3], "@3:5", "3:5"), ([-1, 3], "", ""),
                                         ([], "", "")):
            self.assertEqual((nagios.inside(numbers), nagios.outside(numbers)), (inside, outside))

    def test_identities_are_stable_and_of_version_4(self):
        self.assertEqual(zabbix.uuid("item", "globalStatus"), "56d3f9dc4b664e4fa1befbe1265448d6")
        for number in range(64):
            self.assertRegex(zabbix.uuid(str(number)), "^[0-9a-f]{12}4[0-9a-f]{3}[89ab][0-9a-f]{15}$")

    def test_patterns_match_numbers_and_named_numbers(self):
        self.assertEqual(snmptt.exactly([2, 12]), r"^2$|\(2\)$|^12$|\(12\)$")

    def test_words_with_a_meaning_of_their_own_are_quoted(self):
        rows = {"yes": '"yes"', "word": "word", "1": '"1"', "": '""', "a: b": '"a: b"', "-x": '"-x"', "two words":
                "two words", "5m": '"5m"', "null": '"null"'}
        for value, text in rows.items():
            self.assertEqual(yamlText.scalar(value), text)


if __name__ == "__main__":
    unittest.main()
