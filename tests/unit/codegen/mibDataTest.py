"""data/mib: mistakes in the real data are reported with their place, and nothing is written then."""

import os
import unittest

import codegenCase
from codegen.model import snmp  # noqa: E402
from codegen.reader import Data  # noqa: E402

DATA = Data(os.path.join(codegenCase.ROOT, "data"))
MIB = snmp.read(DATA).mib
FILES = {name: DATA.text(name) for name in (
    "mib/columns.def", "mib/notifications.def", "mib/conventions.def", "mib/module.def")}
COLUMNS = FILES["mib/columns.def"]

# The beginning of a line, its replacement, and the message, for the replaced line unless it names another one.
WRONG_COLUMNS = [
    ("root R", "rot R 1.3", "unknown line 'rot R 1.3'"),
    ("root R", "", "{scalar productName}: R is used before the line 'root R OID'"),
    ("scalar productName", 'scalar productName R.1 string constant "open',
     "cannot split the line into words: No closing quotation"),
    ("scalar productName", "scalar productName R.1 string process extra",
     "unexpected 'extra'; expected post=, after=, syntax=, units=, catalogue="),
    ("scalar sysServices", "scalar sysServices 1.3.6 integer constant 1 writable",
     "only a string column can be writable"),
    ("scalar sysContact", "scalar sysContact 1.3.6.1.2.1.1.4 string copy productName",
     "'productName' is not a string column of a table"),
    ("scalar productVersion", "scalar productVersion R.4 string attribute Version",
     "after= is required for scalars with source 'attribute', and only there"),
    ("scalar productDescription", "scalar productDescription R.1 string constant x",
     "the OID of 'productDescription' must come after that of 'productName'"),
    ("table tsCtlr ", "table tsCtlr R.13 rows=2 min=1 pace=seconds item=controller",
     "{column tsCtlrStatus}: table 'tsCtlr' requires list=, to fill 'tsCtlrStatus'"),
    ("scalar trapMiscAlertText", "table empty R.12 rows=1 min=0 pace=minutes item=x", "table 'empty' has no columns"),
    ("column tsCtlrStatus", "column tsCtlrStatus 3 unsigned row",
     "only the first column of a table may have the source 'row'"),
    ("column tsCtlrStatus", "column tsCtlrStatus 3 string constant x", "source 'constant' is only for scalars"),
    ("column tsCtlrFanCurrentRpm", "column tsCtlrFanCurrentRpm 5 unsigned attribute Rpm syntax=TesseraStatus",
     "'TesseraStatus' does not fit a column of type unsigned"),
    ("column tsCtlrFanCurrentRpm", 'column tsCtlrFanCurrentRpm 5 unsigned attribute Rpm units="\u00b0C"',
     "a MIB string must be printable ASCII without double quotes"),
    ("column tsCtlrStatus", "column tsCtlrStatus 3 enumeration computed",
     "column 'tsCtlrStatus' is an enumeration and requires syntax="),
    ("column tsCtlrStatus", "column tsCtlrStatus 3 integer attribute Status post=tsstatus_enum",
     "post=tsstatus_enum requires syntax=TesseraStatus"),
    ("column tsCtlrStatus", "column tsCtlrStatus 3 integer attribute Status syntax=TesseraStatus",
     "syntax=TesseraStatus requires post=tsstatus_enum"),
    ('  "The name of the controller."', "", "{column tsCtlrName}: column 'tsCtlrName' has no description"),
    ("column tsEnclAssetTag", "column tsCtlrTable 10 string attribute AssetTag",
     "duplicate name 'tsCtlrTable'; first used at data/mib/columns.def:{table tsCtlr }"),
]

SEVERITY = ("severity= must be one of ok, warning, critical if no variable is the object's state, and is not allowed "
            "otherwise")
