#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "arraySim/model/incidents.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/presets.h"
#include "tests/sourceFolder.h"

using namespace arraysim;

namespace {

Model Build(const char* preset, uint64_t seed = 1) {
    return BuildPreset(Catalogue::Builtin(), *FindPreset(preset), seed, 64702);
}

Object& At(Model& model, const char* kind, uint32_t index) {
    Object* object = model.Find(*model.catalogue().Find(kind), index);
    if (object == nullptr) {
        throw std::runtime_error(std::string("no ") + kind + " " + std::to_string(index));
    }
    return *object;
}

size_t Count(const Model& model, const char* kind) {
    return model.Count(*model.catalogue().Find(kind));
}

/** Objects for each parent, by the text of the parent's index. */
std::map<std::string, size_t> CountByParent(const Model& model, const Kind& kind) {
    std::map<std::string, size_t> counts;
    for (const Object& object : model.Objects(*kind.list)) {
        ++counts[std::to_string(object.ParentIndex())];
    }
    return counts;
}

TEST(Presets, FullFillsEveryTableExactly) {
    const Model model = Build("full");
    const std::map<std::string, size_t> capacities = {{"TsController", 2},
                                                      {"TsDisk", 2000},
                                                      {"TsEnclosure", 100},
                                                      {"TsDiskFolder", 500},
                                                      {"TsVolume", 2000},
                                                      {"TsServer", 500},
                                                      {"TsControllerCacheCard", 2},
                                                      {"Tessera", 1},
                                                      {"TsUps", 100},
                                                      {"TsObjectCount", 1},
                                                      {"TsDiskFolderStorageUsage", 500},
                                                      {"TsDiskConfiguration", 2000}};
    for (const auto& [kind, capacity] : capacities) {
        EXPECT_EQ(Count(model, kind.c_str()), capacity) << kind;
        EXPECT_EQ(model.catalogue().Find(kind)->list->Capacity(), capacity) << kind;
    }
    struct Children {
        const char* kind;
        size_t parents, each;
    };
    const Children children[] = {{"TsControllerFanSensor", 2, 6},
                                 {"TsControllerPowerSupply", 2, 4},
                                 {"TsControllerVoltageSensor", 2, 10},
                                 {"TsControllerTemperatureSensor", 2, 7},
                                 {"TsAlert", 2, 9000},
                                 {"TsEnclosureCoolingFanSensor", 100, 6},
                                 {"TsEnclosurePowerSupply", 100, 4},
                                 {"TsEnclosureIoModule", 100, 2},
                                 {"TsEnclosureTemperatureSensor", 100, 22},
                                 {"TsEnclosureAudibleAlarm", 100, 1}};
    for (const Children& each : children) {
        const Kind& kind = model.catalogue().KindOf(each.kind);
        EXPECT_EQ(kind.list->Capacity(), each.parents * each.each) << each.kind;
        const std::map<std::string, size_t> counts = CountByParent(model, kind);
        EXPECT_EQ(counts.size(), each.parents) << each.kind;
        for (const auto& [parent, count] : counts) {
            EXPECT_EQ(count, each.each) << each.kind << " of " << parent;
        }
    }
}

TEST(Presets, DependOnSeedAndNothingElse) {
    EXPECT_TRUE(Build("typical", 5) == Build("typical", 5));
    EXPECT_FALSE(Build("typical", 5) == Build("typical", 6));
    // A stable fact of seed 1, so that scenarios keep meaning what they say.
    Model model = Build("typical", 1);
    EXPECT_EQ(At(model, "TsDisk", 12).Text("Name"), "02-08");
}

TEST(Presets, IndexesAreUniqueRiseWithGapsAndDifferFromRows) {
    for (const char* preset : {"small", "typical", "full"}) {
        const Model model = Build(preset);
        for (const ObjectList& list : model.catalogue().lists()) {
            std::set<uint32_t> seen;
            for (const Object& object : model.Objects(list)) {
                EXPECT_TRUE(seen.insert(object.index).second) << list.name << " " << object.index;
                if (object.kind->key) {
                    const std::string& key = object.kind->attributes[*object.kind->key].name();
                    EXPECT_EQ(object.Text(key), std::to_string(object.index)) << list.name;
                }
            }
        }
        EXPECT_NE(model.Objects(*model.catalogue().Find("TsDisk")->list).front().index, 1u);
        EXPECT_GT(model.Objects(*model.catalogue().Find("TsDisk")->list).back().index,
                  Count(model, "TsDisk") + 1);
    }
}

TEST(Presets, MostIsHealthyAndALittleIsNot) {
    for (const char* preset : {"small", "typical"}) {
        const Model model = Build(preset);
        for (const char* kind : {"TsDisk", "TsVolume", "TsServer"}) {
            size_t ailing = 0;
            for (const Object& object : model.Objects(*model.catalogue().Find(kind)->list)) {
                ailing += object.Text("Status") != "Up" ? 1 : 0;
            }
            EXPECT_GT(ailing, 0u) << preset << " " << kind;
            EXPECT_LT(ailing * 4, Count(model, kind) + ailing) << preset << " " << kind;
        }
    }
}

/** Each parent that a child names exists, or the daemon would drop the child. */
TEST(Presets, EveryChildHasItsParent) {
    const Model model = Build("full");
    for (const Kind& kind : model.catalogue().kinds()) {
        if (!kind.parent) {
            continue;
        }
        for (const auto& [parent, count] : CountByParent(model, kind)) {
            EXPECT_NE(model.Find(*model.catalogue().Find(kind.ParentKind()), std::stoul(parent)), nullptr)
                << kind.name << " of " << parent;
        }
    }
}

TEST(Presets, SomeNamesNeedEscapingAndSomeAreNotAscii) {
    for (const char* preset : {"small", "typical"}) {
        const std::string text = WriteModel(Build(preset));
        for (const char* piece : {"&", "<", ">", "\\\"", "'", "ö"}) {
            EXPECT_NE(text.find(piece), std::string::npos) << preset << " " << piece;
        }
    }
}

/** The daemon's own list of what it reads; a reduced object holds that, its keys and no more. */
TEST(Catalogue, ReducedObjectsHoldWhatTheDaemonReads) {
    std::ifstream file(SOURCE_FOLDER "/apiMgmt/snmpSubagent/snmpSubagentMibParser/data/refresh.def");
    ASSERT_TRUE(file);
    std::map<std::string, std::set<std::string>> reads;
    std::string object;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string first, second;
        if (!(words >> first >> second) || first[0] == '#') {
            continue;
        }
        if (first == "refresh") {
            object = second;
        } else {
            reads[object].insert(first);
        }
    }
    ASSERT_EQ(reads.size(), 21u);
    reads["tsDiskFolderStorageUsage"] = {"TotalSpace", "UsedSpace", "AllocatedSpace", "FreeSpace",
                                         "SpareSpace"};
    const std::set<std::string> keys = {"Index", "ControllerIndex", "EnclosureIndex", "DiskIndex"};
    for (const Kind& kind : Catalogue::Builtin().kinds()) {
        std::string name = kind.list->name;
        name[0] = name == "Tessera" ? 'T' : 't';
        ASSERT_EQ(reads.count(name), 1u) << name;
        std::set<std::string> reduced, expected = reads[name];
        for (const Attribute& attribute : kind.attributes) {
            if (attribute.in_reduced) {
                reduced.insert(attribute.name());
            }
            if (keys.count(attribute.name()) > 0) {
                expected.insert(attribute.name());
            }
        }
        EXPECT_EQ(reduced, expected) << kind.name;
    }
}

