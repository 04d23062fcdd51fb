#include "arraySim/model/failures.h"

#include <algorithm>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/objectMaker.h"

namespace arraysim {

namespace {

// Distinguishes messages about the parts of an object from those about the object itself.
constexpr std::string_view kDerivedMark = "Attention: ";

std::string Lower(Condition condition) {
    return ToLower(FormatCondition(condition));
}

Condition ConditionOfObject(const Object& object) {
    return ParseCondition(object.Text("Status")).value_or(Condition::kUp);
}

/** Returns the worse condition; Down is worse than Degraded. */
Condition Worse(Condition left, Condition right) {
    const auto rank = [](Condition each) {
        return each == Condition::kUp ? 0 : each == Condition::kDegraded ? 1 : 2;
    };
    return rank(left) >= rank(right) ? left : right;
}

void ShowCondition(Object& object, Condition condition) {
    object.Put("Status", FormatCondition(condition));
    object.Put("StatusMessage", condition == Condition::kUp
                                    ? ""
                                    : std::string(WordsFor(*object.kind).noun) + " is " + Lower(condition));
    for (const ConditionAttribute& shown : ConditionAttributes()) {
        if (shown.list == object.kind->list->name && shown.condition == condition) {
            object.Put(shown.attribute, shown.value.starts_with('=')
                                            ? std::string(object.Text(shown.value.substr(1)))
                                            : std::string(shown.value));
        }
    }
}

/** The worst condition among objects, and the number of those that are not Up. */
class ConditionSummary {
  public:
    void Take(const Object& object) { Take(ConditionOfObject(object)); }

    void Take(Condition condition) {
        worst_ = Worse(worst_, condition);
        not_up_ += condition == Condition::kUp ? 0 : 1;
        ++seen_;
        down_ += condition == Condition::kDown ? 1 : 0;
    }

    Condition worst() const { return worst_; }
    size_t not_up() const { return not_up_; }
    bool AllDown() const { return seen_ > 0 && down_ == seen_; }

