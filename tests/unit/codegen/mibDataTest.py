"""data/mib: a small array with the daemon's tables and the MIB module of it, wrong lines with their message."""

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

# The facts of each file stand in this order.
HEADER = """\
// Generated from data/mib/columns.def by codegen. Do not edit.
    COLID_sysServices = 0,
    COLID_ctlrNbr = 3,
    COLID_status = 12,
inline constexpr int NUMBER_OF_COLUMNS = 13;
inline constexpr int NUMBER_OF_REFRESHES = 2;
inline constexpr int MAX_total_vars = 60;
"""

SOURCE = r"""
const oid oid_sysServices[] = {1, 3, 6, 1, 2, 1, 1, 7};
const oid oid_ctlrName[] = {1, 3, 6, 1, 4, 1, 913, 2, 13, 1, 5};
const attribute_map_entry map_tsCtlr[] = {
    {"Status", COLID_ctlrStatus, tsstatus_enum_post_process},
    {"Version", COLID_version, nullptr},
    {"Name", COLID_ctlrName, nullptr},
const attribute_map_entry map_fan[] = {
    {"Status", COLID_fanState, tsstatus_enum_post_process},
    {"Rpm", COLID_fanRpm, nullptr},
    {"Name", COLID_fanForceTrap, force_trap_post_process},
int get_sysServices(int32_t var_index, bool) { return store_number(var_index, -72); }
int get_title(int32_t var_index, bool) { return store_text(var_index, "Say \"a\\b\" # \303\244"); }
int get_contact(int32_t var_index, bool) { return store_text(var_index, vars[cols[COLID_ctlrName].first_var].str); }
int get_lastPart(int32_t var_index, bool) { return store_number(var_index, lastPart); }
    {COLID_ctlrNbr, "tsController", 3, map_tsCtlr},
    {COLID_fanNbr, "tsFan", 3, map_fan},
    {"sysServices", oid_sysServices, 8, SMI_BASETYPE_INTEGER32, false, false, 0, 0, 1, 0, get_sysServices, nullptr},
    {"title", oid_title, 9, SMI_BASETYPE_OCTET_STRING, false, false, 0, 0, 1, 0, get_title, nullptr},
    {"version", oid_version, 9, SMI_BASETYPE_OCTET_STRING, false, false, 0, 0, 1, 0, nullptr, nullptr},
    {"ctlrNbr", oid_ctlrNbr, 11, SMI_BASETYPE_UNSIGNED32, true, true, 0, 2, 1, 0, get_tsCtlr, nullptr},
    {"ctlrStatus", oid_ctlrStatus, 11, SMI_BASETYPE_ENUM, true, false, 0, 2, 1, 0, get_tsCtlr, nullptr},
    {"fanForceTrap", oid_fanForceTrap, 11, SMI_BASETYPE_OCTET_STRING, true, false, 2, 6, 0, COL_FLAG_controller_parent, get_fan, fanForceTrap_set},
    {"contact", oid_contact, 9, SMI_BASETYPE_OCTET_STRING, false, false, 0, 0, 1, 0, get_contact, contact_set},
    {"status", oid_status, 9, SMI_BASETYPE_INTEGER32, false, false, 0, 0, 1, 0, compute_status, nullptr},
"""

REQUESTS = """\
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsController.h"
    REQUEST("tsController", TsController) \\
    REQUEST("tsFan", TsFan) \\
    REQUEST("tsLog", TsLog)
#define API_INSTANCE_REQUESTS(REQUEST) \\
    REQUEST("tsController", TsController) \\
    REQUEST("tsLog", TsLog)
"""

CATALOGUE = r"""
constexpr int32_t plain_table[] = {1, 7};
constexpr int columns_204[] = {COLID_title, COLID_ctlrStatus};
constexpr int rows_204[] = {COLID_ctlrNbr};
constexpr object_rule object_204 = {
    {row_rule::bounded_index, COLID_ctlrNbr, COLID_ctlrStatus, COLID_ctlrNbr, COLID_ctlrNbr,
     "", "", "missing: %d", ""},
    fresh_rule::instance, "tsController", rows_204, false,
    "none", "not up: %d"};
    {200, "test", "test", "A test.",
     "", columns_200, nullptr},
    {204, "partChange", "part-change", "A part has \"changed\".",
     "its number", columns_204, &object_204},
    {204, 1, "slow-fan", "slow fan", "",
     {row_rule::row, -1, COLID_fanState, COLID_fanNbr, COLID_fanNbr,
     "", "large: %d of %d", "no fan %d", "Replace it."},
     {COLID_fanRpm, COLID_fanState, "slow"},
     {-1, -1, ""}},
    {COLID_fanForceTrap, 204, force_rule::component, 1, COLID_fanRpm, "1 2 3", ""},
"""