TEST(Catalogue, MistakesNameTheirLine) {
    struct Case {
        const char *text, *error;
    };
    const Case cases[] = {
        {"object TsUps rows 2\n  also Index index\n  also Index index x",
         "objects.def:3: attribute 'Index' stands already"},
        {"# head\nobject TsUps", "objects.def:2: 'TsUps' needs `rows N` or `in LIST`"},
        {"object TsMoon rows 1", "objects.def:1: the API has no object 'TsMoon'"},
        {"object TsUps rows 1\n  also Colour red", "objects.def:2: TsUps has no attribute 'Colour'"},
        {"object TsUps rows 1\n  also Type Elephant", "objects.def:2: 'Elephant' is no Type"},
        {"object TsUps rows 1\n  also Type APC|Elephant", "objects.def:2: 'Elephant' is no Type"},
        {"object TsUps rows 1\n  also Type row 9", "objects.def:2: Type has no row 9"},
        {"object TsUps rows 1\n  also BatteryLife 5..2",
         "objects.def:2: the range 5..2 ends before it begins"},
        {"object TsUps rows 1\n  use nothing", "objects.def:2: no run 'nothing' stands above"},
        {"values run\n  also Index index\n  also Moon 1\nobject TsUps rows 1\n  use run",
         "objects.def:3: TsUps has no attribute 'Moon'"},
        {"  also X empty", "objects.def:1: no object is open"},
        {"object TsUps rows 1\n  also IpAddress =Name",
         "objects.def:2: TsUps: 'Name' does not stand above IpAddress"},
        {"object TsUps rows 1 keyed Colour", "objects.def:1: TsUps has no attribute 'Colour' to be keyed by"},
        {"object TsUps rows 1\n  own Name 5",
         "objects.def:2: an attribute of the array's own reads: own ATTR LONGEST, and has a new name"},
        {"object TsUps in B", "objects.def:1: no list 'B' stands above"},
        {"object TsUps rows 1 sideways", "objects.def:1: 'sideways' does not fit here"},
        {"object TsUps rows 1\nobject TsUps rows 1", "objects.def:2: 'TsUps' stands already"},
        {"make A", "objects.def:1: unknown word 'make'"},
        {"  event 202 1 2 3 of index",
         "objects.def:1: an event stands once below a list, or an object that is no part of one"},
        {"list TsServer rows 1\nobject TsNearServer in TsServer\n  event 202 1 2 3 of index",
         "objects.def:3: an event stands once below a list, or an object that is no part of one"},
        {"object TsUps rows 1\n  event 202 1 2 of index",
         "objects.def:2: an event reads: event TRAP ID ID ID of A [B [C]] [watches ATTR=GOOD]"},
        {"object TsUps rows 1\n  event 202 1 2 3 of watches X=Y",
         "objects.def:2: an event reads: event TRAP ID ID ID of A [B [C]] [watches ATTR=GOOD]"},
        {"object TsUps rows 1\n  event 202 1 2 3 of 1 2 3 4",
         "objects.def:2: an event reads: event TRAP ID ID ID of A [B [C]] [watches ATTR=GOOD]"},
        {"object TsUps rows 1\n  event 202 1 2 3 of column",
         "objects.def:2: 'column' is no number of an event"},
        {"object TsObjectCount rows 1 keyed nothing\n  event 202 1 2 3 of 1",
         "objects.def:2: TsObjectCount: its event watches 'Status', which it has not"},
        {"object TsUps rows 1\n  event 202 1 2 3 of parent",
         "objects.def:2: TsUps: its event speaks of a parent, which it has not"},
    };
    for (const Case& each : cases) {
        try {
            const Catalogue catalogue(each.text);
            ADD_FAILURE() << "accepted: " << each.text;
        } catch (const CatalogueError& error) {
            EXPECT_STREQ(error.what(), each.error);
        }
    }
}

