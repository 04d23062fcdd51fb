"""Errors in data/api and their messages, in a small catalogue."""

import unittest

import codegenCase

STATES = """\
# States.

enumeration Status rows=2
  1  Up
  4  NotUp  "not  \u00fcp \\"1\\" "  # a comment
enumeration Colour rows=1
  -1  Red
"""

ZONES = """\
enumeration Zone rows=2
  0  Etc__GMT  "Etc/GMT"
  1  B
"""

LAMP = """\
# A comment, and an empty line.

object  TsLamp  status  "A lamp \\"over\\" the rack"
attribute  Colour  ENUM    12  "Colour of the lamp"  table=Colour
attribute  Hours   INT     20  "Hours"               min=0 max=9000
attribute  Name    STRING  20  "Name"                minLength=1 maxLength=64 invalid="<>&"
attribute  Bought  STRING  20  "Bought On"           flagged
command  GetList  reads  Reporter
  needs  Filter
command  Modify  changes  VolumeManager
  needs  InstanceId
  needs  Colour  ENUM  table=Colour
  takes  ShineTime  METHODOBJECT  object=Span
  takes  TsSerialNumber  INT  min=1
command  Smash  changes  Admin
  needs  InstanceId
  needs  HistoricalFilter
association  Tessera
association  LampList
"""

METHOD_OBJECTS = """\
methodObject  HistoricalFilter  "A span of time"
  attribute  Rule  ENUM  25  "Rule"
methodObject  Span  "Hours of the day"
  attribute  Ends  DATETIME  25  "Ends"
"""

# The beginning of a line, its replacement, and the message, for the replaced line unless it names another one.
WRONG_LAMP = [
    ("object", 'object tsLamp status "A lamp"',
     "invalid name 'tsLamp' of an object; use a capital letter, then letters and digits"),
    ("object", 'object TsLamps status "A lamp"', "the file of object 'TsLamps' must be tsLamps.def"),
    ("object", 'object TsLamp status "A l\u00e4mp"', "the text contains a character outside printable ASCII"),
    ("object", 'object TsLamp status "A */ lamp"', "the text must not contain '*/'"),
    ("attribute  Hours", "attribute AttributeList INT 20 Hours",
     "an accessor for 'AttributeList' would hide one of the base class"),
    ("attribute  Hours", "attribute Hours INT 0 Hours", "'0' is not a width from 1 to 200"),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=-1", "'-1' of min is not a number of at most 18 digits"),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=1 min=2", "duplicate min="),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=2 max=1", "min is greater than max"),
    ("attribute  Name", "attribute Name STRING 20 Name minLength=0 maxLength=0",
     "minLength=0 maxLength=0 would disable all checks"),
    ("command  Modify", "attribute Late INT 20 Late", "11: unknown line 'needs InstanceId'"),
    ("command  GetList", "command GetList changes Admin", "GetList must be 'reads'"),
    ("  needs  Filter", "  needs  Filter  GETLISTFILTER", "'Filter' must not have a kind"),
    ("  needs  Filter", "", "8: GetList, and no other command, requires 'Filter'"),
    ("  needs  Colour", "  needs  Colour", "'Colour' requires a kind"),
    ("  needs  Colour", "  takes  Colour  ENUM\n  needs  Late  INT",
     "13: 'needs' lines must come before 'takes' lines"),
    ("association  LampList", "attribute Late INT 20 Late", "attributes must come before commands"),
]

WRONG_METHOD_OBJECTS = [
    ("  attribute  Ends", "", "3: 'Span' has no attributes"),
    ("  attribute  Rule", "attribute Rule ENUM 25 Rule",
     'expected: methodObject NAME "TEXT", with attribute lines below it'),
]

WRONG_ENUMERATIONS = [
    ("enumeration", "enumeration Zone rows=3", "'Zone' has 2 rows, not 3"),
    ("  1", "  2147483648 B", "'2147483648' is not a signed 32-bit number"),
    ("  1", "  0 B", "0 must be greater than 0 above"),
    ("  1", "  1 etc__gmt", "duplicate 'etc__gmt'; first defined at data/api/enumerations/zones.def:2"),
    ("  1", '  1 B "B"', "the text equals the identifier; omit it"),
    ("  1", '  1 B "\u20ac"', "'\u20ac' contains a character outside ISO-8859-1"),
]


class ApiDataTest(codegenCase.CodegenCase):
    KIND = "api"
    FILES = {"api/objects/tsLamp.def": LAMP, "api/methodObjects.def": METHOD_OBJECTS,
             "api/enumerations/states.def": STATES, "api/enumerations/zones.def": ZONES}

    def test_errors_are_reported_with_their_line(self):
        self.check_wrong("api/objects/tsLamp.def", WRONG_LAMP)
        self.check_wrong("api/methodObjects.def", WRONG_METHOD_OBJECTS)
        self.check_wrong("api/enumerations/zones.def", WRONG_ENUMERATIONS)

    def test_rejects_a_file_without_an_object(self):
        self.assertEqual(self.run_on({"api/objects/tsLamp.def": "# nothing\n"}),
                         (1, "data/api/objects/tsLamp.def:1: missing object line\n"))


if __name__ == "__main__":
    unittest.main()
