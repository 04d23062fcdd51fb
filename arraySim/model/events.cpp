#include "arraySim/model/events.h"

#include <algorithm>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/conditions.h"

namespace arraysim {

namespace {

constexpr int32_t kMiscTrap = 201;
constexpr int32_t kScsiDeviceTrap = 213;
constexpr int32_t kChanged = 0;
constexpr int32_t kCleared = 5;

constexpr std::string_view kTextMark = "@@@";

/** The eight numbers of a trap command. */
struct EventNumbers {
    int32_t id[3] = {};
    int32_t trap = 0;
    int64_t arguments[3] = {};
    int32_t state = kChanged;
};

/** Returns a command: one line, truncated to kMaximumTrapCommand bytes, but not within a character. */
std::string EventLine(const EventNumbers& numbers, const std::string& prefix, std::string_view text) {
    std::string line = FormatString("%d %d %d %d %lld %lld %lld %d ", numbers.id[0], numbers.id[1],
                                    numbers.id[2], numbers.trap, static_cast<long long>(numbers.arguments[0]),
                                    static_cast<long long>(numbers.arguments[1]),
                                    static_cast<long long>(numbers.arguments[2]), numbers.state);
    line += prefix;
    line += kTextMark;
    line += text;
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < 32 || c == 127; }, ' ');
    size_t end = std::min(line.size(), kMaximumTrapCommand);
    while (end < line.size() && (line[end] & 0xC0) == 0x80) {
        --end;
    }
    line.resize(end);
    return line;
}

/** The place of an object in the daemon's tables. */
struct TableRow {
    const Object* object = nullptr;
    uint32_t row = 0;
    uint32_t parent_index = 0;
    uint32_t parent_row = 0;
};

/** Returns none for a part whose parent was removed: the daemon has no row for it. */
std::optional<TableRow> TableRowOf(const Model& model, const Object& object) {
    const Kind& kind = *object.kind;
    const bool among_siblings = kind.list->table->parent != TableParent::kNone;
    TableRow place{&object};
    if (kind.parent) {
        place.parent_index = object.ParentIndex();
        const std::vector<Object>& parents = model.Objects(*model.catalogue().KindOf(kind.ParentKind()).list);
        const auto parent = std::find_if(parents.begin(), parents.end(), [&](const Object& each) {
            return each.index == place.parent_index;
        });
        if (parent != parents.end()) {
            place.parent_row = static_cast<uint32_t>(parent - parents.begin()) + 1;
        } else if (among_siblings) {
            return std::nullopt;
        }
    }
    for (const Object& each : model.Objects(*kind.list)) {
        const bool counts = !among_siblings || each.ParentIndex() == place.parent_index;
        place.row += counts ? 1 : 0;
        if (&each == &object) {
            break;
        }
    }
    return place;
}

int64_t ValueOf(const EventArgument& argument, const TableRow& place) {
    switch (argument.source) {
        case EventArgument::Source::kIndex:
            return place.object->index;
        case EventArgument::Source::kIndexBefore:
            return static_cast<int64_t>(place.object->index) - 1;
        case EventArgument::Source::kRow:
            return place.row;
        case EventArgument::Source::kParentIndex:
            return place.parent_index;
        case EventArgument::Source::kParentRow:
            return place.parent_row;
        case EventArgument::Source::kNumber:
            break;
    }
    return argument.number;
}

std::string TextAbout(const EventRule& rule, const Object& object, const std::string& value) {
    const std::string subject =
        std::string(WordsFor(*object.kind).noun) + " '" + std::string(object.Text("InstanceName")) + "'";
    return rule.attribute == "Status" ? subject + " is " + ToLower(value)
                                      : subject + ": " + std::string(rule.attribute) + " is " + value;
}

std::string EventOf(const EventRule& rule, const TableRow& place, const std::string& value) {
    EventNumbers numbers;
    std::copy(std::begin(rule.id), std::end(rule.id), numbers.id);
    numbers.trap = rule.trap;
    for (size_t i = 0; i < std::size(rule.arguments); ++i) {
        numbers.arguments[i] = ValueOf(rule.arguments[i], place);
    }
    numbers.state = value == rule.good ? kCleared : kChanged;
    const Object& object = *place.object;
    return EventLine(numbers, std::string(object.Text("InstanceId")) + " " + object.kind->name,
                     TextAbout(rule, object, value));
}

std::optional<std::string> WatchedValue(const Object& object) {
    return std::optional<std::string>(object.Value(object.kind->list->table->event->attribute));
}

}  // namespace

StatusWatch::StatusWatch(const Model& model) : before_(model.catalogue().lists().size()) {
    for (const ObjectList& list : model.catalogue().lists()) {
        if (list.table->event != nullptr) {
            for (const Object& object : model.Objects(list)) {
                before_[list.position].push_back({object.index, WatchedValue(object)});
            }
        }
    }
}

std::vector<std::string> StatusWatch::Changes(const Model& model) const {
    std::vector<std::string> events;
    for (const ObjectList& list : model.catalogue().lists()) {
        if (!list.table->event) {
            continue;
        }
        const std::vector<Watched>& before = before_[list.position];
        auto known = before.begin();
        for (const Object& object : model.Objects(list)) {
            // One pass is enough, because objects keep their order and new ones are at the end.
            known = std::find_if(known, before.end(),
                                 [&](const Watched& each) { return each.index == object.index; });
            if (known == before.end()) {
                break;
            }
            const std::optional<std::string> value = WatchedValue(object);
            if (!value || value == known->value) {
                continue;
            }
            if (const std::optional<TableRow> place = TableRowOf(model, object)) {
                events.push_back(EventOf(*list.table->event, *place, *value));
            }
        }
    }
    return events;
}

std::string MiscEvent(const Model& model, std::string_view text) {
    EventNumbers numbers;
    numbers.trap = kMiscTrap;
    return EventLine(numbers, std::to_string(model.serial()), text);
}

std::string ScsiDeviceEvent(const Model& model, uint32_t type, uint32_t status, uint32_t disk_row) {
    EventNumbers numbers;
    numbers.trap = kScsiDeviceTrap;
    numbers.arguments[0] = disk_row;
    numbers.arguments[1] = type;
    numbers.arguments[2] = status;
    return EventLine(numbers, std::to_string(model.serial()),
                     FormatString("SCSI initiator device of type %u has status %u", type, status));
}

}  // namespace arraysim
