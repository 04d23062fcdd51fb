"""The generator of the MIB tables: small inputs with what is made of them, wrong ones with their message."""

import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import generatorCase  # noqa: E402
from apiMgmt.snmpSubagent.snmpSubagentMibParser.generator import __main__ as program  # noqa: E402

COLUMNS = """\
# A comment, and an empty line.

root R 1.3.6.1.4.1.913.2
scalar  sysServices  1.3.6.1.2.1.1.7  integer  constant -72
scalar  title        R.1  string  constant "Say \\"a\\\\b\\" # \u00e4"
scalar  version      R.2  string  attribute
table   disk         R.3  parent=none parents=0 rows=5 min=1
  column  diskNbr      2  unsigned     row
  column  diskStatus   3  enumeration  attribute
  column  diskName     5  string       attribute  set=disk_set
table   fan          R.4  parent=controller parents=2 rows=6 min=0
  column  fanNbr       2  unsigned     computed
  column  fanName      3  string       attribute
scalar  contact      R.5  string  copy diskName set=contact_set
scalar  worst        R.6  unsigned  process worstNbr
scalar  status       R.10 integer  computed compute_status
"""

REFRESH = """\
refresh tsDisk disk
  Status   diskStatus  tsstatus_enum
  Version  version
  Name     diskName
refresh tsFan fan
  Name     fanName
"""

FACTS_OF_HEADER = """\
    COLID_sysServices = 0,
    COLID_title = 1,
    COLID_version = 2,
    COLID_diskNbr = 3,
    COLID_diskStatus = 4,
    COLID_diskName = 5,
    COLID_fanNbr = 6,
    COLID_fanName = 7,
    COLID_contact = 8,
    COLID_worst = 9,
    COLID_status = 10,
inline constexpr int NUMBER_OF_COLUMNS = 11;
inline constexpr int NUMBER_OF_REFRESHES = 2;
inline constexpr int MAX_total_vars = 45;
"""

# In this order.
FACTS_OF_SOURCE = r"""
const oid oid_sysServices[] = {1, 3, 6, 1, 2, 1, 1, 7};
const oid oid_diskName[] = {1, 3, 6, 1, 4, 1, 913, 2, 3, 1, 5};
const attribute_map_entry map_disk[] = {
    {"Status", COLID_diskStatus, tsstatus_enum_post_process},
    {"Version", COLID_version, nullptr},
    {"Name", COLID_diskName, nullptr},
const attribute_map_entry map_fan[] = {
    {"Name", COLID_fanName, nullptr},
int get_sysServices(int32_t var_index, bool) { return store_number(var_index, -72); }
int get_title(int32_t var_index, bool) { return store_text(var_index, "Say \"a\\b\" # \303\244"); }
int get_contact(int32_t var_index, bool) { return store_text(var_index, vars[cols[COLID_diskName].first_var].str); }
int get_worst(int32_t var_index, bool) { return store_number(var_index, worstNbr); }
    {COLID_diskNbr, "tsDisk", 3, map_disk},
    {COLID_fanNbr, "tsFan", 1, map_fan},
    {"sysServices", oid_sysServices, 8, SMI_BASETYPE_INTEGER32, false, false, 0, 0, 1, 0, get_sysServices, nullptr},
    {"title", oid_title, 9, SMI_BASETYPE_OCTET_STRING, false, false, 0, 0, 1, 0, get_title, nullptr},
    {"version", oid_version, 9, SMI_BASETYPE_OCTET_STRING, false, false, 0, 0, 1, 0, nullptr, nullptr},
    {"diskNbr", oid_diskNbr, 11, SMI_BASETYPE_UNSIGNED32, true, true, 0, 5, 1, 0, get_disk, nullptr},
    {"diskStatus", oid_diskStatus, 11, SMI_BASETYPE_ENUM, true, false, 0, 5, 1, 0, get_disk, nullptr},
    {"diskName", oid_diskName, 11, SMI_BASETYPE_OCTET_STRING, true, false, 0, 5, 1, 0, get_disk, disk_set},
    {"fanNbr", oid_fanNbr, 11, SMI_BASETYPE_UNSIGNED32, true, true, 2, 6, 0, COL_FLAG_controller_parent, get_fan, nullptr},
    {"fanName", oid_fanName, 11, SMI_BASETYPE_OCTET_STRING, true, false, 2, 6, 0, COL_FLAG_controller_parent, get_fan, nullptr},
    {"contact", oid_contact, 9, SMI_BASETYPE_OCTET_STRING, false, false, 0, 0, 1, 0, get_contact, contact_set},
    {"worst", oid_worst, 9, SMI_BASETYPE_UNSIGNED32, false, false, 0, 0, 1, 0, get_worst, nullptr},
    {"status", oid_status, 9, SMI_BASETYPE_INTEGER32, false, false, 0, 0, 1, 0, compute_status, nullptr},
"""

