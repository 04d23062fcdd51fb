#include <algorithm>

#include "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/valueApiAttributes.h"
#include "arraySim/model/ruleParser.h"

namespace arraysim {

namespace {

using Verb = Rule::Verb;

/** Attributes that mean the same in every object. */
struct NamedRule {
    const char* attribute;
    Verb verb;
    const char* text;
};
constexpr NamedRule kNamedRules[] = {
    {"Index", Verb::kIndex, ""},
    {"TsName", Verb::kText, "{array}"},
    {"TsSerialNumber", Verb::kText, "{serial}"},
    {"InstanceId", Verb::kText, "{serial}.{index}"},
    {"ObjectType", Verb::kKind, ""},
};

Rule RuleWith(Verb verb, const std::string& text = {}) {
    Rule rule;
    rule.verb = verb;
    rule.text = text;
    return rule;
}

Rule NumberRule(int64_t number) {
    Rule rule = RuleWith(Verb::kNumber);
    rule.low = rule.high = number;
    return rule;
}

bool NamesParent(const Kind& kind, const std::string& attribute) {
    return (attribute == "ControllerIndex" && kind.list->per == ParentKind::kController) ||
           (attribute == "EnclosureIndex" && kind.list->per == ParentKind::kEnclosure);
}

Rule RuleOfSort(const BASEApiAttribute& attribute) {
    const auto& properties = attribute.GetProperties();
    if (const auto* bounds = dynamic_cast<const INTApiAttribute::INTAttributeProperties*>(&properties)) {
        return NumberRule(std::max<int64_t>(bounds->minValue, 0));
    }
    if (dynamic_cast<const DOUBLEApiAttribute*>(&attribute) != nullptr ||
        dynamic_cast<const SIZEApiAttribute*>(&attribute) != nullptr) {
        return NumberRule(0);
    }
    if (dynamic_cast<const BOOLEANApiAttribute*>(&attribute) != nullptr) {
        return RuleWith(Verb::kBool);
    }
    const auto* word = dynamic_cast<const ENUMApiAttribute*>(&attribute);
    if (word != nullptr && word->GetTable().size() > 0) {
        Rule rule = RuleWith(Verb::kPick);
        rule.choices.emplace_back(word->GetTable().begin()->Description);
        return rule;
    }
    return RuleWith(Verb::kEmpty);
}

}  // namespace

Rule DefaultRule(const Kind& kind, const BASEApiAttribute& attribute) {
    const std::string& name = attribute.GetXmlName();
    for (const NamedRule& each : kNamedRules) {
        if (name == each.attribute) {
            return RuleWith(each.verb, each.text);
        }
    }
    if (name == "InstanceName" && kind.HasAttribute("Name")) {
        return RuleWith(Verb::kSame, "Name");
    }
    if (NamesParent(kind, name)) {
        return RuleWith(Verb::kParent);
    }
    return RuleOfSort(attribute);
}

}  // namespace arraysim
