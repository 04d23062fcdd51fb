#include "arraySim/model/incidents.h"

#include <algorithm>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/conditionTable.h"
#include "arraySim/model/objectMaker.h"

namespace arraysim {

namespace {

// A message that begins so was derived from the parts of the object; any other is the object's own.
constexpr std::string_view kDerivedMark = "Attention: ";

std::string Lower(Condition condition) {
    return ToLower(ConditionText(condition));
}

Condition ConditionOfObject(const Object& object) {
    return ConditionOf(object.Text("Status")).value_or(Condition::kUp);
}

/** Up, then Degraded, then Down. */
Condition Worse(Condition left, Condition right) {
    const auto rank = [](Condition each) {
        return each == Condition::kUp ? 0 : each == Condition::kDegraded ? 1 : 2;
    };
    return rank(left) >= rank(right) ? left : right;
}

void ShowSigns(Object& object, Condition condition) {
    object.Put("Status", ConditionText(condition));
    object.Put("StatusMessage", condition == Condition::kUp
                                    ? ""
                                    : std::string(WordsFor(*object.kind).noun) + " is " + Lower(condition));
    for (const Sign& sign : Signs()) {
        if (sign.kind == object.kind->list->name && sign.condition == condition) {
            object.Put(sign.attribute, sign.value.starts_with('=')
                                           ? std::string(object.Text(sign.value.substr(1)))
                                           : std::string(sign.value));
        }
    }
}

/** The worst condition among some objects, and how many are not up. */
class Survey {
  public:
    void Take(const Object& object) { Take(ConditionOfObject(object)); }

    void Take(Condition condition) {
        worst_ = Worse(worst_, condition);
        ailing_ += condition == Condition::kUp ? 0 : 1;
        ++seen_;
        down_ += condition == Condition::kDown ? 1 : 0;
    }

    Condition worst() const { return worst_; }
    size_t ailing() const { return ailing_; }
    bool AllDown() const { return seen_ > 0 && down_ == seen_; }

