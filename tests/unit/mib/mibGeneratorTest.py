"""The generator of the MIB modules: a small array with what is made of it, wrong descriptions with their message."""

import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import generatorCase  # noqa: E402
from mib.generator import __main__ as program  # noqa: E402

COLUMNS = """\
root R 1.3.6.1.4.1.913.2
scalar  sysServices  1.3.6.1.2.1.1.7  integer  constant 72
scalar  title        R.1  string  constant "A title"
scalar  lastPart     R.2  integer  process lastPart
table   tsCtlr       R.13  parent=none parents=0 rows=2 min=1
  column  ctlrNbr      2  unsigned     row
  column  ctlrStatus   3  enumeration  attribute
table   fan          R.16  parent=controller parents=2 rows=6 min=0
  column  fanNbr       2  unsigned     row
  column  fanState     3  enumeration  attribute
  column  fanRpm       5  unsigned     attribute
  column  fanForceTrap 6  string       attribute  set=fanForceTrap_set
"""

REFRESH = """\
refresh tsController tsCtlr
  Status  ctlrStatus  tsstatus_enum
refresh tsFan fan
  Status  fanState  tsstatus_enum
  Rpm     fanRpm
  Name    fanForceTrap  force_trap
"""

TRAPS = """\
notification 204 partChange part "A part has changed."
  shows title ctlrStatus
  find row
  fresh table
  judge ctlrStatus owner=ctlrNbr verify=ctlrNbr
  rows ctlrNbr
  missing "missing: %d"
  not-up "not up: %d"
component 204 1 slow-fan "slow fan"
  find row
  judge fanState owner=fanNbr verify=fanNbr
  missing "missing: %d"
  unhealthy "Replace it."
force fanForceTrap 204 component 1 "1 2 3"
"""

DESCRIPTIONS = """\
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

convention Words hint=255t
  "Words."
convention State from=tsstatus_enum api=Status
  "A state."
  value -1 unknown "none of these"
  value 1 up "works" text=Up
  value 2 down "does not" text=Down
convention Part components=none
  "A kind of part."

scalar sysServices
  "Of the system group."
scalar title
  "A title"
  "in two pieces."
scalar lastPart syntax=Part
  "The last."
table tsCtlr refreshed=seconds object=controller
  "The controllers."
column ctlrNbr
  "A number."
column ctlrStatus syntax=State
  "A status."
table fan refreshed=minutes object=fan identity=fanRpm
  "The fans."
column fanNbr
  "A number."
column fanState syntax=State
  "A state."
column fanRpm units="RPM"
  "A speed."
column fanForceTrap
  "Forces."
notification partChange
  "Look at it."
"""

# In this order.
FACTS = """\
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
    SYNTAX      Part
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
    fanState      State,
    fanRpm        Unsigned32,
    fanForceTrap  Words
}
fanRow OBJECT-TYPE
    SYNTAX      Unsigned32 (1..6)
    MAX-ACCESS  not-accessible
    ::= { fanEntry 1 }
        "A state."
fanRpm OBJECT-TYPE
    UNITS       "RPM"
    MAX-ACCESS  read-only
    ::= { fanEntry 5 }
fanForceTrap OBJECT-TYPE
    MAX-ACCESS  read-write
partChange NOTIFICATION-TYPE
    OBJECTS     { title, ctlrStatus }
        "A part has changed. Look at it.
         - slow fan: 'Replace it.'
    ::= { tesseraNotifications 204 }
    OBJECTS     { title }
    OBJECTS     { lastPart }
    OBJECTS     { fanNbr, fanState, fanRpm, fanForceTrap }
    ::= { tesseraGroups 16 }
    ::= { tesseraCompliances 1 }
"""

