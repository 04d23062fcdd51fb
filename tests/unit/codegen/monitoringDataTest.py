"""Errors in data/monitoring and their messages, in copies of the real data."""

import os
import unittest

import codegenCase
from codegen.model import expressions, metrics, snmp  # noqa: E402
from codegen.reader import Data  # noqa: E402
from codegen.writers import zabbix  # noqa: E402

DATA = Data(os.path.join(codegenCase.ROOT, "data"))
MODEL = snmp.read(DATA)

# The beginning of a line, its replacement, and the message.
WRONG_METRICS = [
    ("module tessera_alerts", 'module tessera_alerts 5m "x"',
     "expected: module NAME INTERVALm TEXT, with an interval of 1m to 4m"),
    ("leave worstAlertNbr", "leave tsSerialNumber", "duplicate 'tsSerialNumber'"),
    ("table tsVolume ", "", "metrics.def: missing line 'table tsVolume'"),
]

WRONG_WATCHES = [
    ("severity TesseraStatus ", "severity TesseraStatus up=ok down=critical unknown=ok",
     "missing severity of 'degraded'"),
    ("watch tsDiskStatus ", "watch tsDiskName for=2m", "column 'tsDiskName' is not a metric"),
    ("watch tsDiskStatus ", "watch tsDiskStatus for=2", "missing for=MINUTESm, which must come first"),
    ("watch tsDiskStatus ", "watch tsDiskSizeGb for=2m",
     "missing severity line above for the states of 'tsDiskSizeGb'"),
    ("watch tsDiskStatus ", "", f"{MODEL.mib.column('tsDiskStatus').place}: missing watch line for 'tsDiskStatus' "
     "in watches.def"),
    ("limit ", "limit tsDiskFolderFreePercent below for=1m warning=9/8 critical=5/8",
     "warning=AT/OVER is required, with OVER not below AT"),
    ("limit ", "limit tsDiskFolderFreePercent below for=1m warning=8/9 critical=5/8 while=tsDiskSizeGb",
     "'tsDiskSizeGb' has different rows"),
]

WRONG_PANELS = [
    ('panel stat 4 none "Disks', 'panel stat 4 none "x" "{{tsDisk}}" tsDiskSizeGb',
     "no metric of the panel has the label 'tsDisk'"),
    ("panel state 8", 'panel state 8 none "x" "" tsDiskSizeGb', "'tsDiskSizeGb' is not a column of states"),
]

EXPRESSIONS = [
    ('sum by (tsDiskStatus, instance) (tsDiskStatus{tsDiskStatus=~"up|down",job="a"})', None),
    ("max_over_time(tsDiskSizeGb[5m]) and on (tsDiskRow) up > 1e3", None),
    ("sum(tsDiskSize)", "unknown metric 'tsDiskSize'"),
    ('tsDiskStatus{tsDiskStatus="broken"}', "'tsDiskStatus' has no state 'broken'"),
    ('tsDiskStatus{tsVolumeName="x"}', "'tsDiskStatus' has no label 'tsVolumeName'"),
    ("sum by (tsVolumeName) (tsDiskSizeGb)", "no metric of 'sum by (tsVolumeName) (tsDiskSizeGb)' has the label "
                                             "'tsVolumeName'"),
    ("tsDiskIoPortType", "unknown metric 'tsDiskIoPortType'"),  # the name is tsDiskIoPortType_info
]


class MonitoringDataTest(codegenCase.CodegenCase):
    KIND = "monitoring"
    FILES = {name: DATA.text(name) for name in (
        "mib/columns.def", "mib/notifications.def", "mib/conventions.def", "mib/module.def",
        "monitoring/metrics.def", "monitoring/watches.def", "monitoring/panels.def", "monitoring/rules.yml")}

    def test_errors_are_reported_with_their_line(self):
        self.check_wrong("monitoring/metrics.def", WRONG_METRICS)
        self.check_wrong("monitoring/watches.def", WRONG_WATCHES)
        self.check_wrong("monitoring/panels.def", WRONG_PANELS)


class PartsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.metrics = metrics.read(DATA, MODEL)

    def test_expressions_use_only_existing_metrics(self):
        for text, message in EXPRESSIONS:
            with self.subTest(expression=text):
                try:
                    expressions.Checker(self.metrics, AssertionError).check(text)
                    found = None
                except AssertionError as error:
                    found = str(error)
                self.assertEqual(found, message)

    def test_identities_are_stable(self):
        self.assertEqual(zabbix.uuid("item", "globalStatus"), "56d3f9dc4b664e4fa1befbe1265448d6")


if __name__ == "__main__":
    unittest.main()
