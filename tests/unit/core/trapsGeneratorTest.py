"""The generator of the notifications: a small catalogue with what is made of it, wrong lines with their message."""

import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import generatorCase  # noqa: E402
from apiMgmt.common.generator import reader  # noqa: E402
from apiMgmt.snmpSubagent.snmpSubagentMibParser.generator import model, renderTraps, traps  # noqa: E402

COLUMNS = """\
scalar  serial       1.1  string  attribute
table   disk         1.3  parent=none parents=0 rows=5 min=1
  column  diskNbr        2  unsigned     row
  column  diskStatus     3  enumeration  attribute
  column  diskIndex      4  unsigned     attribute
  column  diskForceTrap  5  string       attribute  set=diskForceTrap_set
table   part         1.4  parent=controller parents=2 rows=6 min=0
  column  partNbr        2  unsigned     row
  column  partStatus     3  enumeration  attribute
  column  partSpeed      4  unsigned     attribute
  column  partForceTrap  5  string       attribute  set=partForceTrap_set
"""

REFRESH = """\
refresh tsDisk disk
  Serial serial
  Status diskStatus
  Index  diskIndex
  Name   diskForceTrap
refresh tsPart part
  Status partStatus
  Speed  partSpeed
  Name   partForceTrap
"""

TRAPS = """\
plain 1 7
notification 200 test test "A test"
  shows serial
notification 202 diskChange disk-status "A \\"disk\\""
  argument "its index"
  shows serial diskNbr
  find bounded-index diskIndex
  fresh instance tsDisk
  judge diskStatus owner=diskNbr verify=diskIndex
  rows diskNbr
  no-index "none"
  missing "gone: %d"
  not-up "down: %d"
component 202 4 part "part"
  find row
  judge partStatus owner=partNbr verify=partNbr
  too-large "large: %d of %d"
  missing "no part %d"
  low partSpeed partStatus "slow"
force diskForceTrap 202 index diskIndex "1 2 3" "disk"
force partForceTrap 202 component 4 index partSpeed "4 5 6"
"""

FACTS_OF_CATALOGUE = r"""
constexpr int32_t plain_table[] = {1, 7};
constexpr int columns_202[] = {COLID_serial, COLID_diskNbr};
constexpr int rows_202[] = {COLID_diskNbr};
constexpr object_rule object_202 = {
    {row_rule::bounded_index, COLID_diskIndex, COLID_diskStatus, COLID_diskNbr, COLID_diskIndex,
     "", "", "gone: %d", ""},
    fresh_rule::instance, "tsDisk", rows_202, false,
    "none", "down: %d"};
    {200, "test", "test", "A test",
     "", columns_200, nullptr},
    {202, "diskChange", "disk-status", "A \"disk\"",
     "its index", columns_202, &object_202},
    {202, 4, "part", "part", "",
     {row_rule::row, -1, COLID_partStatus, COLID_partNbr, COLID_partNbr,
     "", "large: %d of %d", "no part %d", ""},
     {COLID_partSpeed, COLID_partStatus, "slow"},
     {-1, -1, ""}},
    {COLID_diskForceTrap, 202, force_rule::index, 0, COLID_diskIndex, "1 2 3", "disk"},
    {COLID_partForceTrap, 202, force_rule::component, 4, COLID_partSpeed, "4 5 6", ""},
"""

