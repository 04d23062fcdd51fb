#include "arraySim/model/objectMaker.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctime>
#include <iterator>

#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

// The array's calendar day, fixed so that a preset never changes.
constexpr int64_t kToday_s = 1751328000;
constexpr int64_t kDay_s = 86400;

constexpr int64_t kBlocksPerGigabyte = 1953125;

constexpr double kRailVolts[] = {12.0, 5.0, 3.3, 1.8, 1.2, 1.05, 2.5, 1.5, 0.95, 3.0};

constexpr const char* Word(bool value) {
    return value ? "True" : "False";
}

constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::string_view kCodeCharacters = "0123456789BCDFGHJKLMNPQRSTVWXYZ";
constexpr std::string_view kDigits = "0123456789";

int64_t NumberIn(std::string_view text) {
    int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

class ObjectBuilder {
  public:
    ObjectBuilder(const Kind& kind, const Place& place, Random random)
        : place_(place), random_(random), object_(kind) {
        object_.index = place.index;
    }

    Object Build(const GivenValues& given) {
        for (const Attribute& attribute : object_.kind->attributes) {
            // The rule is always evaluated, so that a given value does not shift the random numbers of
            // others.
            object_.SetAttribute(attribute.name(), Apply(attribute.rule));
            for (const auto& [name, value] : given) {
                if (CompareNoCase(name, attribute.name()) == 0) {
                    object_.SetAttribute(attribute.name(), value);
                }
            }
        }
        return std::move(object_);
    }

  private:
    std::string Apply(const ValueRule& rule) {
        switch (rule.verb) {
            case ValueRule::Verb::kText:
                return Expand(rule.text);
            case ValueRule::Verb::kNumber:
                return std::to_string(random_.Between(rule.low, rule.high));
            case ValueRule::Verb::kBool:
                return Word(rule.low > 0 && random_.Below(static_cast<uint64_t>(rule.low)) == 0);
            case ValueRule::Verb::kPick:
                return rule.choices[random_.Below(rule.choices.size())];
            case ValueRule::Verb::kSize:
                return std::to_string(random_.Between(rule.low, rule.high) * kBlocksPerGigabyte);
            case ValueRule::Verb::kTemperature:
                return FormatTemperature(random_.Between(rule.low, rule.high));
            case ValueRule::Verb::kRail:
                return Rail(rule);
            case ValueRule::Verb::kDate:
                return FormatDate(random_.Between(rule.low, rule.high), random_.Between(0, kDay_s - 1));
            case ValueRule::Verb::kSame:
                return std::string(object_.Text(rule.text));
            case ValueRule::Verb::kCount:
                return "0";
        }
        return {};
    }

    /** Fills the {placeholders} of a template. */
    std::string Expand(std::string_view text) {
        std::string filled;
        while (!text.empty()) {
            const size_t open = text.find('{');
            filled += text.substr(0, open);
            const size_t close = open == text.npos ? text.npos : text.find('}', open);
            if (close == text.npos) {
                break;
            }
            filled += Fill(text.substr(open + 1, close - open - 1));
            text.remove_prefix(close + 1);
        }
        return filled;
    }

    std::string Fill(std::string_view placeholder) {
        const size_t end = placeholder.find_first_of("+*:");
        const std::string_view name = placeholder.substr(0, end);
        const char modifier = end == placeholder.npos ? '\0' : placeholder[end];
        const int64_t argument = modifier == '\0' ? 0 : NumberIn(placeholder.substr(end + 1));
        if (modifier == '*') {
            std::string repeated;
            for (int64_t i = 0; i < argument; ++i) {
                repeated += Value(name, 0);
            }
            return repeated;
        }
        std::string value = Value(name, modifier == '+' ? argument : 0);
        const size_t width = modifier == ':' ? static_cast<size_t>(argument) : 0;
        return value.size() < width ? std::string(width - value.size(), '0') + value : value;
    }

    std::string Value(std::string_view name, int64_t added) {
        const std::pair<std::string_view, uint32_t> numbers[] = {{"index", place_.index},
                                                                 {"row", place_.row},
                                                                 {"parent", place_.parent_index},
                                                                 {"parentRow", place_.parent_row},
                                                                 {"serial", place_.serial}};
        for (const auto& [each, number] : numbers) {
            if (name == each) {
                return std::to_string(number + added);
            }
        }
        const char letter = static_cast<char>('A' + (place_.row - 1) % 26);
        const std::pair<std::string_view, std::string_view> texts[] = {{"kind", object_.kind->name},
                                                                       {"parentName", place_.parent_name},
                                                                       {"array", place_.array_name},
                                                                       {"first", Word(place_.row == 1)},
                                                                       {"letter", {&letter, 1}}};
        for (const auto& [each, text] : texts) {
            if (name == each) {
                return std::string(text);
            }
        }
        const std::pair<std::string_view, std::string_view> alphabets[] = {
            {"hex", kHexDigits}, {"code", kCodeCharacters}, {"digit", kDigits}};
        for (const auto& [each, characters] : alphabets) {
            if (name == each) {
                return std::string(1, characters[random_.Below(characters.size())]);
            }
        }
        throw RuleError("unknown placeholder {" + std::string(name) + "} in a template");
    }

    std::string Rail(const ValueRule& rule) {
        const double nominal = kRailVolts[(place_.row - 1) % std::size(kRailVolts)];
        const double percent = static_cast<double>(random_.Between(rule.low * 10, rule.high * 10)) / 10.0;
        return FormatString("%.2f", nominal * (1.0 + percent / 100.0));
    }

    const Place& place_;
    Random random_;
    Object object_;
};

uint32_t IndexIn(std::string_view text) {
    uint32_t index = 0;
    std::from_chars(text.data(), text.data() + text.size(), index);
    return index;
}

std::string_view Given(const GivenValues& given, const std::string& attribute) {
    for (const auto& [name, value] : given) {
        if (CompareNoCase(name, attribute) == 0) {
            return value;
        }
    }
    return {};
}

void PlaceUnderParent(const Model& model, const Kind& kind, const GivenValues& given, Place& place) {
    const Selection parents = *model.catalogue().Find(kind.ParentKind());
    const std::vector<Object>& candidates = model.Objects(*parents.list);
    const std::string& attribute = kind.attributes[*kind.parent].name();
    const std::string_view wanted = Given(given, attribute);
    for (size_t i = 0; i < candidates.size(); ++i) {
        if (wanted.empty() || candidates[i].index == IndexIn(wanted)) {
            place.parent_index = candidates[i].index;
            place.parent_row = static_cast<uint32_t>(i) + 1;
            place.parent_name = candidates[i].Text("Name");
            break;
        }
    }
    for (const Object& sibling : model.Objects(*kind.list)) {
        place.row += sibling.ParentIndex() == place.parent_index ? 1 : 0;
    }
}

/** A kind whose objects are added and removed with those of another kind that have the same index. */
struct Companion {
    const char* kind;
    const char* companion;
};
constexpr Companion kCompanions[] = {
    {"TsDisk", "TsDiskConfiguration"},
    {"TsDiskFolder", "TsDiskFolderStorageUsage"},
};

const char* CompanionOf(const Kind& kind) {
    for (const Companion& each : kCompanions) {
        if (kind.name == each.kind) {
            return each.companion;
        }
    }
    return nullptr;
}

/** Returns no reference, because the next object of the list would invalidate it. */
void Make(Model& model, const Kind& kind, uint32_t index, const GivenValues& values) {
    const Place place = PlaceAtEnd(model, kind, index, values);
    model.Append(MakeObject(kind, place, Random::For(model.serial(), kind.name, index), values));
}

}  // namespace