# A line of DESCRIPTIONS (its beginning), what stands there instead, and the message, at the line replaced unless the
# message has a place of its own.
WRONG = [
    ("scalar title", "scalar titel", "there is no column 'titel'"),
    ("scalar title", "column title", "'title' is a scalar"),
    ("column fanRpm", "column fanRpm unit=RPM", "'unit=RPM' stands where only syntax=, units= may stand"),
    ("column fanRpm", "column fanNbr", "'fanNbr' is described already at a.def:44"),
    ("column fanRpm", "column fanRpm syntax=State", "'State' does not fit a column of type unsigned"),
    ("column fanRpm", "column fanRpm syntax=Stat", "there is no convention 'Stat'"),
    ("column fanRpm", 'column fanRpm units="\u00b0C"',
     "a text of the MIB has printable ASCII characters only, and no double quotes"),
    ('  "A speed."', "", "a.def:48: nothing is said about column 'fanRpm'"),
    ('  "A speed."', '  "A \\"speed\\"."', "a text of the MIB has printable ASCII characters only, and no double quotes"),
    ('  "A speed."', "  A speed.", "no such line here: 'A speed.'"),
    ("column fanState", "column fanState", "column 'fanState' is an enumeration and needs syntax="),
    ("column fanState", "column fanState syntax=Part",
     "column 'fanState' gets its numbers as State: syntax= must say so"),
    ("scalar lastPart", "scalar lastPart syntax=State",
     "column 'lastPart' does not get its numbers from 'tsstatus_enum'"),
    ("table fan", "table fan refreshed=daily object=fan",
     "refreshed= must be one of seconds, minutes, or the table that this one follows"),
    ("table fan", "table fan refreshed=seconds", "object= is needed: what one row is"),
    ("table fan", "table fan refreshed=seconds object=fan identity=fanName", "there is no column 'fanName'"),
    ("notification partChange", "notification partsChange", "there is no notification 'partsChange'"),
    ("  value 1 up", '  value 1 up "works"',
     "a.def:21: with from= exactly one value has no text=: that of all other texts"),
    ("  value 2 down", '  value 1 down "does not" text=Down', "1 does not come after 1"),
    ("  value 2 down", '  value 2 up "does not" text=Down', "'up' stands there twice"),
    ("  value 2 down", '  value 2 Down "does not" text=Down', "'Down' is no name of a value"),
    ("convention State", "convention State from=other_enum",
     "no line of refresh.def has the post-process 'other_enum'"),
    ("convention Part", "convention Part", "a convention has either hint= or values"),
    ("node smallEvents", "node smallEvents nowhere 251", "there is no node 'nowhere' above this line"),
    ("node smallEvents", "node smallEvent smallMIB 251", "a.def:1: there is no node 'smallEvents'"),
    ("node smallObjects", "node smallObjects makers 3",
     "a.def:1: there is no node at 1.3.6.1.4.1.913.2, where the tables are"),
    ("node makers", "node maker enterprises 913", "a.def:9: there is no node 'makers' above this line"),
    ("older SMALL", "older small oldSmall 27405", "'small' is no name of a module"),
    ("contact", "", "the descriptions have no line 'contact'"),
]


class GeneratorTest(generatorCase.GeneratorCase):
    def run_on(self, descriptions, columns=COLUMNS, traps=TRAPS):
        for name, text in (("columns.def", columns), ("refresh.def", REFRESH), ("traps.def", traps),
                           ("descriptions/a.def", descriptions)):
            self.write("data/" + name, text)
        return self.run_program(program, "--data", self.path("data"), "--out", self.path("out"))

    def test_makes_the_module(self):
        self.assertEqual(self.run_on(DESCRIPTIONS), (0, ""))
        text = self.read("SMALL-MIB.txt")
        self.assert_in_order(text, FACTS)
        self.assertNotIn("sysServices", text)
        self.assertIn("sysServices", self.read("mib-reference.md"))
        self.assertIn("::= { enterprises 27405 }\n", self.read("SMALL-OLD-MIB.txt"))

    def test_tells_where_descriptions_are_wrong(self):
        self.check_wrong_runs("a.def", DESCRIPTIONS, WRONG, self.run_on)

    def test_nothing_is_left_without_a_description(self):
        table = "table late R.50 parent=none parents=0 rows=1 min=0\n  column lateNbr 2 unsigned computed\n"
        for columns, descriptions, message in (
                ("scalar late R.50 string constant x\n", "", "columns.def:13: nothing is said about column 'late'\n"),
                (table, "", "columns.def:14: nothing is said about column 'lateNbr'\n"),
                (table, 'column lateNbr\n  "x"\n', "columns.def:13: nothing is said about table 'late'\n")):
            self.assertEqual(self.run_on(DESCRIPTIONS + descriptions, columns=COLUMNS + columns), (1, message))
        more = 'notification 205 lateChange late "x"\n  shows title\n'
        self.assertEqual(self.run_on(DESCRIPTIONS, traps=TRAPS + more),
                         (1, "traps.def:15: nothing is said about notification 'lateChange'\n"))

    def test_two_things_cannot_have_one_name(self):
        columns = COLUMNS.replace("title ", "fanTable ")
        traps = TRAPS.replace("title", "fanTable")
        descriptions = DESCRIPTIONS.replace("scalar title", "scalar fanTable")
        self.assertEqual(self.run_on(descriptions, columns, traps),
                         (1, "columns.def:3: the name 'fanTable' is in use already, see columns.def:8\n"))


if __name__ == "__main__":
    unittest.main()