# A line of TRAPS (its beginning), what stands there instead, and the message, which begins with the number of that
# line unless it has one.
WRONG = [
    ("plain", "plain 0", "'0' is no number of at least 1"),
    ("plain", "trap 7", "no such line: 'trap 7'"),
    ("  shows serial", "  shows nothing", "there is no column 'nothing'"),
    ("  shows serial", "  shows " + "serial " * 17, "a notification carries at most 16 variables"),
    ("  shows serial", "", "2: a line 'shows' is needed"),
    ("notification 202", "notification 199 x x x", "'199' is no number of at least 200"),
    ("notification 202", 'notification 200 x x "x"', "number, name or word stand already at line 2"),
    ("notification 202", 'notification 202 x test "x"', "number, name or word stand already at line 2"),
    ("notification 202", "notification 202 x Upper x", "'Upper' is no word for command lines"),
    ("  find bounded", "  find next-index diskIndex", "find must be one of index, bounded-index, controller, row, one-or-two"),
    ("  find bounded", "  find index", "'index' takes a column"),
    ("  find bounded", "  find row diskIndex", "'row' takes no column"),
    ("  find bounded", "  find index partSpeed", "4: the columns belong to different tables"),
    ("  find bounded", "", "4: a find and a judge line are needed"),
    ("  fresh", "  fresh never", "fresh must be one of table, table-first, instance"),
    ("  fresh", "  fresh instance", "no such line here: 'fresh instance'"),
    ("  fresh", "", "4: lines 'fresh' and 'rows' are needed"),
    ("  judge disk", "  judge diskStatus verify=diskIndex owner=diskNbr",
     "expected: judge STATUS owner=COLUMN verify=COLUMN"),
    ("  missing", '  missing "gone"', "the text of 'missing' must hold \"%d\" 1 time(s)"),
    ("  missing", '  missing "gone %d%%"', "the text of 'missing' must hold \"%d\" 1 time(s)"),
    ("  missing", "", "4: a text 'missing' is needed"),
    ("  not-up", "", "14: notification 202 has no components"),
    ("component", "component 200 4 x x", "notification 200 has no components"),
    ("component", "component 202 9 x x", "21: notification 202 has no component 4"),
    ("  low", "  low partSpeed diskStatus slow", "14: the columns belong to different tables"),
    ("  low", "  rows partNbr", "no such line here: 'rows partNbr'"),
    ("force disk", 'force diskForceTrap 202 diagonal "1 2 3"',
     "the rule must be one of row, controller, index, component"),
    ("force disk", 'force diskIndex 202 row "1 2 3"', "columns.def must say set=diskIndex_set"),
    ("force disk", 'force diskForceTrap 203 row "1 2 3"', "there is no notification 203"),
    ("force disk", 'force diskForceTrap 202 row "1 2"', "the line must end with an event id of three numbers"),
    ("force disk", 'force diskForceTrap 202 index diskIndex "1 2 3"',
     "the line must end with an event id of three numbers and the object's name in log lines"),
    ("force disk", "", "columns.def:6: no force line of traps.def tells what a SET of 'diskForceTrap' does"),
]


class TrapsGeneratorTest(generatorCase.FactsCase):
    def lines_of(self, name, text):
        with tempfile.NamedTemporaryFile("w", suffix=name, encoding="utf-8") as file:
            file.write(text)
            file.flush()
            return reader.read_lines(file.name, name)

    def build(self, text):
        mib = model.build(self.lines_of("columns.def", COLUMNS), self.lines_of("refresh.def", REFRESH))
        return traps.build(mib, self.lines_of("traps.def", text))

    def test_makes_the_catalogue(self):
        catalogue = self.build(TRAPS)
        self.assert_in_order(renderTraps.render_catalogue(catalogue), FACTS_OF_CATALOGUE)
        self.assertIn("int diskForceTrap_set(int32_t var_index);\nint partForceTrap_set(",
                      renderTraps.render_handlers_header(catalogue))
        self.assertIn("int partForceTrap_set(int32_t var_index) {\n"
                      "    return force_notification(forced_notifications[1], var_index);\n}",
                      renderTraps.render_handlers(catalogue))

    def test_tells_where_a_line_is_wrong(self):
        def check(text, message):
            with self.assertRaises(reader.DataError) as caught:
                self.build(text)
            self.assertEqual(str(caught.exception), message)

        self.check_wrong("traps.def", TRAPS, WRONG, check)


if __name__ == "__main__":
    unittest.main()
