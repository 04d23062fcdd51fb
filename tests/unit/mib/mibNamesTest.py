"""The MIB module as Net-SNMP reads it: every column, notification and instance has its name, and back.
Usage: mibNamesTest.py FOLDER-OF-THE-MODULES"""

import os
import re
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.normpath(os.path.join(HERE, "../../.."))
sys.path.insert(0, ROOT)

sys.path.insert(0, HERE)
import moduleFacts  # noqa: E402  (found through the line above)
from codegen.model import snmp  # noqa: E402
from codegen.reader import Data  # noqa: E402

STANDARD = os.path.join(ROOT, "mib/standard")
MODULE = "VORN-LUMIVANT-TESSERA-MIB"
ENTERPRISE, OLD_ENTERPRISE = "1.3.6.1.4.1.913.11000.2000.500.1", "1.3.6.1.4.1.27405"
modules_folder = None


def translate(words, *options, modules=MODULE, lines_each=1):
    """What snmptranslate makes of each word; its complaints fail the test."""
    with tempfile.TemporaryDirectory() as home:  # no settings of the user's, and none left behind
        os.mkdir(os.path.join(home, "cert_indexes"))  # the tool says so when it has to make it
        done = subprocess.run(["snmptranslate", "-M", f"{STANDARD}:{modules_folder}", "-m", modules, *options, *words],
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
                              env={**os.environ, "SNMPCONFPATH": home, "SNMP_PERSISTENT_DIR": home})
    lines = [line for line in done.stdout.split("\n") if line]
    if done.returncode != 0 or done.stderr or lines_each and len(lines) != len(words):
        raise AssertionError(f"status {done.returncode}, {len(lines)} of {len(words)} lines: {done.stderr[:2000]}")
    return lines


def bracketed(name):
    """The form in which the tools show indexes that they have recognised."""
    base, *indexes = name.split(".")
    return name if indexes == ["0"] else f"{base}[{']['.join(indexes)}]"


def instances(column):
    """The first and the last instance that the column can have."""
    table = column.table
    if table is None:
        return [(0,)]
    if table.parents:
        return [(1, 1), (table.parents, table.rows)]
    return [(1,), (table.rows,)]


class NamesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        model = snmp.read(Data(os.path.join(ROOT, "data")))
        cls.columns = [column for column in model.mib.columns if not column.name.startswith("sys")]
        cls.notifications = model.traps.notifications
        cls.oids = {column.name: "." + ".".join(map(str, column.oid)) for column in cls.columns}
        cls.oids.update((each.name, f".{ENTERPRISE}.251.0.{each.number}") for each in cls.notifications)

    def assert_translated(self, words, wanted, *options, modules=MODULE):
        for word, line, want in zip(words, translate(words, *options, modules=modules), wanted):
            self.assertEqual(line, want, word)

    def test_everything_has_its_oid_and_back(self):
        self.assertGreater(len(self.oids), 200)
        names = [f"{MODULE}::{name}" for name in self.oids]
        self.assert_translated(names, list(self.oids.values()), "-On")
        self.assert_translated(list(self.oids.values()), names)

    def test_instances_are_named_by_column_and_rows(self):
        oids, names = [], []
        for column in self.columns:
            for instance in instances(column):
                tail = ".".join(map(str, instance))
                oids.append(f"{self.oids[column.name]}.{tail}")
                names.append(f"{MODULE}::{column.name}.{tail}")
        self.assert_translated(oids, names)
        # The number and order of the indexes are those of the module.
        self.assert_translated(oids, map(bracketed, names), "-OX")

    def test_enumerations_are_those_that_other_tools_read(self):
        facts = moduleFacts.read(os.path.join(modules_folder, MODULE + ".txt"))["nodes"]
        enumerated = [name for name, node in facts.items() if node["enumeration"]]
        self.assertGreater(len(enumerated), 30)
        details = "\n".join(translate([f"{MODULE}::{name}" for name in enumerated], "-Td", lines_each=None))
        shown = re.findall(r"SYNTAX\s+INTEGER {(.*)}", details)
        self.assertEqual(len(shown), len(enumerated))
        for name, text in zip(enumerated, shown):
            self.assertEqual(text.replace(",", ""), moduleFacts.numbers(facts[name]["enumeration"]), name)

    def test_the_older_number_is_known(self):
        self.assert_translated([f".{OLD_ENTERPRISE}.2.13.1.3.1"],
                               ["VORN-LUMIVANT-TESSERA-OLD-MIB::lumivantEnterprise.2.13.1.3.1"],
                               modules=f"{MODULE}:VORN-LUMIVANT-TESSERA-OLD-MIB")


if __name__ == "__main__":
    modules_folder = sys.argv.pop(1)
    unittest.main()