TEST(ModelFile, DumpAndLoadGiveTheSameModel) {
    for (const char* preset : {"small", "typical"}) {
        Model model = Build(preset);
        At(model, "TsDisk", 12).Put("Notes", "");
        At(model, "TsDisk", 12).RemoveAttribute("DiskClassIndex");
        At(model, "TsDisk", 13).Put("Name", "line\nfeed \"quote\" \\ ö");
        const Model loaded = ReadModel(Catalogue::Builtin(), WriteModel(model));
        EXPECT_TRUE(loaded == model) << preset;
    }
}

TEST(ModelFile, WhatIsNoModelIsRefusedWithAReason) {
    struct Case {
        const char *text, *error;
    };
    const Case cases[] = {
        {"", "parse error"},
        {"[]", "a model is a JSON object"},
        {"{}", "the member \"serial\" is missing"},
        {R"({"serial": -1, "objects": {}})", "\"serial\" is no number"},
        {R"({"serial": 1, "objects": {"TsMoon": []}})", "unknown list \"TsMoon\""},
        {R"({"serial": 1, "objects": {"TsDisk": {}}})", "TsDisk is no JSON array"},
        {R"({"serial": 1, "objects": {"TsDisk": [5]}})", "TsDisk, object 1 is no JSON object"},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Name": "x"}]}})",
         "TsDisk, object 1 needs a number as \"Index\""},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Index": "-1"}]}})", "TsDisk, object 1 needs a number"},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Index": 5}]}})", "\"Index\" that is no text"},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Index": "5"}, {"Index": "5"}]}})",
         "TsDisk, object 2 has the index 5 that stands already"},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Index": "5", "Colour": "red"}]}})",
         "unknown attribute \"Colour\""},
        {R"({"serial": 1, "objects": {"TsServer": [{"Index": "5"}]}})", "the member \"kind\" is missing"},
        {R"({"serial": 1, "objects": {"TsServer": [{"kind": "TsDisk", "Index": "5"}]}})",
         "a kind that is none of"},
    };
    for (const Case& each : cases) {
        try {
            ReadModel(Catalogue::Builtin(), each.text);
            ADD_FAILURE() << "accepted: " << each.text;
        } catch (const ModelFileError& error) {
            EXPECT_NE(std::string(error.what()).find(each.error), std::string::npos) << error.what();
        }
    }
}

