"""data/api: a small catalogue with what is generated from it, wrong lines with their message."""

import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import codegenCase  # noqa: E402

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

# In this order.
FACTS_OF_HEADER = """\
// Generated from data/api/objects/tsLamp.def by codegen. Do not edit.
/** A lamp "over" the rack. */
class APITsLamp : public TSStatusBaseApiObject {
    /** "Colour of the lamp": the ID of a row of gColourEnumIdStrList. */
    void SetColour(int id);
    std::string GetColour() const;
    /** "Hours": an integer from 0 to 9000. */
    void SetHours(int64_t number);
    /** "Name": a string of 1 to 64 bytes without <>&. */
    /** "Bought On": a string. */
    static const ENUMApiAttribute& ColourAttribute();
    static const INTApiAttribute& HoursAttribute();
    /** Changes nothing. Required privilege: Reporter. Required: Filter. */
    class APITsLampGetListMethod : public DESCRIBEDApiMethod<GETLISTApiMethod, APITsLampGetListMethod> {
    class APITsLampModifyMethod : public DESCRIBEDApiMethod<BASEApiMethod, APITsLampModifyMethod> {
        void SetInstanceId(const std::string& id);
        void SetShineTime(const APISpan* value);
        APISpan GetShineTime() const;
        void SetTsSerialNumber(int64_t number);
        static const METHODOBJECTApiAttribute& ShineTimeAttribute();
    using APITsLampTesseraAssociation = NAMEDApiAssociation<APITsLamp, "Tessera">;
    using APITsLampLampListAssociation = NAMEDApiAssociation<APITsLamp, "LampList">;
"""

FACTS_OF_SOURCE = """\
constexpr char kSourceFile[] = "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsLamp";
        &ColourAttribute(), &HoursAttribute(), &NameAttribute(),
        &BoughtAttribute()}, TSStatusBaseApiObject::Attributes()));
    APITsLampSmashMethod::Description();
    APIHistoricalFilter::Attributes();
    APISpan::Attributes();
    static const auto& attribute = *new ENUMApiAttribute(
        "Colour", 12, false, "Colour of the lamp", APIEnumsIDStrList::gColourEnumIdStrList);
    SetEnumId(*this, ColourAttribute(), APIEnumsIDStrList::gColourEnumIdStrList, id);
    static const auto& attribute = *new INTApiAttribute("Hours", 20, false, 0, 9000, "Hours");
void APITsLamp::SetHours(int64_t number) { SetTyped(*this, HoursAttribute(), number); }
int64_t APITsLamp::GetHours() const { return GetTyped(*this, HoursAttribute()); }
    static const auto& attribute = *new STRINGApiAttribute("Name", 20, false, 1, 64, "<>&", "", "Name");
    static const auto& attribute = *new STRINGApiAttribute("Bought", 20, true, -1, -1, "Bought On");
        .required = {"Filter"},
        .attributes = {&GETLISTApiMethod::FilterAttribute()},
        .commandName = "Modify",
        .changesState = true,
        .privilege = USER_PRIVILEGE_VOLUME_MANAGER,
        .required = {"InstanceId", "Colour"},
        .attributes = {&ColourAttribute(), &ShineTimeAttribute(), &TsSerialNumberAttribute()},
    static const auto& attribute = *new METHODOBJECTApiAttribute("ShineTime", 20, false, "Shine Time");
    static const auto& attribute = *new INTApiAttribute("TsSerialNumber", 25, false, 1, -1, "Tessera SN");
        .required = {"InstanceId", "HistoricalFilter"},
        .attributes = {&HistoricalFilterAttribute()},
"""

FACTS_OF_REGISTRATION = """\
const OfObject<APITsLamp> tsLamp("TsLamp");
const OfMethod<APITsLamp::APITsLampGetListMethod> tsLampGetList("APITsLampGetListMethod");
const OfMethod<APITsLamp::APITsLampSmashMethod> tsLampSmash("APITsLampSmashMethod");
const OfMethodObject<APISpan> span("Span");
"""

