"""Errors in data/mib and their messages, in the files of a small array."""

import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import codegenCase  # noqa: E402

COLUMNS = """\
# A comment, and an empty line.

root R 1.3.6.1.4.1.913.2
request tsLog list
request tsLog instance
scalar sysServices 1.3.6.1.2.1.1.7 integer constant -72
  "Of the system group."
scalar title R.1 string constant "Say \\"a\\\\b\\" # \u00e4"
  "A title"
  "in two pieces."
scalar version R.2 string attribute Version after=ctlrStatus
  "A version."
table tsCtlr R.13 rows=2 min=1 list=tsController pace=seconds item=controller
  "The controllers."
column ctlrNbr 2 unsigned row
  "A number."
column ctlrStatus 3 enumeration attribute Status post=tsstatus_enum syntax=State
  "A status."
column ctlrName 5 string attribute Name writable
  "A name."
table fan R.16 parent=tsCtlr rows=6 min=0 list=tsFan pace=minutes item=fan identity=fanRpm
  "The fans."
column fanNbr 2 unsigned row
  "A number."
column fanForceTrap 3 string force
  "Forces."
column fanState 4 enumeration attribute Status post=tsstatus_enum syntax=State
  "A state."
column fanRpm 5 unsigned attribute Rpm units="RPM"
  "A speed."
scalar contact R.20 string copy ctlrName writable
  "A contact."
scalar lastPart R.21 integer process syntax=Part
  "The last."
scalar status R.22 integer computed compute_status
  "A status."
"""

NOTIFICATIONS = """\
plain 1 7
notification 200 test test "A test." severity=ok
  "Nothing is wrong."
  shows title
notification 204 partChange part-change "A part has \\"changed\\"."
  "Look at it."
  argument "its number"
  shows title ctlrStatus
  find bounded-index ctlrNbr
  fresh instance tsController
  judge ctlrStatus owner=ctlrNbr verify=ctlrNbr
  rows ctlrNbr
  no-index "none"
  missing "missing: %d"
  not-up "not up: %d"
component 204 1 slow-fan "slow fan"
  find row
  judge fanState owner=fanNbr verify=fanNbr
  too-large "large: %d of %d"
  missing "no fan %d"
  unhealthy "Replace it."
  low fanRpm fanState "slow"
force fanForceTrap 204 component 1 index fanRpm "1 2 3"
"""

CONVENTIONS = """\
convention Words hint=255t
  "Words."
convention State from=tsstatus_enum api=Status
  "A state."
  value -1 unknown "none of these"
  value 1 up "works" text=Up
  value 2 down "does not" text=Down
convention Part components=none
  "A kind of part."
"""

MODULE = """\
module SMALL-MIB smallMIB "Small Makers"
  "A small one."
  ""
  "Its second paragraph."
contact "Nobody"
revision 202602030405Z "The second."
revision 202502030405Z "The first."
node makers enterprises 913
node smallMIB makers 1
node smallObjects makers 2
node smallEvents smallMIB 251
  "Those that tell."
node smallConformance smallMIB 252
notifications smallEvents
conformance smallConformance
older SMALL-OLD-MIB oldSmall 27405
  "Older."
"""