# A line of COLUMNS or REFRESH (its beginning), what stands there instead, and the message. The line number
# is that of the line replaced, unless the message has one.
WRONG_COLUMNS = [
    ("root R", "rot R 1.3", "no such line: 'rot R 1.3'"),
    ("root R", "", "columns.def:5: R is used before the line 'root R OID'"),
    ("root R", "root R 1.x", "'1.x' is no OID"),
    ("root R", "root R 1.4294967296", "'1.4294967296' is no OID"),
    ("scalar  title", 'scalar title R.1 string constant "open', "cannot split the line into words: No closing quotation"),
    ("scalar  title", "scalar title R.1 text constant x",
     "the type must be one of string, integer, unsigned, enumeration"),
    ("scalar  title", "scalar title R.1", "the type must be one of string, integer, unsigned, enumeration"),
    ("scalar  title", "scalar title R.1 string",
     "the source must be one of row, attribute, computed, constant, copy, process"),
    ("scalar  title", "scalar title R.1 string constant", "source 'constant' takes 1 word(s) here, not 0"),
    ("scalar  title", "scalar title R.1 string computed", "source 'computed' takes 1 word(s) here, not 0"),
    ("scalar  title", "scalar ti-tle R.1 string attribute", "'ti-tle' is no name of a column"),
    ("scalar  title", "scalar title R..1 string attribute", "'1.3.6.1.4.1.913.2..1' is no OID"),
    ("scalar  sysServices", "scalar sysServices 1.3.6 integer constant many",
     "'many' is no number for a column of type integer"),
    ("scalar  sysServices", "scalar sysServices 1.3.6 integer constant 1 set=x",
     "only a string column can be set"),
    ("scalar  contact", "scalar contact R.5 string copy diskName set=x.y", "'x.y' is no name of an operation"),
    ("scalar  title", "scalar title R.1 string process a-b", "'a-b' is no name of a variable"),
    ("scalar  title", "scalar title R.1 string computed 1st", "'1st' is no name of an operation"),
    ("scalar  contact", "scalar contact R.5 string copy version", "'version' is no string column of a table"),
    ("scalar  contact", "scalar contact R.5 string copy nobody", "'nobody' is no string column of a table"),
    ("scalar  contact", "scalar contact R.5 string attribute", "no line of refresh.def fills column 'contact'"),
    ("scalar  version", "scalar title R.2 string attribute", "column 'title' stands already at line 5"),
    ("scalar  version", "scalar version R.1 string attribute",
     "the OID of 'version' does not come after that of 'title'"),
    ("scalar  version", "scalar version R.1.5 string attribute", "the OID of 'version' lies below that of 'title'"),
    ("table   disk", "table disk R.3 parent=none parents=0 rows=5",
     "a table line is: table NAME OID parent=P parents=N rows=N min=N"),
    ("table   disk", "table disk R.3 parents=0 parent=none rows=5 min=1",
     "'parents=0' stands where parent=... is expected"),
    ("table   disk", "table disk R.3 parent=disk parents=0 rows=5 min=1",
     "the parent must be one of none, controller, enclosure"),
    ("table   disk", "table disk R.3 parent=none parents=2 rows=5 min=1",
     "a table has parents=0 exactly when it has parent=none"),
    ("table   disk", "table disk R.3 parent=none parents=0 rows=0 min=1", "'0' is no number of at least 1"),
    ("table   disk", "table disk R.3 parent=none parents=0 rows=5 min=-1", "'-1' is no number of at least 0"),
    ("table   disk", "", "8: a column line stands below no table"),
    ("table   fan", "table disk R.4 parent=none parents=0 rows=5 min=1", "table 'disk' stands there twice"),
    ("scalar  worst", "table empty R.6 parent=none parents=0 rows=1 min=0", "table 'empty' has no columns"),
    ("  column  diskStatus", "  column diskStatus x enumeration attribute", "'x' is no number of at least 1"),
    ("  column  diskStatus", "  column diskStatus 3 unsigned row", "only a table's first column holds the row number"),
    ("  column  diskStatus", "  column diskStatus 3 string constant x", "source 'constant' is for scalars"),
    ("  column  diskStatus", "  column diskStatus 2 enumeration attribute",
     "the OID of 'diskStatus' does not come after that of 'diskNbr'"),
]