HANDLERS = """\
int fanForceTrap_set(int32_t var_index) {
    return force_notification(forced_notifications[0], var_index);
"""

MODULE_FACTS = """\
-- Generated from data/mib by codegen. Do not edit.
SMALL-MIB DEFINITIONS ::= BEGIN
    LAST-UPDATED "202602030405Z"
        "A small one.

         Its second paragraph."
    ::= { makers 1 }
makers OBJECT IDENTIFIER ::= { enterprises 913 }
tesseraNotifications OBJECT IDENTIFIER ::= { smallEvents 0 }
Words ::= TEXTUAL-CONVENTION
    SYNTAX      OCTET STRING (SIZE (0..65535))
        "A state.
         - unknown(-1): none of these
    SYNTAX      INTEGER { unknown(-1), up(1), down(2) }
    SYNTAX      INTEGER { none(0), slowFan(1) }
title OBJECT-TYPE
    SYNTAX      Words
        "A title in two pieces."
    ::= { smallObjects 1 }
    SYNTAX      SEQUENCE OF TsCtlrEntry
    INDEX       { tsCtlrRow }
ctlrStatus OBJECT-TYPE
        "A status. A notification carries it as an unsigned number (unknown as 4294967295)."
    ::= { tsCtlrEntry 3 }
fanTable OBJECT-TYPE
    ::= { smallObjects 16 }
fanEntry OBJECT-TYPE
        "One fan. The first index is the row of the controller in tsCtlrTable."
    INDEX       { tsCtlrRow, fanRow }
FanEntry ::= SEQUENCE {
    fanRow        Unsigned32,
    fanNbr        Unsigned32,
    fanForceTrap  Words,
    fanState      State,
    fanRpm        Unsigned32
}
fanRow OBJECT-TYPE
    SYNTAX      Unsigned32 (1..6)
    MAX-ACCESS  not-accessible
    ::= { fanEntry 1 }
fanForceTrap OBJECT-TYPE
    MAX-ACCESS  read-write
fanRpm OBJECT-TYPE
    UNITS       "RPM"
    MAX-ACCESS  read-only
    ::= { fanEntry 5 }
    SYNTAX      Part
partChange NOTIFICATION-TYPE
    OBJECTS     { title, ctlrStatus }
         - slow fan: 'Replace it.' or 'slow'
    ::= { tesseraNotifications 204 }
    OBJECTS     { title, version, contact, status }
    OBJECTS     { lastPart }
    OBJECTS     { fanNbr, fanForceTrap, fanState, fanRpm }
    ::= { tesseraGroups 16 }
    ::= { tesseraCompliances 1 }
"""