FACTS_OF_REFERENCE = """\
- [TsLamp](#tslamp): A lamp "over" the rack
## TsLamp
A lamp "over" the rack.
`#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsLamp.h"`
| `GetList` | reads | Reporter | `Filter` |
| `Modify` | changes | VolumeManager | `InstanceId` `Colour` [`ShineTime`] [`TsSerialNumber`] |
Associations: `Tessera`, `LampList`.
| `Name` | Name | a string of 1 to 64 bytes without \\<\\>& |
| `Status` | Status | the ID of a row of gStatusEnumIdStrList |
## Span
| `Ends` | Ends | a date and time |
"""

ENUMERATIONS_HEADER = """\
    // states.def
    static const ENUMRow gStatusEnumIdStrList[2];
    static const ENUMRow gColourEnumIdStrList[1];
    // zones.def
    static const ENUMRow gZoneEnumIdStrList[2];

    /** All enumerations, in the order of the data files. */
    static const ENUMNamedTable gAllEnumTables[3];
"""

ENUMERATIONS_SOURCE = """\
constinit const ENUMRow APIEnumsIDStrList::gStatusEnumIdStrList[2] = {
    {1, "Up", "Up"},
    {4, "NotUp", "not  \\374p \\"1\\" "},
};

constinit const ENUMRow APIEnumsIDStrList::gColourEnumIdStrList[1] = {
    {-1, "Red", "Red"},
};

constinit const ENUMRow APIEnumsIDStrList::gZoneEnumIdStrList[2] = {
    {0, "Etc__GMT", "Etc/GMT"},
    {1, "B", "B"},
};

constinit const ENUMNamedTable APIEnumsIDStrList::gAllEnumTables[3] = {
    {"Status", gStatusEnumIdStrList},
    {"Colour", gColourEnumIdStrList},
    {"Zone", gZoneEnumIdStrList},
};
"""