WRONG_REFRESH = [
    ("refresh tsDisk", "refresh tsDisk", "expected: refresh OBJECT TABLE"),
    ("refresh tsDisk", "refresh tsDisk disc", "there is no table 'disc'"),
    ("refresh tsDisk", "", "2: an attribute line stands below no refresh line"),
    ("refresh tsFan", "refresh tsFan disk", "table 'disk' is filled already at line 1"),
    ("  Status", "  Status", "expected: ATTRIBUTE COLUMN [POST-PROCESS]"),
    ("  Status", "  Status diskState", "there is no column 'diskState'"),
    ("  Status", "  Status diskNbr", "column 'diskNbr' does not have the source 'attribute'"),
    ("  Status", "  Status fanName", "column 'fanName' belongs to another table"),
    ("  Status", "  Status version", "refresh.def:3: column 'version' is filled already at line 2"),
]


class GeneratorTest(generatorCase.GeneratorCase):
    def run_on(self, columns, refresh):
        self.write("columns.def", columns)
        self.write("refresh.def", refresh)
        return self.run_generator(self.path("columns.def"), self.path("refresh.def"), os.devnull)

    def run_generator(self, columns, refresh, traps):
        return self.run_program(program, "--columns", columns, "--refresh", refresh, "--traps", traps,
                                "--out", self.path("out"))

    def test_makes_the_tables(self):
        self.assertEqual(self.run_on(COLUMNS, REFRESH), (0, ""))
        self.assert_in_order(self.read("mibColumns.h"), FACTS_OF_HEADER)
        self.assert_in_order(self.read("mibColumns.cpp"), FACTS_OF_SOURCE)
        self.assertNotIn(self.folder, self.read("mibColumns.h") + self.read("mibColumns.cpp"))

    def test_leaves_equal_files_untouched(self):
        self.run_on(COLUMNS, REFRESH)
        for name in ("mibColumns.h", "mibColumns.cpp"):
            os.utime(self.path("out/" + name), (1, 1))
        self.run_on(COLUMNS.replace("rows=5", "rows=6"), REFRESH)
        self.assertNotEqual(os.stat(self.path("out/mibColumns.h")).st_mtime, 1)
        self.run_on(COLUMNS, REFRESH)
        os.utime(self.path("out/mibColumns.h"), (1, 1))
        self.run_on(COLUMNS + "# a comment\n", REFRESH)
        self.assertEqual(os.stat(self.path("out/mibColumns.h")).st_mtime, 1)

    def test_tells_where_columns_are_wrong(self):
        self.check_wrong_runs("columns.def", COLUMNS, WRONG_COLUMNS, lambda text: self.run_on(text, REFRESH))

    def test_tells_where_refreshes_are_wrong(self):
        self.check_wrong_runs("refresh.def", REFRESH, WRONG_REFRESH, lambda text: self.run_on(COLUMNS, text))

    def test_missing_files_and_too_many_columns(self):
        status, errors = self.run_on(
            "".join(f"scalar s{i} 1.{i} integer constant 1\n" for i in range(257)), "")
        self.assertEqual((status, errors), (1, "a column number must fit one byte: there are more than 256 columns\n"))
        status, errors = self.run_generator(*[self.path("none")] * 3)
        self.assertEqual(status, 1)
        self.assertIn("none", errors)


if __name__ == "__main__":
    unittest.main()
