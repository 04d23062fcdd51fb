#include <gmock/gmock.h>

#include <map>
#include <set>

#include "arraySim/model/failures.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/presets.h"
#include "tests/unit/errorOf.h"

using namespace arraysim;
using testing::HasSubstr;

namespace {

Model Build(const char* preset, uint64_t seed = 1) {
    return BuildPreset(Catalogue::Builtin(), *FindPreset(preset), seed, 64702);
}

/** Returns the number of objects of each parent. */
std::map<uint32_t, size_t> CountByParent(const Model& model, const Kind& kind) {
    std::map<uint32_t, size_t> counts;
    for (const Object& object : model.Objects(*kind.list)) {
        ++counts[object.ParentIndex()];
    }
    return counts;
}

/** The daemon would discard a child without a parent. */
TEST(Presets, FullFillsEveryTableAndEveryChildHasItsParent) {
    const Model model = Build("full");
    for (const ObjectList& list : model.catalogue().lists()) {
        EXPECT_EQ(model.Count({&list, nullptr}), list.table->Capacity()) << list.name;
    }
    for (const Kind& kind : model.catalogue().kinds()) {
        if (!kind.parent) {
            continue;
        }
        for (const auto& [parent, count] : CountByParent(model, kind)) {
            EXPECT_NE(model.Find(*model.catalogue().Find(kind.ParentKind()), parent), nullptr) << kind.name;
            EXPECT_TRUE(kind.list->table->parent == TableParent::kNone || count == kind.list->table->rows)
                << kind.name << " of " << parent;
        }
    }
}

TEST(Presets, DependOnlyOnTheSeedAndHaveUniqueIndexes) {
    EXPECT_TRUE(Build("typical", 5) == Build("typical", 5));
    EXPECT_FALSE(Build("typical", 5) == Build("typical", 6));
    for (const char* preset : {"small", "typical", "full"}) {
        const Model model = Build(preset);
        for (const ObjectList& list : model.catalogue().lists()) {
            std::set<uint32_t> seen;
            for (const Object& object : model.Objects(list)) {
                EXPECT_TRUE(seen.insert(object.index).second) << list.name << " " << object.index;
            }
        }
        // Indexes must differ from row numbers, so that confusing them causes failures.
        const Selection disks = *model.catalogue().Find("TsDisk");
        EXPECT_NE(model.Objects(*disks.list).front().index, 1u);
        EXPECT_GT(model.Objects(*disks.list).back().index, model.Count(disks) + 1);
    }
}

TEST(Presets, AFullAlertTableLosesItsOldestAlert) {
    Model model = Build("full");
    const Kind& kind = model.catalogue().KindOf("TsAlert");
    const Object& front = model.Objects(*kind.list).front();
    const uint32_t oldest = front.index, controller = std::stoul(std::string(front.Text("ControllerIndex")));
    FailObject(model, *model.Find(*model.catalogue().Find("TsController"), controller), Condition::kDegraded);
    EXPECT_EQ(CountByParent(model, kind)[controller], 9000u);
    EXPECT_EQ(model.Find(*model.catalogue().Find("TsAlert"), oldest), nullptr);
}

TEST(Catalogue, ReportsErrorsWithTheirLine) {
    const std::pair<const char*, const char*> rows[] = {
        {"object TsUps\n  Index 1\n  Index 2", "objects.def:3: duplicate attribute 'Index'"},
        {"# head\nobject TsMoon", "objects.def:2: the daemon has no table of 'TsMoon'"},
        {"object TsUps\n  Colour red", "objects.def:2: TsUps has no attribute 'Colour'"},
        {"object TsUps\n  Type Elephant", "objects.def:2: 'Elephant' is not in the enumeration of Type"},
        {"object TsUps\n  BatteryLife 5..2", "objects.def:2: empty range '5..2'"},
        {"object TsUps\n  IpAddress =Name", "objects.def:2: TsUps: 'Name' is not above IpAddress"},
        {"object Tessera\n  Name x", "objects.def:2: Tessera has no attribute 'Contact', which the daemon"},
        {"object TsUps\nobject TsUps", "objects.def:2: duplicate 'TsUps'"},
    };
    for (const auto& [text, message] : rows) {
        EXPECT_THAT(ErrorOf([&, text = text] { const Catalogue catalogue(text); }), HasSubstr(message));
    }
}

TEST(ModelFile, IsReadUnchangedOrRejectedWithAReason) {
    Model model = Build("typical");
    Object& disk = *model.Find(*model.catalogue().Find("TsDisk"), 12);
    disk.Put("Notes", "");
    disk.Put("Name", "line\nfeed \"quote\" \\ ö");
    disk.RemoveAttribute("DiskClassIndex");
    EXPECT_TRUE(ReadModel(Catalogue::Builtin(), WriteModel(model)) == model);

    const std::pair<const char*, const char*> rows[] = {
        {"", "parse error"},
        {"{}", "missing member \"serial\""},
        {R"({"serial": -1, "objects": {}})", "\"serial\" must be a number"},
        {R"({"serial": 1, "objects": {"TsMoon": []}})", "unknown list \"TsMoon\""},
        {R"({"serial": 1, "objects": {"TsDisk": {}}})", "TsDisk: not a JSON array"},
        {R"({"serial": 1, "objects": {"TsDisk": [5]}})", "TsDisk, object 1: not a JSON object"},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Index": "-1"}]}})",
         "TsDisk, object 1: attribute \"Index\" must contain a number"},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Index": "5"}, {"Index": "5"}]}})", "duplicate index 5"},
        {R"({"serial": 1, "objects": {"TsDisk": [{"Index": "5", "Colour": "red"}]}})", "\"Colour\""},
        {R"({"serial": 1, "objects": {"TsServer": [{"Index": "5"}]}})", "missing member \"kind\""},
        {R"({"serial": 1, "objects": {"TsServer": [{"kind": "TsDisk", "Index": "5"}]}})",
         "does not belong to this list"},
    };
    for (const auto& [text, message] : rows) {
        EXPECT_THAT(ErrorOf([&, text = text] { ReadModel(Catalogue::Builtin(), text); }), HasSubstr(message));
    }
}

}  // namespace