Object MakeObject(const Kind& kind, const Place& place, Random random, const GivenValues& given) {
    return ObjectBuilder(kind, place, random).Build(given);
}

Place PlaceAtEnd(const Model& model, const Kind& kind, uint32_t index, const GivenValues& given) {
    Place place;
    place.index = index;
    place.serial = model.serial();
    place.array_name = model.ArrayName();
    if (kind.parent) {
        PlaceUnderParent(model, kind, given, place);
    } else {
        place.row = static_cast<uint32_t>(model.Objects(*kind.list).size()) + 1;
    }
    return place;
}

Object& AddObject(Model& model, const Kind& kind, uint32_t index, const GivenValues& values) {
    Make(model, kind, index, values);
    const char* companion = CompanionOf(kind);
    if (companion != nullptr && model.Find(*model.catalogue().Find(companion), index) == nullptr) {
        Make(model, model.catalogue().KindOf(companion), index, {});
    }
    model.UpdateCounts();
    return *model.Find({kind.list, &kind}, index);
}

void RemoveObject(Model& model, const Object& object) {
    const Kind& kind = *object.kind;
    const uint32_t index = object.index;
    model.Remove({kind.list, &kind}, index);
    if (const char* companion = CompanionOf(kind)) {
        model.Remove(*model.catalogue().Find(companion), index);
    }
    model.UpdateCounts();
}

std::string FormatDate(int64_t days_before, int64_t second_of_day) {
    const time_t moment = static_cast<time_t>(kToday_s - days_before * kDay_s + second_of_day);
    tm parts{};
    gmtime_r(&moment, &parts);
    char text[64];
    return {text, strftime(text, sizeof text, "%m/%d/%Y %I:%M:%S %p", &parts)};
}

std::string FormatTemperature(int64_t celsius) {
    return FormatString("%lld C/%lld F", static_cast<long long>(celsius),
                        static_cast<long long>(9 * celsius / 5 + 32));
}

}  // namespace arraysim