# A line (its beginning), what it is replaced by, and the message, at the replaced line unless it has its own.
WRONG_COLUMNS = [
    ("root R", "rot R 1.3", "unknown line 'rot R 1.3'"),
    ("root R", "  root R 1.3", "an indented line must follow one that is not indented"),
    ("root R", "", "8: R is used before the line 'root R OID'"),
    ("root R", "root R 1.x", "'1.x' is not an OID"),
    ("root R", "root R 1.4294967296", "'1.4294967296' is not an OID"),
    ("request", "request tsLog none", "unknown line 'request tsLog none'"),
    ("scalar title", 'scalar title R.1 string constant "open', "cannot split the line into words: No closing quotation"),
    ("scalar title", "scalar title R.1 text constant x",
     "the type must be one of string, integer, unsigned, enumeration"),
    ("scalar title", "scalar title R.1 string",
     "the source must be one of row, attribute, force, computed, constant, copy, process"),
    ("scalar title", "scalar title R.1 string constant", "source 'constant' requires an argument"),
    ("scalar title", "scalar title R.1 string row", "source 'row' is only for columns of tables"),
    ("scalar title", "scalar title R.1 string process extra", "unexpected 'extra'; expected post=, after=, syntax=, units="),
    ("scalar title", "scalar ti-tle R.1 string constant x", "invalid name 'ti-tle' of a column"),
    ("scalar title", "scalar title R..1 string constant x", "'1.3.6.1.4.1.913.2..1' is not an OID"),
    ("scalar title", "scalar title R.1 string computed 1st", "invalid name '1st' of an operation"),
    ("scalar sysServices", "scalar sysServices 1.3.6 integer constant many",
     "'many' is not a number for a column of type integer"),
    ("scalar sysServices", "scalar sysServices 1.3.6 integer constant 1 writable", "only a string column can be writable"),
    ("scalar contact", "scalar contact R.20 string copy version", "'version' is not a string column of a table"),
    ("scalar version", "scalar version R.2 string attribute Version",
     "after= is required for scalars with source 'attribute', and only there"),
    ("scalar version", "scalar version R.2 string attribute Version after=nothing", "after= names 'nothing', which no table fills"),
    ("scalar version", "scalar title R.2 string constant x", "duplicate column 'title'; first defined at data/mib/columns.def:8"),
    ("scalar version", "scalar version R.1 string constant x", "the OID of 'version' must come after that of 'title'"),
    ("scalar version", "scalar version R.1.5 string constant x", "the OID of 'version' must not begin with that of 'title'"),
    ("table tsCtlr", "table tsCtlr R.13 rows=2 min=1 list=tsController pace=seconds", "missing item="),
    ("table tsCtlr", "table tsCtlr R.13 rows=0 min=1 pace=seconds item=x", "'0' is not a number of at least 1"),
    ("table tsCtlr", "table tsCtlr R.13 rows=2 min=1 pace=seconds item=controller",
     "17: table 'tsCtlr' requires list=, to fill 'ctlrStatus'"),
    ("table tsCtlr", "", "15: a column line must follow a table line"),
    ("table fan", "table fan R.16 parent=fan rows=6 min=0 list=tsFan pace=minutes item=fan",
     "unknown parent 'fan'; define a table of controllers or enclosures above"),
    ("table fan", "table tsCtlr R.16 rows=6 min=0 list=tsFan pace=minutes item=fan",
     "duplicate table 'tsCtlr'; first defined at data/mib/columns.def:13"),
    ("table fan", "table fan R.16 rows=6 min=0 list=tsFan pace=daily item=fan",
     "pace= must be one of seconds, minutes, or the table that this one is filled with"),
    ("table fan", "table fan R.16 rows=6 min=0 list=tsFan pace=minutes item=fan identity=none", "unknown column 'none'"),
    ("scalar contact", "table empty R.20 rows=1 min=0 pace=minutes item=x", "table 'empty' has no columns"),
    ("column ctlrStatus", "column ctlrStatus x enumeration computed", "'x' is not a number of at least 1"),
    ("column ctlrStatus", "column ctlrStatus 3 unsigned row", "only the first column of a table may have the source 'row'"),
    ("column ctlrStatus", "column ctlrStatus 3 string constant x", "source 'constant' is only for scalars"),
    ("column ctlrName", "column ctlrName 5 string attribute post=version", "source 'attribute' requires an argument"),
    ("column fanRpm", "column fanRpm 5 unsigned attribute Rpm unit=RPM",
     "unexpected 'unit=RPM'; expected post=, after=, syntax=, units="),
    ("column fanRpm", "column fanRpm 5 unsigned attribute Rpm syntax=State", "'State' does not fit a column of type unsigned"),
    ("column fanRpm", "column fanRpm 5 unsigned attribute Rpm syntax=Stat", "unknown convention 'Stat'"),
    ("column fanRpm", 'column fanRpm 5 unsigned attribute Rpm units="\u00b0C"',
     "a MIB string must be printable ASCII without double quotes"),
    ("column fanState", "column fanState 4 enumeration computed",
     "column 'fanState' is an enumeration and requires syntax="),
    ("column fanState", "column fanState 4 integer attribute Status post=tsstatus_enum", "post=tsstatus_enum requires syntax=State"),
    ("column fanState", "column fanState 4 integer attribute Status syntax=State", "syntax=State requires post=tsstatus_enum"),
    ('  "A speed."', "", "29: column 'fanRpm' has no description"),
    ('  "A speed."', '  "A \\"speed\\"."', "a MIB string must be printable ASCII without double quotes"),
    ('  "A speed."', "  A speed.", "unknown line 'A speed.'"),
    ('  "The fans."', "", "21: table 'fan' has no description"),
    ("scalar contact", "scalar fanTable R.20 string constant x", "duplicate name 'fanTable'; first used at data/mib/columns.def:21"),
]

