"""The generator of the objects' classes: a small catalogue with what is made of it, wrong ones with their message."""

import json
import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import generatorCase  # noqa: E402
from apiMgmt.apiStub.apiSdk.objects.tessera.catalogueGenerator import __main__ as program  # noqa: E402

ENUMERATIONS = """\
enumeration Status rows=1
  1 Up
enumeration Colour rows=2
  1 Red
  2 Green
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
// Made from tsLamp.def.
/** A lamp "over" the rack. */
class APITsLamp : public TSStatusBaseApiObject {
    /** "Colour of the lamp": a row of gColourEnumIdStrList, by its id. */
    void SetColour(int id);
    std::string GetColour() const;
    /** "Hours": a number from 0 to 9000. */
    void SetHours(int64_t number);
    /** "Name": a text of 1 to 64 bytes without <>&. */
    /** "Bought On": a text. */
    static const ENUMApiAttribute& ColourAttribute();
    static const INTApiAttribute& HoursAttribute();
    /** Changes nothing. Least privilege: Reporter. Needs Filter. */
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

# Own attributes, commands and associations of each object of the real data.
COUNTS = {
    "Tessera": (33, 44, 112), "TsAlert": (16, 4, 3), "TsController": (41, 6, 9), "TsControllerCacheCard": (14, 2, 2),
    "TsControllerFanSensor": (11, 2, 2), "TsControllerPowerSupply": (6, 2, 2),
    "TsControllerTemperatureSensor": (11, 2, 2), "TsControllerVoltageSensor": (10, 2, 2), "TsDisk": (26, 10, 9),
    "TsDiskConfiguration": (25, 6, 2), "TsDiskFolder": (13, 14, 7), "TsDiskFolderStorageUsage": (7, 2, 2),
    "TsEnclosure": (23, 4, 8), "TsEnclosureAudibleAlarm": (6, 5, 2), "TsEnclosureCoolingFanSensor": (7, 3, 2),
    "TsEnclosureIoModule": (5, 3, 3), "TsEnclosurePowerSupply": (11, 4, 2),
    "TsEnclosureTemperatureSensor": (14, 4, 2), "TsObjectCount": (9, 2, 1), "TsRemoteTessera": (32, 5, 3),
    "TsServer": (28, 8, 8), "TsUps": (9, 5, 1), "TsVolume": (27, 26, 16),
}

FACTS_OF_REFERENCE = """\
- [TsLamp](#tslamp): A lamp "over" the rack
## TsLamp
A lamp "over" the rack.
`#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsLamp.h"`
| `GetList` | reads | Reporter | `Filter` |
| `Modify` | changes | VolumeManager | `InstanceId` `Colour` [`ShineTime`] [`TsSerialNumber`] |
Associations: `Tessera`, `LampList`.
| `Name` | Name | a text of 1 to 64 bytes without \\<\\>& |
| `Status` | Status | a row of gStatusEnumIdStrList, by its id |
## Span
| `Ends` | Ends | a time |
"""

# A line of LAMP or METHOD_OBJECTS (its beginning), what stands there instead, and the message. The line number
# is that of the line replaced, unless the message has one.
WRONG_LAMP = [
    ("object", "object TsLamp status", 'expected: object NAME status|plain "TEXT"'),
    ("object", 'object TsLamp round "A lamp"', 'expected: object NAME status|plain "TEXT"'),
    ("object", 'object tsLamp status "A lamp"',
     "'tsLamp' is no name of an object: a capital letter, then letters and digits"),
    ("object", 'object TsLamps status "A lamp"', "the file of object 'TsLamps' must be tsLamps.def"),
    ("object", 'object TsLamp status "A l\u00e4mp"', "the text holds a character outside printable ASCII"),
    ("object", 'object TsLamp status "A */ lamp"', "the text would end a comment"),
    ("attribute  Hours", "attribute Hours INT 20", 'expected: attribute NAME KIND WIDTH "LABEL" [RULE...]'),
    ("attribute  Hours", "attribute Ho-urs INT 20 Hours",
     "'Ho-urs' is no name of an attribute: a capital letter, then letters and digits"),
    ("attribute  Hours", "attribute Colour INT 20 Hours", "attribute 'Colour' stands already at line 4"),
    ("attribute  Hours", "attribute Status INT 20 Hours", "attribute 'Status' stands already in the base class"),
    ("attribute  Hours", "attribute AttributeList INT 20 Hours",
     "an accessor for 'AttributeList' would hide one of the base"),
    ("attribute  Hours", "attribute Hours INT 0 Hours", "'0' is no width from 1 to 200"),
    ("attribute  Hours", "attribute Hours INT 20 Hours minLength=1",
     "'minLength=1' is no rule here: kind INT takes min=, max="),
    ("attribute  Hours", "attribute Hours BOOLEAN 20 Hours always",
     "'always' is no rule here: kind BOOLEAN takes no rules"),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=-1", "'-1' of min is no number of at most 18 digits"),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=1 min=2", "min stands there twice"),
    ("attribute  Hours", "attribute Hours INT 20 Hours min=2 max=1", "min is greater than max"),
    ("attribute  Name", "attribute Name STRING 20 Name minLength=2 maxLength=1", "minLength is greater than maxLength"),
    ("attribute  Name", "attribute Name STRING 20 Name minLength=0 maxLength=0",
     "lengths of 0 and 0 would turn all checks of the text off"),
    ("attribute  Name", "attribute Name STRING 20 Name invalid=", "invalid is empty"),
    ("attribute  Name", 'attribute Name STRING 20 "Name', "cannot split the line into words: No closing quotation"),
    ("attribute  Colour", "attribute Colour ENUM 20 Colour table=Color", "there is no enumeration 'Color'"),
    ("attribute  Colour", "attribute Colour ENUM 20 Colour table=", "'' is no name of a table"),
    ("attribute  Colour", "attribut Colour ENUM 20 Colour", "no such line: 'attribut Colour ENUM 20 Colour'"),
    ("command  Modify", "command Modify maybe Admin", "expected: command NAME reads|changes PRIVILEGE"),
    ("command  Modify", "command Modify changes Root",
     "the privilege must be one of Admin, VolumeManager, Reporter"),
    ("command  Modify", "command GetList changes Admin", "command 'GetList' stands already at line 8"),
    ("command  Modify", "attribute Late INT 20 Late", "tsLamp.def:11: 'needs' stands below no command"),
    ("command  GetList", "command GetList changes Admin", "GetList changes nothing"),
    ("command  GetList", "command List reads Admin", "GetList, and no other command, needs 'Filter'"),
    ("  needs  Filter", "  needs  Filter  GETLISTFILTER", "'Filter' stands by its name alone"),
    ("  needs  Filter", "", "tsLamp.def:8: GetList, and no other command, needs 'Filter'"),
    ("  needs  Filter", "  wants  Filter", "no such line below a command: 'wants Filter'"),
    ("  needs  Colour", "  needs  Colour", "'Colour' needs a kind"),
    ("  needs  Colour", "  needs  Colour  PAINT",
     "'PAINT' is no kind of attribute: BOOLEAN, INT, DOUBLE, INTARRAY, STRING, NAME, STRINGARRAY, ENUM, ENUMMASK, "
     "INSTANCEID, OBJECT, OBJECTARRAY, METHODOBJECT, METHODOBJECTARRAY, DATETIME, SIZE, "
     "TEMPERATURE, VERSION, IPV4ADDRESS, IPV6ADDRESS"),
    ("  needs  Colour", "  takes  Colour  ENUM\n  needs  Late  INT",
     "tsLamp.def:13: the lines 'needs' come before the lines 'takes'"),
    ("  takes  TsSerial", "  takes  ShineTime  INT", "'ShineTime' stands already at line 13"),
    ("  takes  TsSerial", "  takes  LiteObj  INT", "an accessor for 'LiteObj' would hide one of the base"),
    ("  takes  ShineTime", "  takes  ShineTime  METHODOBJECT", "kind METHODOBJECT needs object="),
    ("  takes  ShineTime", "  takes  ShineTime  METHODOBJECT object=Spam", "there is no method object 'Spam'"),
    ("association  Tessera", "association", "expected: association NAME"),
    ("association  Tessera", "association Tessera Lamp", "expected: association NAME"),
    ("association  LampList", "association Tessera", "association 'Tessera' stands there twice"),
    ("association  LampList", "attribute Late INT 20 Late", "attributes come before commands"),
]

WRONG_METHOD_OBJECTS = [
    ("methodObject  Span", "methodObject Span", 'expected: methodObject NAME "TEXT", and below it attribute lines'),
    ("methodObject  Span", 'methodObject HistoricalFilter "Twice"',
     "method object 'HistoricalFilter' stands already at line 1"),
    ("methodObject  Span", 'methodObject TsLamp "A lamp"', "'TsLamp' stands already in tsLamp.def"),
    ("  attribute  Ends", "", "methodObjects.def:3: 'Span' has no attributes"),
    ("  attribute  Rule", "attribute Rule ENUM 25 Rule",
     'expected: methodObject NAME "TEXT", and below it attribute lines'),
]


class GeneratorTest(generatorCase.GeneratorCase):
    def run_on(self, lamp=LAMP, method_objects=METHOD_OBJECTS):
        self.write("data/enumerations/colours.def", ENUMERATIONS)
        self.write("data/methodObjects.def", method_objects)
        self.write("data/objects/tsLamp.def", lamp)
        return self.run_on_files()

    def run_on_files(self):
        return self.run_program(program, "--data", self.path("data"), "--out", self.path("out"))

    def test_tells_where_an_object_is_wrong(self):
        self.check_wrong_runs("tsLamp.def", LAMP, WRONG_LAMP, lambda text: self.run_on(lamp=text))

    def test_tells_where_method_objects_are_wrong(self):
        self.check_wrong_runs("methodObjects.def", METHOD_OBJECTS, WRONG_METHOD_OBJECTS,
                              lambda text: self.run_on(method_objects=text))

    def test_makes_the_classes(self):
        self.assertEqual(self.run_on(), (0, ""))
        self.assert_in_order(self.read("apiTsLamp.h"), FACTS_OF_HEADER)
        self.assert_in_order(self.read("apiTsLamp.cpp"), FACTS_OF_SOURCE)
        self.assert_in_order(self.read("catalogueRegistration.cpp"), FACTS_OF_REGISTRATION)
        made = "".join(map(self.read, sorted(os.listdir(self.path("out")))))
        self.assertNotIn(self.folder, made)

    def test_makes_the_reference(self):
        self.assertEqual(self.run_on(), (0, ""))
        self.assert_in_order(self.read("apiReference.md"), FACTS_OF_REFERENCE)

    def test_refuses_two_classes_of_one_name(self):
        self.write("data/objects/tsLampShade.def",
                   'object TsLampShade plain "A shade"\nattribute Name NAME 20 Name\ncommand Get reads Reporter\n')
        self.assertEqual(self.run_on(lamp=LAMP + "command ShadeGet reads Reporter\n"),
                         (1, "tsLampShade.def:3: the class APITsLampShadeGetMethod would stand in tsLamp.def as "
                             "well\n"))

    def test_counts_of_the_real_data(self):
        data = os.path.join(generatorCase.ROOT, "apiMgmt/apiStub/apiSdk/objects/tessera/data")
        catalogue = program.read_catalogue(data)
        self.assertEqual({each.name: (len(each.attributes), len(each.commands), len(each.associations))
                          for each in catalogue.objects}, COUNTS)

    def test_empty_and_missing_files(self):
        self.assertEqual(self.run_on(method_objects="\n"),
                         (1, "methodObjects.def:1: the file holds no method object\n"))
        self.assertEqual(self.run_on(lamp="# nothing\n"), (1, "tsLamp.def:1: the file holds no object\n"))
        os.remove(self.path("data/methodObjects.def"))
        self.write("data/objects/tsLamp.def", LAMP)
        status, errors = self.run_on_files()
        self.assertEqual(status, 1)
        self.assertIn("methodObjects.def", errors)

    def test_describes_the_catalogue(self):
        self.assertEqual(self.run_on(), (0, ""))
        lamp, = json.loads(self.read("catalogue.json"))["objects"]
        self.assertEqual([each["name"] for each in lamp["attributes"]],
                         ["Colour", "Hours", "Name", "Bought", "Status", "ChildStatus", "StatusMessage", "TsName",
                          "TsSerialNumber", "InstanceId", "InstanceName", "ObjectType"])
        self.assertEqual(lamp["attributes"][1],
                         {"name": "Hours", "kind": "INT", "label": "Hours", "width": 20, "min": 0, "max": 9000})
        # An argument's label and width: the attribute's of its name, the base's, or the name in words.
        self.assertEqual([(each["name"], each["label"], each["width"], each["needed"])
                          for each in lamp["commands"][1]["arguments"]],
                         [("InstanceId", "Instance ID", 30, True), ("Colour", "Colour of the lamp", 12, True),
                          ("ShineTime", "Shine Time", 20, False), ("TsSerialNumber", "Tessera SN", 25, False)])


if __name__ == "__main__":
    unittest.main()
