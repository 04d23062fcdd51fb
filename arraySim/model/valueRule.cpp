#include "arraySim/model/valueRule.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>
#include <string_view>

#include "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/valueApiAttributes.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

using Verb = ValueRule::Verb;

/** The unit after a range. */
struct Unit {
    const char* name;
    Verb verb;
};
constexpr Unit kUnits[] = {
    {"", Verb::kNumber}, {" GB", Verb::kSize}, {" C", Verb::kTemperature}, {" days", Verb::kDate}};

bool ReadNumber(std::string_view text, int64_t& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

/** Parses "A" or "A..B". Returns false for any other string. */
bool ReadRange(std::string_view text, ValueRule& rule) {
    const size_t dots = text.find("..");
    if (!ReadNumber(text.substr(0, dots), rule.low)) {
        return false;
    }
    rule.high = rule.low;
    if (dots != std::string_view::npos && !ReadNumber(text.substr(dots + 2), rule.high)) {
        return false;
    }
    if (rule.low > rule.high) {
        throw RuleError("empty range '" + std::string(text) + "'");
    }
    return true;
}

bool ReadMeasure(std::string_view text, ValueRule& rule) {
    for (const Unit& unit : kUnits) {
        if (text.ends_with(unit.name) &&
            ReadRange(text.substr(0, text.size() - std::string_view(unit.name).size()), rule)) {
            rule.verb = unit.verb;
            return true;
        }
    }
    return false;
}

/** Parses true, false or 1/N. `low` becomes 1, 0 or N. */
bool ReadBool(std::string_view text, ValueRule& rule) {
    rule.verb = Verb::kBool;
    rule.low = text == "true" ? 1 : 0;
    if (text == "true" || text == "false") {
        return true;
    }
    return text.starts_with("1/") && ReadNumber(text.substr(2), rule.low) && rule.low > 1;
}

/** Parses LIST [ATTR=VALUE...]. */
ValueRule CountRule(const std::string& text) {
    ValueRule rule;
    rule.verb = Verb::kCount;
    std::istringstream words(text);
    words >> rule.text;
    for (std::string condition; words >> condition;) {
        const size_t equals = condition.find('=');
        if (equals == std::string::npos) {
            throw RuleError("unexpected '" + condition + "'; expected ATTR=VALUE");
        }
        rule.choices.push_back(condition.substr(0, equals));
        rule.choices.push_back(condition.substr(equals + 1));
    }
    return rule;
}

/** Throws RuleError if a word of the choices is not in the enumeration. */
void CheckChoices(const ValueRule& rule, const ENUMTABLEApiAttribute& attribute) {
    for (const std::string& choice : rule.choices) {
        std::istringstream words(choice);
        for (std::string word; words >> word;) {
            const ENUMRow* row = attribute.GetTable().FindDescription(word);
            if (row == nullptr || row->Description != word) {
                throw RuleError("'" + word + "' is not in the enumeration of " + attribute.GetXmlName());
            }
        }
    }
}

ValueRule EnumerationRule(const std::string& text, const ENUMTABLEApiAttribute& attribute) {
    ValueRule rule;
    rule.verb = Verb::kPick;
    int64_t id = 0;
    if (text.starts_with("row ") && ReadNumber(std::string_view(text).substr(4), id)) {
        rule.choices.emplace_back(attribute.GetTable().DescriptionOf(static_cast<int32_t>(id)));
        if (rule.choices.front().empty()) {
            throw RuleError(attribute.GetXmlName() + " has no row " + std::to_string(id));
        }
        return rule;
    }
    Split(text, "|", rule.choices);
    CheckChoices(rule, attribute);
    return rule;
}

/** The rule of an attribute with the same meaning in every object. */
struct NamedTemplate {
    const char* attribute;
    const char* text;
};
constexpr NamedTemplate kNamedTemplates[] = {
    {"Index", "{index}"},           {"TsName", "{array}"},
    {"TsSerialNumber", "{serial}"}, {"InstanceId", "{serial}.{index}"},
    {"ObjectType", "{kind}"},
};

ValueRule Constant(int64_t number) {
    return {.verb = Verb::kNumber, .low = number, .high = number, .text = {}, .choices = {}};
}

ValueRule DefaultRuleOfType(const BASEApiAttribute& attribute) {
    const auto& properties = attribute.GetProperties();
    if (const auto* bounds = dynamic_cast<const INTApiAttribute::INTAttributeProperties*>(&properties)) {
        return Constant(std::max<int64_t>(bounds->minValue, 0));
    }
    if (dynamic_cast<const DOUBLEApiAttribute*>(&attribute) != nullptr ||
        dynamic_cast<const SIZEApiAttribute*>(&attribute) != nullptr) {
        return Constant(0);
    }
    if (dynamic_cast<const BOOLEANApiAttribute*>(&attribute) != nullptr) {
        return {.verb = Verb::kBool, .text = {}, .choices = {}};
    }
    const auto* word = dynamic_cast<const ENUMApiAttribute*>(&attribute);
    if (word != nullptr && word->GetTable().size() > 0) {
        return {
            .verb = Verb::kPick, .text = {}, .choices = {std::string(word->GetTable().begin()->Description)}};
    }
    return {};
}

}  // namespace

ValueRule ParseRule(const std::string& text, const BASEApiAttribute& attribute) {
    ValueRule rule;
    if (text.starts_with("=")) {
        rule.verb = Verb::kSame;
        rule.text = text.substr(1);
        return rule;
    }
    if (text.starts_with("count ")) {
        return CountRule(text.substr(6));
    }
    const auto* enumeration = dynamic_cast<const ENUMTABLEApiAttribute*>(&attribute);
    if (enumeration != nullptr) {
        return EnumerationRule(text, *enumeration);
    }
    if (text.starts_with("rail ") && ReadRange(std::string_view(text).substr(5), rule)) {
        rule.verb = Verb::kRail;
        return rule;
    }
    if (ReadMeasure(text, rule) || ReadBool(text, rule)) {
        return rule;
    }
    rule = ValueRule();
    rule.verb = text.find('|') == std::string::npos ? Verb::kText : Verb::kPick;
    if (rule.verb == Verb::kPick) {
        Split(text, "|", rule.choices);
    }
    rule.text = text;
    return rule;
}

ValueRule DefaultRule(const BASEApiAttribute& attribute) {
    for (const NamedTemplate& each : kNamedTemplates) {
        if (attribute.GetXmlName() == each.attribute) {
            return {.text = each.text, .choices = {}};
        }
    }
    return DefaultRuleOfType(attribute);
}

}  // namespace arraysim