WRONG_NOTIFICATIONS = [
    ("plain", "plain 0", "'0' is not a number of at least 1"),
    ("plain", "trap 7", "unknown line 'trap 7'"),
    ("  shows title ctlr", "  shows nothing", "unknown column 'nothing'"),
    ("  shows title ctlr", "  shows " + "title " * 17, "a notification carries at most 16 variables"),
    ("  shows title ctlr", "", "5: the line 'shows' is required"),
    ('  "Look', "", "5: notification 'partChange' has no description"),
    ("notification 200", 'notification 200 test test "A test."',
     "severity= must be one of ok, warning, critical if no variable is the object's state, and is not allowed otherwise"),
    ("notification 204", 'notification 204 x x "x" severity=ok',
     "severity= must be one of ok, warning, critical if no variable is the object's state, and is not allowed otherwise"),
    ("notification 204", "notification 199 x x x", "'199' is not a number of at least 200"),
    ("notification 204", "notification 200 x x x",
     "duplicate number, name or word; first used at data/mib/notifications.def:2"),
    ("notification 204", "notification 204 x Upper x", "invalid name 'Upper' of a kind on command lines"),
    ("  find bounded", "  find next-index ctlrNbr", "find must be one of index, bounded-index, controller, row, one-or-two"),
    ("  find bounded", "  find index", "'index' requires a column"),
    ("  find bounded", "  find row ctlrNbr", "'row' must not have a column"),
    ("  find bounded", "  find index fanRpm", "5: the columns belong to different tables"),
    ("  find bounded", "", "5: the lines 'find' and 'judge' are required"),
    ("  fresh", "  fresh never", "fresh must be one of table, table-first, instance"),
    ("  fresh", "  fresh instance", "unknown line 'fresh instance'"),
    ("  fresh", "", "5: the lines 'fresh' and 'rows' are required"),
    ("  missing", '  missing "gone"', "the message 'missing' must contain \"%d\" 1 time(s)"),
    ("  missing", '  missing "gone %d%%"', "the message 'missing' must contain \"%d\" 1 time(s)"),
    ("  missing", "", "5: the line 'missing' is required"),
    ("  not-up", "", "16: notification 204 has no components"),
    ("component", "component 204 9 x x", "23: unknown component 1 of notification 204"),
    ("  low", "  low fanRpm ctlrStatus slow", "16: the columns belong to different tables"),
    ("  low", "  rows fanNbr", "unknown line 'rows fanNbr'"),
    ("force", 'force fanForceTrap 204 diagonal "1 2 3"', "the rule must be one of row, controller, index, component"),
    ("force", 'force ctlrName 204 row "1 2 3"', "column 'ctlrName' does not have the source 'force'"),
    ("force", 'force fanForceTrap 203 row "1 2 3"', "unknown notification 203"),
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
    ("  value 2 down", '  value 2 Down "does not" text=Down', "invalid name 'Down' of a value"),
]

WRONG_MODULE = [
    ("node smallEvents", "node smallEvents nowhere 251", "unknown node 'nowhere'; define it above this line"),
    ("node smallEvents", "node smallEvent smallMIB 251", "1: unknown node 'smallEvents'"),
    ("node smallObjects", "node smallObjects makers 3",
     "1: missing node at 1.3.6.1.4.1.913.2, where the tables are"),
    ("revision 2025", 'revision 202702030405Z "x"', "1: the latest revision must be first"),
    ("older SMALL", "older small oldSmall 27405", "invalid name 'small' of a module"),
    ("contact", "", "module.def: missing line 'contact'"),
]


class MibDataTest(codegenCase.CodegenCase):
    KIND = "store"
    FILES = {"mib/columns.def": COLUMNS, "mib/notifications.def": NOTIFICATIONS, "mib/conventions.def": CONVENTIONS,
             "mib/module.def": MODULE}

    def test_makes_the_tables_of_the_daemon(self):
        self.assertEqual(self.run_on(), (0, ""))
        self.assert_in_order("mibColumns.h", HEADER)
        self.assert_in_order("mibColumns.cpp", SOURCE)
        self.assert_in_order("apiRequests.h", REQUESTS)
        self.assert_in_order("trapCatalogue.cpp", CATALOGUE)
        self.assert_in_order("forceTrapHandlers.cpp", HANDLERS)

    def test_makes_the_module(self):
        self.KIND = "mib"
        self.assertEqual(self.run_on(), (0, ""))
        self.assert_in_order("SMALL-MIB.txt", MODULE_FACTS)
        self.assertNotIn("sysServices", self.read("SMALL-MIB.txt"))
        self.assertIn("sysServices", self.read("mib-reference.md"))
        self.assertIn("::= { enterprises 27405 }\n", self.read("SMALL-OLD-MIB.txt"))

    def test_names_the_place_of_a_mistake(self):
        self.check_wrong("mib/columns.def", WRONG_COLUMNS)
        self.check_wrong("mib/notifications.def", WRONG_NOTIFICATIONS)
        self.check_wrong("mib/conventions.def", WRONG_CONVENTIONS)
        self.check_wrong("mib/module.def", WRONG_MODULE)

    def test_leaves_equal_files_untouched(self):
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
