#include "arraySim/model/objectMaker.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctime>
#include <iterator>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/template.h"

namespace arraysim {

namespace {

// The array's calendar day, so that a preset is the same whenever it is made.
constexpr int64_t kToday_s = 1751328000;
constexpr int64_t kDay_s = 86400;

constexpr int64_t kBlocksPerGigabyte = 1953125;

constexpr double kRailVolts[] = {12.0, 5.0, 3.3, 1.8, 1.2, 1.05, 2.5, 1.5, 0.95, 3.0};

constexpr const char* Word(bool value) {
    return value ? "True" : "False";
}

class ObjectBuilder {
  public:
    ObjectBuilder(const Kind& kind, const Place& place, Random random)
        : place_(place), random_(random), template_(place, random_), object_(kind) {
        object_.index = place.index;
    }

    Object Build(const GivenValues& given) {
        for (const Attribute& attribute : object_.kind->attributes) {
            // The rule runs in any case: a given value must not shift the random numbers of the others.
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
    std::string Apply(const Rule& rule) {
        switch (rule.verb) {
            case Rule::Verb::kIndex:
                return std::to_string(place_.index);
            case Rule::Verb::kParent:
                return std::to_string(place_.parent_index);
            case Rule::Verb::kKind:
                return object_.kind->name;
            case Rule::Verb::kEmpty:
                return {};
            case Rule::Verb::kText:
                return template_.Expand(rule.text);
            case Rule::Verb::kNumber:
                return std::to_string(random_.Between(rule.low, rule.high));
            case Rule::Verb::kBool:
                return Word(rule.low > 0 && random_.Below(static_cast<uint64_t>(rule.low)) == 0);
            case Rule::Verb::kFirst:
                return Word(place_.row == 1);
            case Rule::Verb::kPick:
                return rule.choices[random_.Below(rule.choices.size())];
            case Rule::Verb::kSize:
                return std::to_string(random_.Between(rule.low, rule.high) * kBlocksPerGigabyte);
            case Rule::Verb::kTemperature:
                return TemperatureText(random_.Between(rule.low, rule.high));
            case Rule::Verb::kRail:
                return Rail(rule);
            case Rule::Verb::kDate:
                return DateText(random_.Between(rule.low, rule.high), random_.Between(0, kDay_s - 1));
            case Rule::Verb::kSame:
                return std::string(object_.Text(rule.text));
            case Rule::Verb::kCount:
                return "0";
        }
        return {};
    }

    std::string Rail(const Rule& rule) {
        const double nominal = kRailVolts[(place_.row - 1) % std::size(kRailVolts)];
        const double percent = static_cast<double>(random_.Between(rule.low * 10, rule.high * 10)) / 10.0;
        return FormatString("%.2f", nominal * (1.0 + percent / 100.0));
    }

    const Place& place_;
    Random random_;
    Template template_;
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

void PutUnderParent(const Model& model, const Kind& kind, const GivenValues& given, Place& place) {
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
        PutUnderParent(model, kind, given, place);
    } else {
        place.row = static_cast<uint32_t>(model.Objects(*kind.list).size()) + 1;
    }
    return place;
}

std::string DateText(int64_t days_before, int64_t second_of_day) {
    const time_t moment = static_cast<time_t>(kToday_s - days_before * kDay_s + second_of_day);
    tm parts{};
    gmtime_r(&moment, &parts);
    char text[64];
    return {text, strftime(text, sizeof text, "%m/%d/%Y %I:%M:%S %p", &parts)};
}

std::string TemperatureText(int64_t celsius) {
    return FormatString("%lld C/%lld F", static_cast<long long>(celsius),
                        static_cast<long long>(9 * celsius / 5 + 32));
}

}  // namespace arraysim
