#include "arraySim/model/presets.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/failures.h"
#include "arraySim/model/folderDisks.h"
#include "arraySim/model/objectMaker.h"

namespace arraysim {

namespace {

constexpr Preset kPresets[] = {
    {"small", "tessera-lab", 0}, {"typical", "tessera-north", 1}, {"full", "tessera-max", 2}};
constexpr size_t kFull = 2;

/** The number of objects, per parent if the daemon's table has parents. `full` needs no column: it fills the
    table. */
struct Size {
    std::string_view list;
    uint32_t count[kFull];
};
constexpr Size kSizes[] = {
    {"TsController", {2, 2}},
    {"TsControllerFanSensor", {3, 6}},
    {"TsControllerPowerSupply", {2, 2}},
    {"TsControllerVoltageSensor", {3, 8}},
    {"TsControllerTemperatureSensor", {2, 5}},
    {"TsAlert", {5, 150}},
    {"TsEnclosure", {1, 5}},
    {"TsEnclosureCoolingFanSensor", {3, 4}},
    {"TsEnclosurePowerSupply", {2, 2}},
    {"TsEnclosureIoModule", {2, 2}},
    {"TsEnclosureTemperatureSensor", {3, 6}},
    {"TsEnclosureAudibleAlarm", {1, 1}},
    {"TsDisk", {12, 120}},
    {"TsDiskFolder", {2, 4}},
    {"TsVolume", {6, 150}},
    {"TsServer", {5, 40}},
    {"TsUps", {1, 2}},
};

uint32_t CountFor(const Preset& preset, const ObjectList& list) {
    if (preset.column == kFull) {
        return list.table->rows;
    }
    const auto* size = std::find_if(std::begin(kSizes), std::end(kSizes),
                                    [&](const Size& each) { return each.list == list.name; });
    return size == std::end(kSizes) ? 1 : size->count[preset.column];
}

// Every kAwkwardEvery-th volume, server, folder and UPS has a name that a careless parser misreads.
constexpr uint32_t kAwkwardEvery = 23;
constexpr uint32_t kAwkwardFirst = 2;
constexpr const char* kAwkwardNames[] = {"Größe & Übung", "logs <old> & <new>", "\"quoted\" and 'quoted'",
                                         "北館-R&D", "naïve; façade > Ωmega"};

// Indexes of the first folders of every array. The daemon does not query the usage of 1 and 69696969.
constexpr uint32_t kFolderIndexes[] = {3, 1, 6, 69696969};

constexpr uint32_t kDisksPerSpare = 24;

/** An object that is not Up in every preset that has it. */
struct InitialFailure {
    const char* list;
    size_t row;
    Condition condition;
};
constexpr InitialFailure kInitialFailures[] = {
    {"TsDisk", 7, Condition::kDown},
    {"TsDisk", 40, Condition::kDegraded},
    {"TsControllerFanSensor", 2, Condition::kDegraded},
    {"TsEnclosureCoolingFanSensor", 3, Condition::kDegraded},
    {"TsVolume", 5, Condition::kDegraded},
    {"TsServer", 4, Condition::kDegraded},
    {"TsServer", 17, Condition::kDown},
    {"TsUps", 2, Condition::kDegraded},
};

/** An alert that is no longer active. */
struct PastAlert {
    const char* definition;
    const char* status;
    const char* category;
    const char* message;
};
constexpr PastAlert kPastAlerts[] = {
    {"User logged in", "Inform", "System", "operator logged in from 192.0.2.77"},
    {"Freezepoint created", "Complete", "Storage", "Freezepoint of volume 'vol-0001' was created"},
    {"Disk Degraded", "Degraded", "Disk", "Disk '02-02' predicts its failure"},
    {"Server Degraded", "Degraded", "Connectivity", "Server 'host-001' lost a path & found it again"},
    {"Volume expanded", "Complete", "Storage", "Volume \"vol-0002\" grew by < 100 GB"},
    {"Enclosure fan Down", "Down", "Hardware", "Enclosure fan 'Enclosure 1 Fan 1' is down"},
    {"Free space is low", "Critical", "Storage", "Folder 1 has less than 15 % free space"},
    {"Clock was set", "Inform", "System", "The clock was set back by 2 s"},
};

/** API indexes that ascend with gaps, so that no index equals the row by chance. */
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

    /** Adds parents before their parts, folders before their disks, and disks before everything derived from
        them. Names must be final before alerts quote them. */
    Model Build() {
        for (const char* kind :
             {"Tessera", "TsController", "TsEnclosure", "TsVolume", "TsUps", "TsObjectCount"}) {
            AddWithoutParent(kind);
        }
        AddParts();
        AddFolders();
        AddDisks();
        AddDiskConfigurations();
        AddFolderUsages();
        AddServers();
        GiveAwkwardNames();
        AddAlerts();
        model_.UpdateCounts();
        return std::move(model_);
    }

  private:
    std::vector<Object>& Objects(std::string_view kind) {
        return model_.Objects(*catalogue_.Find(kind)->list);
    }

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