TEST(Incidents, AFailingDiskShowsOnEverythingThatHoldsIt) {
    Model model = Build("typical");
    Object& disk = At(model, "TsDisk", 2);
    const Object& enclosure = At(model, "TsEnclosure", 2);
    const Object& folder = At(model, "TsDiskFolder", 3);
    RecoverObject(model, At(model, "TsDisk", 11));
    RecoverObject(model, At(model, "TsEnclosureCoolingFanSensor", 4));
    ASSERT_EQ(enclosure.Text("ChildStatus"), "Up");
    ASSERT_EQ(folder.Text("Status"), "Up");

    const size_t alerts = Count(model, "TsAlert");
    FailObject(model, disk, Condition::kDown);
    EXPECT_EQ(disk.Text("Status"), "Down");
    EXPECT_EQ(disk.Text("Healthy"), "False");
    EXPECT_EQ(disk.Text("StatusMessage"), "Contact with the disk was lost");
    EXPECT_EQ(enclosure.Text("Status"), "Up")
        << "the daemon drops what it hears of the parts of one that is not";
    EXPECT_EQ(enclosure.Text("ChildStatus"), "Down");
    EXPECT_EQ(enclosure.Text("StatusDescription"), "Attention: 1 of its parts not up");
    EXPECT_EQ(folder.Text("UnhealthyCount"), "1");
    EXPECT_EQ(folder.Text("Status"), "Degraded");
    EXPECT_EQ(model.Array()->Text("Status"), "Degraded");
    ASSERT_EQ(Count(model, "TsAlert"), alerts + 1);
    const Object& alert = model.Objects(*model.catalogue().Find("TsAlert")->list).back();
    EXPECT_EQ(alert.Text("Message"), "Disk '02-01' is down");
    EXPECT_EQ(alert.Text("AlertStatus"), "Down");
    EXPECT_EQ(alert.Text("Category"), "Disk");
    EXPECT_EQ(alert.Text("Active"), "True");
    EXPECT_EQ(alert.Text("Acknowledged"), "False");

    RecoverObject(model, disk);
    EXPECT_EQ(disk.Text("Healthy"), "True");
    EXPECT_EQ(disk.Text("StatusMessage"), "");
    EXPECT_EQ(enclosure.Text("ChildStatus"), "Up");
    EXPECT_EQ(enclosure.Text("StatusDescription"), "");
    EXPECT_EQ(folder.Text("UnhealthyCount"), "0");
    EXPECT_EQ(model.Objects(*model.catalogue().Find("TsAlert")->list).back().Text("Active"), "False");
}

TEST(Incidents, AnObjectsOwnFailureOutlastsTheRecoveryOfItsParts) {
    Model model = Build("typical");
    Object& enclosure = At(model, "TsEnclosure", 4);
    Object& fan = At(model, "TsEnclosureCoolingFanSensor", 15);
    ASSERT_EQ(fan.Text("EnclosureIndex"), "4");
    FailObject(model, enclosure, Condition::kDown);
    FailObject(model, fan, Condition::kDegraded);
    EXPECT_EQ(enclosure.Text("Status"), "Down");
    EXPECT_EQ(enclosure.Text("ChildStatus"), "Degraded");
    RecoverObject(model, fan);
    EXPECT_EQ(enclosure.Text("Status"), "Down");
    EXPECT_EQ(enclosure.Text("StatusDescription"), "Both I/O paths are lost");
    FailObject(model, fan, Condition::kDown);
    RecoverObject(model, enclosure);
    EXPECT_EQ(enclosure.Text("Status"), "Up");
    EXPECT_EQ(enclosure.Text("ChildStatus"), "Down");
    EXPECT_EQ(enclosure.Text("StatusDescription"), "Attention: 1 of its parts not up");
}

TEST(Incidents, TheArrayIsDownWithBothControllers) {
    Model model = Build("small");
    FailObject(model, At(model, "TsController", 2), Condition::kDown);
    EXPECT_EQ(model.Array()->Text("Status"), "Degraded");
    FailObject(model, At(model, "TsController", 3), Condition::kDown);
    EXPECT_EQ(model.Array()->Text("Status"), "Down");
    RecoverObject(model, At(model, "TsController", 2));
    EXPECT_EQ(model.Array()->Text("Status"), "Degraded");
}

TEST(Incidents, AFullAlertTableLosesItsOldest) {
    Model model = Build("full");
    const Kind& kind = model.catalogue().KindOf("TsAlert");
    const uint32_t oldest = model.Objects(*kind.list).front().index;
    const std::string controller = std::string(model.Objects(*kind.list).front().Text("ControllerIndex"));
    FailObject(model, At(model, "TsController", std::stoul(controller)), Condition::kDegraded);
    EXPECT_EQ(CountByParent(model, kind)[controller], 9000u);
    EXPECT_EQ(model.Find(*model.catalogue().Find("TsAlert"), oldest), nullptr);
}

}  // namespace