# A line of a file (its beginning), what it is replaced by, and the message, at the replaced line unless it has its own.
WRONG_LAMP = [
    ("object", "object TsLamp status", 'expected: object NAME status|plain "TEXT"'),
    ("object", 'object TsLamp round "A lamp"', 'expected: object NAME status|plain "TEXT"'),
    ("object", 'object tsLamp status "A lamp"',
     "invalid name 'tsLamp' of an object; use a capital letter, then letters and digits"),
    ("object", 'object TsLamps status "A lamp"', "the file of object 'TsLamps' must be tsLamps.def"),
    ("object", 'object TsLamp status "A l\u00e4mp"', "the text contains a character outside printable ASCII"),
    ("object", 'object TsLamp status "A */ lamp"', "the text must not contain '*/'"),
    ("attribute  Hours", "attribute Hours INT 20", 'expected: attribute NAME KIND WIDTH "LABEL" [RULE...]'),
    ("attribute  Hours", "attribute Ho-urs INT 20 Hours",
     "invalid name 'Ho-urs' of an attribute; use a capital letter, then letters and digits"),
    ("attribute  Hours", "attribute Colour INT 20 Hours", "duplicate attribute 'Colour'; first defined at data/api/objects/tsLamp.def:4"),
    ("attribute  Hours", "attribute Status INT 20 Hours", "duplicate attribute 'Status'; first defined in the base class"),
    ("attribute  Hours", "attribute AttributeList INT 20 Hours",
     "an accessor for 'AttributeList' would hide one of the base class"),
    ("attribute  Hours", "attribute Hours INT 0 Hours", "'0' is not a width from 1 to 200"),
    ("attribute  Hours", "attribute Hours INT 20 Hours minLength=1",
     "unexpected 'minLength=1'; expected min=, max="),
    ("attribute  Hours", "attribute Hours BOOLEAN 20 Hours always",
     "unexpected 'always'; expected nothing"),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=-1", "'-1' of min is not a number of at most 18 digits"),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=1 min=2", "duplicate min="),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=2 max=1", "min is greater than max"),
    ("attribute  Name", "attribute Name STRING 20 Name minLength=2 maxLength=1", "minLength is greater than maxLength"),
    ("attribute  Name", "attribute Name STRING 20 Name minLength=0 maxLength=0",
     "minLength=0 maxLength=0 would disable all checks"),
    ("attribute  Name", "attribute Name STRING 20 Name invalid=", "unexpected 'invalid='; expected minLength=, maxLength=, invalid="),
    ("attribute  Name", 'attribute Name STRING 20 "Name', "cannot split the line into words: No closing quotation"),
    ("attribute  Colour", "attribute Colour ENUM 20 Colour table=Color", "unknown enumeration 'Color'"),
    ("attribute  Colour", "attribute Colour ENUM 20 Colour table=", "unexpected 'table='; expected table="),
    ("attribute  Colour", "attribut Colour ENUM 20 Colour", "unknown line 'attribut Colour ENUM 20 Colour'"),
    ("command  Modify", "command Modify maybe Admin", "expected: command NAME reads|changes PRIVILEGE"),
    ("command  Modify", "command Modify changes Root",
     "the privilege must be one of Admin, VolumeManager, Reporter"),
    ("command  Modify", "command GetList changes Admin", "duplicate command 'GetList'; first defined at data/api/objects/tsLamp.def:8"),
    ("command  Modify", "attribute Late INT 20 Late", "11: unknown line 'needs InstanceId'"),
    ("command  GetList", "command GetList changes Admin", "GetList must be 'reads'"),
    ("command  GetList", "command List reads Admin", "GetList, and no other command, requires 'Filter'"),
    ("  needs  Filter", "  needs  Filter  GETLISTFILTER", "'Filter' must not have a kind"),
    ("  needs  Filter", "", "8: GetList, and no other command, requires 'Filter'"),
    ("  needs  Filter", "  wants  Filter", "expected: needs|takes NAME [KIND [RULE...]]"),
    ("  needs  Colour", "  needs  Colour", "'Colour' requires a kind"),
    ("  needs  Colour", "  needs  Colour  PAINT",
     "unknown kind 'PAINT'; expected one of BOOLEAN, INT, DOUBLE, INTARRAY, STRING, NAME, STRINGARRAY, ENUM, ENUMMASK, "
     "INSTANCEID, OBJECT, OBJECTARRAY, METHODOBJECT, METHODOBJECTARRAY, DATETIME, SIZE, "
     "TEMPERATURE, VERSION, IPV4ADDRESS, IPV6ADDRESS"),
    ("  needs  Colour", "  takes  Colour  ENUM\n  needs  Late  INT",
     "13: 'needs' lines must come before 'takes' lines"),
    ("  takes  TsSerial", "  takes  ShineTime  INT", "duplicate argument 'ShineTime'; first defined at data/api/objects/tsLamp.def:13"),
    ("  takes  TsSerial", "  takes  LiteObj  INT", "an accessor for 'LiteObj' would hide one of the base class"),
    ("  takes  ShineTime", "  takes  ShineTime  METHODOBJECT", "kind METHODOBJECT requires object="),
    ("  takes  ShineTime", "  takes  ShineTime  METHODOBJECT object=Spam", "unknown method object 'Spam'"),
    ("association  Tessera", "association", "expected: association NAME"),
    ("association  Tessera", "association Tessera Lamp", "expected: association NAME"),
    ("association  LampList", "association Tessera", "duplicate association 'Tessera'"),
    ("association  LampList", "attribute Late INT 20 Late", "attributes must come before commands"),
]

WRONG_METHOD_OBJECTS = [
    ("methodObject  Span", "methodObject Span", 'expected: methodObject NAME "TEXT", with attribute lines below it'),
    ("methodObject  Span", 'methodObject HistoricalFilter "Twice"',
     "duplicate method object 'HistoricalFilter'; first defined at data/api/methodObjects.def:1"),
    ("methodObject  Span", 'methodObject TsLamp "A lamp"', "duplicate 'TsLamp'; first defined in data/api/objects/tsLamp.def"),
    ("  attribute  Ends", "", "3: 'Span' has no attributes"),
    ("  attribute  Rule", "attribute Rule ENUM 25 Rule",
     'expected: methodObject NAME "TEXT", with attribute lines below it'),
]