# The beginning of a line, its replacement, and the message, for the replaced line unless it names another one.
WRONG_COLUMNS = [
    ("root R", "rot R 1.3", "unknown line 'rot R 1.3'"),
    ("root R", "", "8: R is used before the line 'root R OID'"),
    ("root R", "root R 1.x", "'1.x' is not an OID"),
    ("scalar title", 'scalar title R.1 string constant "open', "cannot split the line into words: No closing quotation"),
    ("scalar title", "scalar title R.1 text constant x",
     "the type must be one of string, integer, unsigned, enumeration"),
    ("scalar title", "scalar title R.1 string constant", "source 'constant' requires an argument"),
    ("scalar title", "scalar title R.1 string row", "source 'row' is only for columns of tables"),
    ("scalar title", "scalar title R.1 string process extra", "unexpected 'extra'; expected post=, after=, syntax=, units=, catalogue="),
    ("scalar title", "scalar ti-tle R.1 string constant x", "invalid name 'ti-tle' of a column"),
    ("scalar sysServices", "scalar sysServices 1.3.6 integer constant many",
     "'many' is not a number for a column of type integer"),
    ("scalar sysServices", "scalar sysServices 1.3.6 integer constant 1 writable", "only a string column can be writable"),
    ("scalar contact", "scalar contact R.20 string copy version", "'version' is not a string column of a table"),
    ("scalar version", "scalar version R.2 string attribute Version",
     "after= is required for scalars with source 'attribute', and only there"),
    ("scalar version", "scalar version R.2 string attribute Version after=nothing", "after= names 'nothing', which no table fills"),
    ("scalar version", "scalar title R.2 string constant x", "duplicate column 'title'; first defined at data/mib/columns.def:8"),
    ("scalar version", "scalar version R.1 string constant x", "the OID of 'version' must come after that of 'title'"),
    ("table tsCtlr", "table tsCtlr R.13 rows=2 min=1 list=tsController pace=seconds", "missing item="),
    ("table tsCtlr", "table tsCtlr R.13 rows=2 min=1 pace=seconds item=controller",
     "17: table 'tsCtlr' requires list=, to fill 'ctlrStatus'"),
    ("table fan", "table fan R.16 parent=fan rows=6 min=0 list=tsFan pace=minutes item=fan",
     "unknown parent 'fan'; define a table of controllers or enclosures above"),
    ("table fan", "table tsCtlr R.16 rows=6 min=0 list=tsFan pace=minutes item=fan",
     "duplicate table 'tsCtlr'; first defined at data/mib/columns.def:13"),
    ("table fan", "table fan R.16 rows=6 min=0 list=tsFan pace=daily item=fan",
     "pace= must be one of seconds, minutes, or the table that this one is filled with"),
    ("scalar contact", "table empty R.20 rows=1 min=0 pace=minutes item=x", "table 'empty' has no columns"),
    ("column ctlrStatus", "column ctlrStatus 3 unsigned row", "only the first column of a table may have the source 'row'"),
    ("column ctlrStatus", "column ctlrStatus 3 string constant x", "source 'constant' is only for scalars"),
    ("column fanRpm", "column fanRpm 5 unsigned attribute Rpm unit=RPM",
     "unexpected 'unit=RPM'; expected post=, after=, syntax=, units=, catalogue="),
    ("column fanRpm", "column fanRpm 5 unsigned attribute Rpm syntax=State", "'State' does not fit a column of type unsigned"),
    ("column fanRpm", 'column fanRpm 5 unsigned attribute Rpm units="\u00b0C"',
     "a MIB string must be printable ASCII without double quotes"),
    ("column fanState", "column fanState 4 enumeration computed",
     "column 'fanState' is an enumeration and requires syntax="),
    ("column fanState", "column fanState 4 integer attribute Status post=tsstatus_enum", "post=tsstatus_enum requires syntax=State"),
    ("column fanState", "column fanState 4 integer attribute Status syntax=State", "syntax=State requires post=tsstatus_enum"),
    ('  "A speed."', "", "29: column 'fanRpm' has no description"),
    ('  "A speed."', '  "A \\"speed\\"."', "a MIB string must be printable ASCII without double quotes"),
    ("scalar contact", "scalar fanTable R.20 string constant x", "duplicate name 'fanTable'; first used at data/mib/columns.def:21"),
]