    void AddWithoutParent(const char* name) {
        const Kind& kind = catalogue_.KindOf(name);
        IndexSequence indexes = IndexesFor(kind.name);
        for (uint32_t row = 1; row <= CountFor(preset_, *kind.list); ++row) {
            Add(kind, PlaceOf(kind.key ? indexes.Next() : 1, row));
        }
    }

    /** Adds the same number of children to each parent. */
    void AddUnder(const Kind& kind, uint32_t count) {
        IndexSequence indexes = IndexesFor(kind.name);
        uint32_t parent_row = 0;
        for (const Object& parent : Objects(kind.ParentKind())) {
            ++parent_row;
            for (uint32_t row = 1; row <= count; ++row) {
                Place place = PlaceOf(indexes.Next(), row);
                PlaceUnder(parent, parent_row, place);
                Add(kind, place);
            }
        }
    }

    static void PlaceUnder(const Object& parent, uint32_t parent_row, Place& place) {
        place.parent_index = parent.index;
        place.parent_row = parent_row;
        place.parent_name = parent.Text("Name");
    }

    void AddParts() {
        for (const Kind& kind : catalogue_.kinds()) {
            if (kind.list->table->parent != TableParent::kNone && kind.name != "TsAlert") {
                AddUnder(kind, CountFor(preset_, *kind.list));
            }
        }
        AddUnder(catalogue_.KindOf("TsControllerCacheCard"), 1);  // a table without parents
    }

    void AddFolders() {
        const Kind& kind = catalogue_.KindOf("TsDiskFolder");
        for (uint32_t row = 1; row <= CountFor(preset_, *kind.list); ++row) {
            const bool fixed = row <= std::size(kFolderIndexes);
            Add(kind, PlaceOf(fixed ? kFolderIndexes[row - 1] : 2 * row, row));
        }
    }

    /** Distributes the disks evenly over the enclosures, and in turn over the folders. */
    void AddDisks() {
        const Kind& kind = catalogue_.KindOf("TsDisk");
        IndexSequence indexes = IndexesFor(kind.name);
        const std::vector<Object>& enclosures = Objects("TsEnclosure");
        const uint32_t count = CountFor(preset_, *kind.list);
        uint32_t made = 0;
        for (uint32_t e = 0; e < enclosures.size(); ++e) {
            const uint32_t last = count * (e + 1) / static_cast<uint32_t>(enclosures.size());
            for (uint32_t row = 1; made < last; ++made, ++row) {
                Place place = PlaceOf(indexes.Next(), row);
                PlaceUnder(enclosures[e], e + 1, place);
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

    /** Adds one server of each kind, then a random mixture. */
    void AddServers() {
        const char* const first[] = {"TsPhysicalServer", "TsServerCluster", "TsVirtualServer",
                                     "TsRemoteTessera"};
        const char* const later[] = {"TsPhysicalServer", "TsPhysicalServer", "TsPhysicalServer",
                                     "TsVirtualServer",  "TsVirtualServer",  "TsServerCluster",
                                     "TsRemoteTessera"};
        IndexSequence indexes = IndexesFor("TsServer");
        const uint32_t count = CountFor(preset_, *catalogue_.Find("TsServer")->list);
        Random random = Random::For(seed_, "kinds of server", 0);
        for (uint32_t row = 1; row <= count; ++row) {
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

    /** Adds past alerts, then those about the initial failures, to each controller in turn. */
    void AddAlerts() {
        std::vector<GivenValues> active;
        for (const InitialFailure& failure : kInitialFailures) {
            std::vector<Object>& objects = Objects(failure.list);
            if (objects.size() >= failure.row) {
                Object& object = objects[failure.row - 1];
                SetCondition(model_, object, failure.condition);
                active.push_back(AlertAbout(model_, object));
            }
        }
        const std::vector<Object>& controllers = Objects("TsController");
        const Kind& kind = catalogue_.KindOf("TsAlert");
        IndexSequence indexes = IndexesFor(kind.name);
        const size_t count = CountFor(preset_, *kind.list) * controllers.size();
        for (size_t i = 0; i < count; ++i) {
            const size_t parent = i % controllers.size();
            Place place = PlaceOf(indexes.Next(), static_cast<uint32_t>(i / controllers.size()) + 1);
            PlaceUnder(controllers[parent], static_cast<uint32_t>(parent) + 1, place);
            const size_t left = count - i;
            GivenValues values =
                left <= active.size() ? active[active.size() - left] : PastAlertValues(place);
            values.emplace_back("ControllerIndex", std::to_string(place.parent_index));
            const auto days = static_cast<int64_t>(left * 400 / count);
            values.emplace_back("CreateTime", FormatDate(days, static_cast<int64_t>(i) % 86400));
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

std::span<const Preset> Presets() {
    return kPresets;
}

std::optional<Preset> FindPreset(std::string_view name) {
    for (const Preset& preset : kPresets) {
        if (preset.name == name) {
            return preset;
        }
    }
    return std::nullopt;
}

Model BuildPreset(const Catalogue& catalogue, const Preset& preset, uint64_t seed, uint32_t serial) {
    return PresetBuilder(catalogue, preset, seed, serial).Build();
}

}  // namespace arraysim