WRONG_ENUMERATIONS = [
    ("enumeration", "table Zone rows=2", "expected: enumeration NAME rows=N"),
    ("enumeration", "enumeration Zone", "expected: enumeration NAME rows=N"),
    ("enumeration", "enumeration Zone rows=0", "expected: enumeration NAME rows=N"),
    ("enumeration", "enumeration Zone rows=3", "'Zone' has 2 rows, not 3"),
    ("enumeration", "enumeration zone rows=2", "invalid name 'zone' of an enumeration"),
    ("enumeration", "enumeration Status rows=2",
     "duplicate enumeration 'Status'; first defined at data/api/enumerations/states.def:3"),
    ("enumeration", "", "2: an indented line must follow one that is not indented"),
    ("  0", "", "1: 'Zone' has 1 rows, not 2"),
    ("  1", "  1", 'expected: VALUE IDENTIFIER ["TEXT"]'),
    ("  1", "  1 Not quite up", 'expected: VALUE IDENTIFIER ["TEXT"]'),
    ("  1", "  one B", "'one' is not a signed 32-bit number"),
    ("  1", "  2147483648 B", "'2147483648' is not a signed 32-bit number"),
    ("  1", "  0 B", "0 must be greater than 0 above"),
    ("  1", "  1 B-2", "invalid name 'B-2' of a row"),
    ("  1", "  1 etc__gmt", "duplicate 'etc__gmt'; first defined at data/api/enumerations/zones.def:2"),
    ("  1", '  1 B "B"', "the text equals the identifier; omit it"),
    ("  1", '  1 B "a\tb"', "the text must be printable and not only spaces"),
    ("  1", '  1 B "\u20ac"', "'\u20ac' contains a character outside ISO-8859-1"),
]


class ApiDataTest(codegenCase.CodegenCase):
    KIND = "api"
    FILES = {"api/objects/tsLamp.def": LAMP, "api/methodObjects.def": METHOD_OBJECTS,
             "api/enumerations/states.def": STATES, "api/enumerations/zones.def": ZONES}

    def test_names_the_place_of_a_mistake(self):
        self.check_wrong("api/objects/tsLamp.def", WRONG_LAMP)
        self.check_wrong("api/methodObjects.def", WRONG_METHOD_OBJECTS)
        self.check_wrong("api/enumerations/zones.def", WRONG_ENUMERATIONS)

    def test_makes_the_classes_and_their_reference(self):
        self.assertEqual(self.run_on(), (0, ""))
        self.assert_in_order("apiTsLamp.h", FACTS_OF_HEADER)
        self.assert_in_order("apiTsLamp.cpp", FACTS_OF_SOURCE)
        self.assert_in_order("catalogueRegistration.cpp", FACTS_OF_REGISTRATION)
        self.assert_in_order("apiReference.md", FACTS_OF_REFERENCE)
        made = "".join(map(self.read, sorted(os.listdir(self.out))))
        self.assertNotIn(self.folder, made)

    def test_makes_the_enumerations(self):
        self.assertEqual(self.run_on(), (0, ""))
        self.assertIn(ENUMERATIONS_HEADER, self.read("apiEnumsIDStrList.h", encoding="ascii"))
        source = self.read("apiEnumsIDStrList.cpp", encoding="ascii")
        self.assertTrue(source.endswith(ENUMERATIONS_SOURCE), source)

    def test_refuses_two_classes_of_one_name(self):
        shade = 'object TsLampShade plain "A shade"\nattribute Name NAME 20 Name\ncommand Get reads Reporter\n'
        lamp = LAMP + "command ShadeGet reads Reporter\n"
        self.assertEqual(self.run_on({"api/objects/tsLampShade.def": shade, "api/objects/tsLamp.def": lamp}),
                         (1, "data/api/objects/tsLampShade.def:3: duplicate class APITsLampShadeGetMethod; first "
                             "defined in data/api/objects/tsLamp.def\n"))

    def test_a_file_without_an_object_is_a_mistake(self):
        self.assertEqual(self.run_on({"api/objects/tsLamp.def": "# nothing\n"}),
                         (1, "data/api/objects/tsLamp.def:1: missing object line\n"))


if __name__ == "__main__":
    unittest.main()