WRONG_NOTIFICATIONS = [
    ("plain", "plain 0", "'0' is not a number of at least 1"),
    ("plain", "trap 7", "unknown line 'trap 7'"),
    ("  shows title ctlr", "  shows nothing", "unknown column 'nothing'"),
    ("  shows title ctlr", "  shows " + "title " * 17, "a notification carries at most 16 variables"),
    ('  "Look', "", "5: notification 'partChange' has no description"),
    ("notification 200", 'notification 200 test test "A test."',
     "severity= must be one of ok, warning, critical if no variable is the object's state, and is not allowed otherwise"),
    ("notification 204", 'notification 204 x x "x" severity=ok',
     "severity= must be one of ok, warning, critical if no variable is the object's state, and is not allowed otherwise"),
    ("notification 204", "notification 200 x x x",
     "duplicate number, name or word; first used at data/mib/notifications.def:2"),
    ("notification 204", "notification 204 x Upper x", "invalid name 'Upper' of a kind on command lines"),
    ("  find bounded", "  find next-index ctlrNbr", "find must be one of index, bounded-index, controller, row, one-or-two"),
    ("  find bounded", "  find index", "'index' requires a column"),
    ("  find bounded", "", "5: the lines 'find' and 'judge' are required"),
    ("  fresh", "  fresh never", "fresh must be one of table, table-first, instance"),
    ("  fresh", "", "5: the lines 'fresh' and 'rows' are required"),
    ("  missing", '  missing "gone"', "the message 'missing' must contain \"%d\" 1 time(s)"),
    ("  not-up", "", "16: notification 204 has no components"),
    ("component", "component 204 9 x x", "23: unknown component 1 of notification 204"),
    ("  low", "  low fanRpm ctlrStatus slow", "16: the columns belong to different tables"),
    ("force", 'force fanForceTrap 204 diagonal "1 2 3"', "the rule must be one of row, controller, index, component"),
    ("force", 'force ctlrName 204 row "1 2 3"', "column 'ctlrName' does not have the source 'force'"),
    ("force", 'force fanForceTrap 204 row "1 2"', "the line must end with an event ID of three numbers"),
    ("force", 'force fanForceTrap 204 index fanRpm "1 2 3"',
     "the line must end with an event ID of three numbers and the object's name in log lines"),
    ("force", "", "data/mib/columns.def:25: missing force line for 'fanForceTrap' in notifications.def"),
]

WRONG_CONVENTIONS = [
    ("convention Words", "convention Words hint=wide", "'wide' is not a display hint for strings"),
    ("convention State", "convention State from=other_enum", "no column has the post-process 'other_enum'"),
    ("convention Part", "convention Part", "a convention must have either hint= or values"),
    ("  value 1 up", '  value 1 up "works"', "3: with from=, exactly one value must have no text="),
    ("  value 2 down", '  value 1 down "does not" text=Down', "1 must be greater than 1 above"),
    ("  value 2 down", '  value 2 up "does not" text=Down', "duplicate value 'up'"),
]

WRONG_MODULE = [
    ("node smallEvents", "node smallEvents nowhere 251", "unknown node 'nowhere'; define it above this line"),
    ("node smallObjects", "node smallObjects makers 3",
     "1: missing node at 1.3.6.1.4.1.913.2, where the tables are"),
    ("revision 2025", 'revision 202702030405Z "x"', "1: the latest revision must be first"),
    ("contact", "", "module.def: missing line 'contact'"),
]


class MibDataTest(codegenCase.CodegenCase):
    KIND = "store"
    FILES = {"mib/columns.def": COLUMNS, "mib/notifications.def": NOTIFICATIONS, "mib/conventions.def": CONVENTIONS,
             "mib/module.def": MODULE}

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
        self.run_on({"mib/columns.def": COLUMNS.replace("rows=6", "rows=7")})
        self.assertNotEqual(os.stat(header).st_mtime, 1)

    def test_missing_files_and_too_many_columns(self):
        many = "".join(f'scalar s{i} R.{i + 30} integer constant 1\n  "x"\n' for i in range(250))
        self.assertEqual(self.run_on({"mib/columns.def": COLUMNS + many}),
                         (1, "more than 256 columns; a column number must fit in one byte\n"))
        self.FILES = {}
        os.remove(os.path.join(self.folder, "data/mib/module.def"))
        status, errors = self.run_on({"mib/columns.def": COLUMNS})
        self.assertEqual(status, 1)
        self.assertIn("module.def", errors)


if __name__ == "__main__":
    unittest.main()