  private:
    Condition worst_ = Condition::kUp;
    size_t ailing_ = 0;
    size_t seen_ = 0;
    size_t down_ = 0;
};

std::string MessageAbout(const Survey& parts) {
    return parts.ailing() == 0
               ? ""
               : std::string(kDerivedMark) + std::to_string(parts.ailing()) + " of its parts not up";
}

/** A holder that works itself stays Up: the daemon drops what it hears of the parts of one that is not. */
void ShowParts(Object& holder, const Survey& parts) {
    holder.Put("ChildStatus", ConditionText(parts.worst()));
    if (ConditionOfObject(holder) == Condition::kUp) {
        holder.Put("StatusDescription", MessageAbout(parts));
        holder.Put("NonCriticalCondition", parts.ailing() == 0 ? "False" : "True");
    }
}

/** What consists of its parts is as they are, unless it has a failure of its own. */
void DeriveStatus(Object& whole, const Survey& parts, Condition derived) {
    whole.Put("ChildStatus", ConditionText(parts.worst()));
    const bool own =
        ConditionOfObject(whole) != Condition::kUp && !whole.Text("StatusMessage").starts_with(kDerivedMark);
    if (!own) {
        whole.Put("Status", ConditionText(derived));
        whole.Put("StatusMessage", MessageAbout(parts));
    }
}

Condition DerivedFrom(const Survey& parts) {
    return parts.worst() == Condition::kUp ? Condition::kUp : Condition::kDegraded;
}

/** A controller or an enclosure: everything that names it as its parent. */
void FollowChildren(Model& model, Object& parent) {
    Survey parts;
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

void FollowArray(Model& model) {
    Object* array = model.Array();
    if (array == nullptr) {
        return;
    }
    Survey parts;
    for (const char* kind : {"TsController", "TsEnclosure", "TsDisk", "TsDiskFolder", "TsVolume", "TsUps"}) {
        for (const Object& object : model.Objects(*model.catalogue().KindOf(kind).list)) {
            const Condition of_parts = ConditionOf(object.Text("ChildStatus")).value_or(Condition::kUp);
            parts.Take(Worse(ConditionOfObject(object), of_parts));
        }
    }
    Survey controllers;
    for (const Object& controller : model.Objects(*model.catalogue().KindOf("TsController").list)) {
        controllers.Take(controller);
    }
    DeriveStatus(*array, parts, controllers.AllDown() ? Condition::kDown : DerivedFrom(parts));
}

/** From the inside to the outside: the object's own parts, its parent, its folder, the array. */
void FollowUpwards(Model& model, Object& object) {
    const Catalogue& catalogue = model.catalogue();
    const std::string& name = object.kind->name;
    if (name == "TsController" || name == "TsEnclosure") {
        FollowChildren(model, object);
    } else if (name == "TsDiskFolder") {
        FollowDisks(model, object);
    }
    if (object.kind->parent) {
        if (Object* parent = model.Find(*catalogue.Find(object.kind->ParentKind()), object.ParentIndex())) {
            FollowChildren(model, *parent);
        }
    }
    if (name == "TsDisk") {
        if (Object* folder = model.Find(*catalogue.Find("TsDiskFolder"), object.Number("DiskFolderIndex"))) {
            FollowDisks(model, *folder);
        }
    }
    FollowArray(model);
}

void MakeRoomForAlert(Model& model, const std::string& controller) {
    const ObjectList& list = *model.catalogue().KindOf("TsAlert").list;
    std::vector<Object>& alerts = model.Objects(list);
    const auto of_controller = [&](const Object& alert) {
        return alert.Text("ControllerIndex") == controller;
    };
    if (static_cast<size_t>(std::count_if(alerts.begin(), alerts.end(), of_controller)) >= list.rows) {
        alerts.erase(std::find_if(alerts.begin(), alerts.end(), of_controller));
    }
}

}  // namespace

void FollowDisks(Model& model, Object& folder) {
    Survey disks;
    for (const Object& disk : model.Objects(*model.catalogue().KindOf("TsDisk").list)) {
        if (disk.Number("DiskFolderIndex") == folder.index) {
            disks.Take(disk);
        }
    }
    folder.Put("UnhealthyCount", std::to_string(disks.ailing()));
    DeriveStatus(folder, disks, DerivedFrom(disks));
}

const char* ConditionText(Condition condition) {
    switch (condition) {
        case Condition::kDown:
            return "Down";
        case Condition::kDegraded:
            return "Degraded";
        case Condition::kUp:
            break;
    }
    return "Up";
}

std::optional<Condition> ConditionOf(std::string_view text) {
    for (const Condition condition : {Condition::kUp, Condition::kDown, Condition::kDegraded}) {
        if (CompareNoCase(text, ConditionText(condition)) == 0) {
            return condition;
        }
    }
    return std::nullopt;
}

bool HasCondition(const Kind& kind) {
    return kind.HasAttribute("Status");
}

void PutInto(Model& model, Object& object, Condition condition) {
    ShowSigns(object, condition);
    FollowUpwards(model, object);
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
    return {{"AlertDefinition", std::string(words.noun) + " " + ConditionText(condition)},
            {"AlertStatus", ConditionText(condition)},
            {"Category", std::string(words.category)},
            {"Message", std::string(words.noun) + " '" + name + "' is " + Lower(condition)},
            {"TsObjectName", name},
            {"ControllerIndex", controller},
            {"Active", "True"},
            {"Acknowledged", "False"}};
}

void FailObject(Model& model, Object& object, Condition condition) {
    PutInto(model, object, condition);
    GivenValues values = AlertAbout(model, object);
    const Kind& alert = model.catalogue().KindOf("TsAlert");
    const uint32_t index = model.NextIndex(*alert.list);
    values.emplace_back("CreateTime", DateText(0, index % 86400));
    const Place place = PlaceAtEnd(model, alert, index, values);
    MakeRoomForAlert(model, std::to_string(place.parent_index));
    model.Append(MakeObject(alert, place, Random::For(model.serial(), alert.name, index), values));
}

void RecoverObject(Model& model, Object& object) {
    PutInto(model, object, Condition::kUp);
    const std::string name(object.Text("InstanceName"));
    const std::string_view noun = WordsFor(*object.kind).noun;
    for (Object& alert : model.Objects(*model.catalogue().KindOf("TsAlert").list)) {
        if (alert.Text("TsObjectName") == name && alert.Text("AlertDefinition").starts_with(noun)) {
            alert.Put("Active", "False");
        }
    }
}

}  // namespace arraysim
