#include <cstdlib>
#include <iterator>
#include <string>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/folderDisks.h"
#include "arraySim/model/incidents.h"
#include "arraySim/model/objectMaker.h"
#include "arraySim/model/presetTables.h"
#include "arraySim/model/presets.h"

namespace arraysim {

namespace {

/** API indexes that rise with gaps, so that an index is never the row by chance. */
class IndexSequence {
  public:
    explicit IndexSequence(Random random) : random_(random) {}

    uint32_t Next() {
        last_ += random_.Below(6) == 0 ? 2 + static_cast<uint32_t>(random_.Below(3)) : 1;
        return last_;
    }

  private:
    Random random_;
    uint32_t last_ = 1;
};

class PresetBuilder {
  public:
    PresetBuilder(const Catalogue& catalogue, const Preset& preset, uint64_t seed, uint32_t serial)
        : catalogue_(catalogue), preset_(preset), seed_(seed), model_(catalogue, serial) {}

    Model Build() {
        AddUnderNothing("Tessera", 1);
        AddUnderNothing("TsController", preset_.controllers);
        AddControllerParts();
        AddUnderNothing("TsEnclosure", preset_.enclosures);
        AddEnclosureParts();
        AddFolders();
        AddDisks();
        AddDiskConfigurations();
        AddFolderUsages();
        AddUnderNothing("TsVolume", preset_.volumes);
        AddServers();
        AddUnderNothing("TsUps", preset_.ups);
        AddUnderNothing("TsObjectCount", 1);
        GiveAwkwardNames();
        AddAlerts();
        model_.UpdateCounts();
        return std::move(model_);
    }

  private:
    std::vector<Object>& Objects(const char* kind) { return model_.Objects(*catalogue_.Find(kind)->list); }

    IndexSequence IndexesFor(const std::string& kind) {
        return IndexSequence(Random::For(seed_, "index of " + kind, 0));
    }

    Place PlaceOf(uint32_t index, uint32_t row) const {
        Place place;
        place.index = index;
        place.row = row;
        place.serial = model_.serial();
        place.array_name = preset_.array_name;
        return place;
    }

    Object& Add(const Kind& kind, const Place& place, const GivenValues& given = {}) {
        return model_.Append(MakeObject(kind, place, Random::For(seed_, kind.name, place.index), given));
    }

    void AddUnderNothing(const char* name, uint32_t count) {
        const Kind& kind = catalogue_.KindOf(name);
        IndexSequence indexes = IndexesFor(kind.name);
        for (uint32_t row = 1; row <= count; ++row) {
            Add(kind, PlaceOf(kind.key ? indexes.Next() : 1, row));
        }
    }

    /** The same number of children for each parent. */
    void AddUnder(const char* parents, const char* name, uint32_t count) {
        const Kind& kind = catalogue_.KindOf(name);
        IndexSequence indexes = IndexesFor(kind.name);
        uint32_t parent_row = 0;
        for (const Object& parent : Objects(parents)) {
            ++parent_row;
            for (uint32_t row = 1; row <= count; ++row) {
                Place place = PlaceOf(indexes.Next(), row);
                PutUnder(parent, parent_row, place);
                Add(kind, place);
            }
        }
    }

    static void PutUnder(const Object& parent, uint32_t parent_row, Place& place) {
        place.parent_index = parent.index;
        place.parent_row = parent_row;
        place.parent_name = parent.Text("Name");
    }

    void AddControllerParts() {
        AddUnder("TsController", "TsControllerFanSensor", preset_.controller_fans);
        AddUnder("TsController", "TsControllerPowerSupply", preset_.controller_supplies);
        AddUnder("TsController", "TsControllerVoltageSensor", preset_.controller_voltages);
        AddUnder("TsController", "TsControllerTemperatureSensor", preset_.controller_temperatures);
        AddUnder("TsController", "TsControllerCacheCard", 1);
    }

    void AddEnclosureParts() {
        AddUnder("TsEnclosure", "TsEnclosureCoolingFanSensor", preset_.enclosure_fans);
        AddUnder("TsEnclosure", "TsEnclosurePowerSupply", preset_.enclosure_supplies);
        AddUnder("TsEnclosure", "TsEnclosureIoModule", preset_.enclosure_io_modules);
        AddUnder("TsEnclosure", "TsEnclosureTemperatureSensor", preset_.enclosure_temperatures);
        AddUnder("TsEnclosure", "TsEnclosureAudibleAlarm", preset_.enclosure_alarms);
    }

    void AddFolders() {
        const Kind& kind = catalogue_.KindOf("TsDiskFolder");
        for (uint32_t row = 1; row <= preset_.folders; ++row) {
            const bool fixed = row <= std::size(kFolderIndexes);
            Add(kind, PlaceOf(fixed ? kFolderIndexes[row - 1] : 2 * row, row));
        }
    }

    /** Disks fill the enclosures evenly and go to the folders in turn. */
    void AddDisks() {
        const Kind& kind = catalogue_.KindOf("TsDisk");
        IndexSequence indexes = IndexesFor(kind.name);
        const std::vector<Object>& enclosures = Objects("TsEnclosure");
        uint32_t made = 0;
        for (uint32_t e = 0; e < enclosures.size(); ++e) {
            const uint32_t last = preset_.disks * (e + 1) / static_cast<uint32_t>(enclosures.size());
            for (uint32_t row = 1; made < last; ++made, ++row) {
                Place place = PlaceOf(indexes.Next(), row);
                PutUnder(enclosures[e], e + 1, place);
                Add(kind, place, DiskValues(made));
            }
        }
    }