WRONG_NOTIFICATIONS = [
    ("plain", "plain 0", "'0' is not a number of at least 1"),
    ("  shows", "  shows " + "productName " * 17, "a notification carries at most 16 variables"),
    ("notification 201", 'notification 299 x x "x" severity=ok\n  shows productName\nnotification 201 y y "y"',
     "notification 'x' has no description"),
    ("notification 200", 'notification 200 test test "A test."', SEVERITY),
    ("notification 204", 'notification 204 x x "x" severity=ok', SEVERITY),
    ("notification 204", "notification 200 x x x",
     "duplicate number, name or word; first used at data/mib/notifications.def:{notification 200}"),
    ("  find", "", "{notification 202}: the lines 'find' and 'judge' are required"),
    ("  fresh", "", "{notification 202}: the lines 'fresh' and 'rows' are required"),
    ("  missing", '  missing "gone"', "the message 'missing' must contain \"%d\" 1 time(s)"),
    ("  not-up", "", "{component 204 1}: notification 204 has no components"),
    ("component 204 4", "component 204 9 x x", "{force tsCtlrVoltage}: unknown component 4 of notification 204"),
    ("  low", "  low tsCtlrFanCurrentRpm tsCtlrStatus slow",
     "{component 204 1}: the columns belong to different tables"),
    ("force tsCtlrForceTrap", 'force tsCtlrForceTrap 203 row "1 2"',
     "the line must end with an event ID of three numbers"),
    ("force tsCtlrForceTrap", 'force tsCtlrForceTrap 203 index tsCtlrNbr "1 2 3"',
     "the line must end with an event ID of three numbers and the object's name in log lines"),
    ("force tsCtlrForceTrap", "",
     f"{MIB.column('tsCtlrForceTrap').place}: missing force line for 'tsCtlrForceTrap' in notifications.def"),
]

WRONG_CONVENTIONS = [
    ("convention TesseraText", "convention TesseraText hint=wide", "'wide' is not a display hint for strings"),
    ("convention TesseraComponentKind", "convention TesseraComponentKind",
     "a convention must have either hint= or values"),
    ("  value 1  up ", '  value 1 up "works"',
     "{convention TesseraStatus}: with from=, exactly one value must have no text="),
    ("  value 2  down ", '  value 1 down "does not" text=Down', "1 must be greater than 1 above"),
]

WRONG_MODULE = [
    ("node tesseraObjects", "node tesseraObjects tesseraMIB 3",
     "{module}: missing node at 1.3.6.1.4.1.913.11000.2000.500.1.2, where the tables are"),
    ("revision", 'revision 202511242200Z "Older."\nrevision 202611242200Z "x"',
     "{module}: the latest revision must be first"),
    ("contact", "", "module.def: missing line 'contact'"),
]


class MibDataTest(codegenCase.CodegenCase):
    KIND = "store"
    FILES = FILES

    def test_errors_are_reported_with_their_line(self):
        self.check_wrong("mib/columns.def", WRONG_COLUMNS)
        self.check_wrong("mib/notifications.def", WRONG_NOTIFICATIONS)
        self.check_wrong("mib/conventions.def", WRONG_CONVENTIONS)
        self.check_wrong("mib/module.def", WRONG_MODULE)

    def test_writes_only_changed_files(self):
        self.run_on()
        header = os.path.join(self.out, "mibColumns.h")
        os.utime(header, (1, 1))
        self.run_on({"mib/columns.def": COLUMNS + "# a comment\n"})
        self.assertEqual(os.stat(header).st_mtime, 1)
        self.run_on({"mib/columns.def": COLUMNS.replace("rows=2000", "rows=1999")})
        self.assertNotEqual(os.stat(header).st_mtime, 1)

    def test_too_many_columns(self):
        many = "".join(f'scalar s{i} R.{i + 100} integer constant 1\n  "x"\n' for i in range(250))
        self.assertEqual(self.run_on({"mib/columns.def": COLUMNS + many}),
                         (1, "more than 256 columns; a column number must fit in one byte\n"))


if __name__ == "__main__":
    unittest.main()