  private:
    Condition worst_ = Condition::kUp;
    size_t not_up_ = 0;
    size_t seen_ = 0;
    size_t down_ = 0;
};

std::string MessageAbout(const ConditionSummary& parts) {
    return parts.not_up() == 0
               ? ""
               : std::string(kDerivedMark) + std::to_string(parts.not_up()) + " of its parts are not Up";
}

/** Leaves the holder Up, because the daemon drops events about the parts of one that is not Up. */
void ShowParts(Object& holder, const ConditionSummary& parts) {
    holder.Put("ChildStatus", FormatCondition(parts.worst()));
    if (ConditionOfObject(holder) == Condition::kUp) {
        holder.Put("StatusDescription", MessageAbout(parts));
        holder.Put("NonCriticalCondition", parts.not_up() == 0 ? "False" : "True");
    }
}

/** Derives the condition of a folder or the array from its parts, unless it has failed itself. */
void DeriveStatus(Object& whole, const ConditionSummary& parts, Condition derived) {
    whole.Put("ChildStatus", FormatCondition(parts.worst()));
    const bool own =
        ConditionOfObject(whole) != Condition::kUp && !whole.Text("StatusMessage").starts_with(kDerivedMark);
    if (!own) {
        whole.Put("Status", FormatCondition(derived));
        whole.Put("StatusMessage", MessageAbout(parts));
    }
}

Condition DerivedFrom(const ConditionSummary& parts) {
    return parts.worst() == Condition::kUp ? Condition::kUp : Condition::kDegraded;
}

/** Updates a controller or enclosure from the objects that name it as their parent. */
void UpdateFromChildren(Model& model, Object& parent) {
    ConditionSummary parts;
    for (const Kind& kind : model.catalogue().kinds()) {
        if (kind.ParentKind() != parent.kind->name || !HasCondition(kind)) {
            continue;
        }
        for (const Object& child : model.Objects(*kind.list)) {
            if (child.ParentIndex() == parent.index) {
                parts.Take(child);
            }
        }
    }
    ShowParts(parent, parts);
}

void UpdateArray(Model& model) {
    Object* array = model.Array();
    if (array == nullptr) {
        return;
    }
    ConditionSummary parts;
    for (const char* kind : {"TsController", "TsEnclosure", "TsDisk", "TsDiskFolder", "TsVolume", "TsUps"}) {
        for (const Object& object : model.Objects(*model.catalogue().KindOf(kind).list)) {
            const Condition of_parts = ParseCondition(object.Text("ChildStatus")).value_or(Condition::kUp);
            parts.Take(Worse(ConditionOfObject(object), of_parts));
        }
    }
    ConditionSummary controllers;
    for (const Object& controller : model.Objects(*model.catalogue().KindOf("TsController").list)) {
        controllers.Take(controller);
    }
    DeriveStatus(*array, parts, controllers.AllDown() ? Condition::kDown : DerivedFrom(parts));
}

/** Updates the object from its own parts, then its parent, its folder and the array. */
void UpdateHolders(Model& model, Object& object) {
    const Catalogue& catalogue = model.catalogue();
    const std::string& name = object.kind->name;
    if (name == "TsController" || name == "TsEnclosure") {
        UpdateFromChildren(model, object);
    } else if (name == "TsDiskFolder") {
        UpdateFromDisks(model, object);
    }
    if (object.kind->parent) {
        if (Object* parent = model.Find(*catalogue.Find(object.kind->ParentKind()), object.ParentIndex())) {
            UpdateFromChildren(model, *parent);
        }
    }
    if (name == "TsDisk") {
        if (Object* folder = model.Find(*catalogue.Find("TsDiskFolder"), object.Number("DiskFolderIndex"))) {
            UpdateFromDisks(model, *folder);
        }
    }
    UpdateArray(model);
}

void MakeRoomForAlert(Model& model, const std::string& controller) {
    const ObjectList& list = *model.catalogue().KindOf("TsAlert").list;
    std::vector<Object>& alerts = model.Objects(list);
    const auto of_controller = [&](const Object& alert) {
        return alert.Text("ControllerIndex") == controller;
    };
    if (static_cast<size_t>(std::count_if(alerts.begin(), alerts.end(), of_controller)) >= list.table->rows) {
        alerts.erase(std::find_if(alerts.begin(), alerts.end(), of_controller));
    }
}

}  // namespace

void UpdateFromDisks(Model& model, Object& folder) {
    ConditionSummary disks;
    for (const Object& disk : model.Objects(*model.catalogue().KindOf("TsDisk").list)) {
        if (disk.Number("DiskFolderIndex") == folder.index) {
            disks.Take(disk);
        }
    }
    folder.Put("UnhealthyCount", std::to_string(disks.not_up()));
    DeriveStatus(folder, disks, DerivedFrom(disks));
}

void SetCondition(Model& model, Object& object, Condition condition) {
    ShowCondition(object, condition);
    UpdateHolders(model, object);
}

GivenValues AlertAbout(const Model& model, const Object& object) {
    const AlertWords& words = WordsFor(*object.kind);
    const Condition condition = ConditionOfObject(object);
    const std::string name(object.Text("InstanceName"));
    const std::vector<Object>& controllers = model.Objects(*model.catalogue().KindOf("TsController").list);
    std::string controller(object.Text("ControllerIndex"));
    if (object.kind->name == "TsController") {
        controller = std::to_string(object.index);
    } else if (controller.empty() && !controllers.empty()) {
        controller = std::to_string(controllers.front().index);
    }
    return {{"AlertDefinition", std::string(words.noun) + " " + FormatCondition(condition)},
            {"AlertStatus", FormatCondition(condition)},
            {"Category", std::string(words.category)},
            {"Message", std::string(words.noun) + " '" + name + "' is " + Lower(condition)},
            {"TsObjectName", name},
            {"ControllerIndex", controller},
            {"Active", "True"},
            {"Acknowledged", "False"}};
}

void FailObject(Model& model, Object& object, Condition condition) {
    SetCondition(model, object, condition);
    GivenValues values = AlertAbout(model, object);
    const Kind& alert = model.catalogue().KindOf("TsAlert");
    const uint32_t index = model.NextIndex(*alert.list);
    values.emplace_back("CreateTime", FormatDate(0, index % 86400));
    const Place place = PlaceAtEnd(model, alert, index, values);
    MakeRoomForAlert(model, std::to_string(place.parent_index));
    model.Append(MakeObject(alert, place, Random::For(model.serial(), alert.name, index), values));
}

void RecoverObject(Model& model, Object& object) {
    SetCondition(model, object, Condition::kUp);
    const std::string name(object.Text("InstanceName"));
    const std::string_view noun = WordsFor(*object.kind).noun;
    for (Object& alert : model.Objects(*model.catalogue().KindOf("TsAlert").list)) {
        if (alert.Text("TsObjectName") == name && alert.Text("AlertDefinition").starts_with(noun)) {
            alert.Put("Active", "False");
        }
    }
}

}  // namespace arraysim