    GivenValues DiskValues(uint32_t number) {
        const std::vector<Object>& folders = Objects("TsDiskFolder");
        const Object& folder = folders[number % folders.size()];
        GivenValues values = {{"DiskFolderIndex", std::to_string(folder.index)},
                              {"DiskFolder", folder.GetInstanceText()}};
        if (number % kDisksPerSpare == kDisksPerSpare - 1) {
            values.insert(values.end(), {{"Spare", "True"}, {"ControlType", "Spare"}});
        }
        return values;
    }

    void AddDiskConfigurations() {
        const Kind& kind = catalogue_.KindOf("TsDiskConfiguration");
        uint32_t row = 0;
        for (const Object& disk : Objects("TsDisk")) {
            const uint32_t enclosure = disk.ParentIndex();
            const Object* holder = model_.Find(*catalogue_.Find("TsEnclosure"), enclosure);
            Add(kind, PlaceOf(disk.index, ++row),
                {{"EnclosureIndex", std::to_string(enclosure)},
                 {"EnclosureName", std::string(holder->Text("Name"))},
                 {"DiskClassIndex", std::string(disk.Text("DiskClassIndex"))}});
        }
    }

    void AddFolderUsages() {
        const Kind& kind = catalogue_.KindOf("TsDiskFolderStorageUsage");
        uint32_t row = 0;
        for (Object& folder : Objects("TsDiskFolder")) {
            const FolderSums sums = SumsOf(model_, folder);
            ShowDiskCounts(folder, sums);
            Random random = Random::For(seed_, "usage", folder.index);
            const int64_t used = sums.total / 100 * random.Between(20, 85);
            const int64_t allocated = used + (sums.total - used) / 100 * random.Between(5, 60);
            Add(kind, PlaceOf(folder.index, ++row),
                {{"TotalSpace", std::to_string(sums.total)},
                 {"UsedSpace", std::to_string(used)},
                 {"AllocatedSpace", std::to_string(allocated)},
                 {"FreeSpace", std::to_string(sums.total - used)},
                 {"SpareSpace", std::to_string(sums.spare)}});
        }
    }

    /** One of each kind first, then mostly physical ones, mixed. */
    void AddServers() {
        const char* const first[] = {"TsPhysicalServer", "TsServerCluster", "TsVirtualServer",
                                     "TsRemoteTessera"};
        const char* const later[] = {"TsPhysicalServer", "TsPhysicalServer", "TsPhysicalServer",
                                     "TsVirtualServer",  "TsVirtualServer",  "TsServerCluster",
                                     "TsRemoteTessera"};
        IndexSequence indexes = IndexesFor("TsServer");
        Random random = Random::For(seed_, "kinds of server", 0);
        for (uint32_t row = 1; row <= preset_.servers; ++row) {
            const char* kind =
                row <= std::size(first) ? first[row - 1] : later[random.Below(std::size(later))];
            Add(catalogue_.KindOf(kind), PlaceOf(indexes.Next(), row));
        }
    }

    void GiveAwkwardNames() {
        for (const char* list : {"TsVolume", "TsServer", "TsDiskFolder", "TsUps"}) {
            uint32_t row = 0;
            for (Object& object : Objects(list)) {
                if (++row % kAwkwardEvery == kAwkwardFirst) {
                    const char* name = kAwkwardNames[(row / kAwkwardEvery) % std::size(kAwkwardNames)];
                    object.Put("Name", std::string(name) + " " + std::to_string(row));
                    object.Put("InstanceName", std::string(object.Text("Name")));
                }
            }
        }
    }

    /** The past first, then what ails the array now; the controllers in turn. */
    void AddAlerts() {
        std::vector<GivenValues> present;
        for (const Ailment& ailment : kAilments) {
            std::vector<Object>& objects = Objects(ailment.list);
            if (objects.size() >= ailment.row) {
                Object& object = objects[ailment.row - 1];
                PutInto(model_, object, ailment.condition);
                present.push_back(AlertAbout(model_, object));
            }
        }
        const std::vector<Object>& controllers = Objects("TsController");
        const Kind& kind = catalogue_.KindOf("TsAlert");
        IndexSequence indexes = IndexesFor(kind.name);
        const size_t count = preset_.controller_alerts * controllers.size();
        for (size_t i = 0; i < count; ++i) {
            const size_t parent = i % controllers.size();
            Place place = PlaceOf(indexes.Next(), static_cast<uint32_t>(i / controllers.size()) + 1);
            PutUnder(controllers[parent], static_cast<uint32_t>(parent) + 1, place);
            const size_t left = count - i;
            GivenValues values =
                left <= present.size() ? present[present.size() - left] : PastAlertValues(place);
            values.emplace_back("ControllerIndex", std::to_string(place.parent_index));
            const auto days = static_cast<int64_t>(left * 400 / count);
            values.emplace_back("CreateTime", DateText(days, static_cast<int64_t>(i) % 86400));
            Add(kind, place, values);
        }
    }

    GivenValues PastAlertValues(const Place& place) const {
        const PastAlert& alert =
            kPastAlerts[Random::For(seed_, "past alert", place.index).Below(std::size(kPastAlerts))];
        return {{"AlertDefinition", alert.definition},
                {"AlertStatus", alert.status},
                {"Category", alert.category},
                {"Message", alert.message},
                {"TsObjectName", std::string(place.array_name)}};
    }

    const Catalogue& catalogue_;
    const Preset& preset_;
    uint64_t seed_;
    Model model_;
};

}  // namespace

Model BuildPreset(const Catalogue& catalogue, const Preset& preset, uint64_t seed, uint32_t serial) {
    return PresetBuilder(catalogue, preset, seed, serial).Build();
}

}  // namespace arraysim
