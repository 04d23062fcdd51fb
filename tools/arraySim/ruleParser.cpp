#include "tools/arraySim/ruleParser.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <sstream>
#include <string_view>

#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

struct VerbName {
    const char* name;
    Rule::Verb verb;
    enum class Form { kNothing, kText, kRange, kChoices, kBool, kCount } form;
};

constexpr VerbName kVerbs[] = {
    {"index", Rule::Verb::kIndex, VerbName::Form::kNothing},
    {"parent", Rule::Verb::kParent, VerbName::Form::kNothing},
    {"kind", Rule::Verb::kKind, VerbName::Form::kNothing},
    {"empty", Rule::Verb::kEmpty, VerbName::Form::kNothing},
    {"first", Rule::Verb::kFirst, VerbName::Form::kNothing},
    {"text", Rule::Verb::kText, VerbName::Form::kText},
    {"same", Rule::Verb::kSame, VerbName::Form::kText},
    {"number", Rule::Verb::kNumber, VerbName::Form::kRange},
    {"size", Rule::Verb::kSize, VerbName::Form::kRange},
    {"temperature", Rule::Verb::kTemperature, VerbName::Form::kRange},
    {"rail", Rule::Verb::kRail, VerbName::Form::kRange},
    {"date", Rule::Verb::kDate, VerbName::Form::kRange},
    {"pick", Rule::Verb::kPick, VerbName::Form::kChoices},
    {"bool", Rule::Verb::kBool, VerbName::Form::kBool},
    {"count", Rule::Verb::kCount, VerbName::Form::kCount},
};

bool ReadNumber(std::string_view text, int64_t& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

/** "A" or "A..B". */
bool ReadRange(const std::string& text, Rule& rule) {
    const size_t dots = text.find("..");
    if (dots == std::string::npos) {
        rule.high = 0;
        if (!ReadNumber(text, rule.low)) {
            return false;
        }
        rule.high = rule.low;
        return true;
    }
    return ReadNumber(std::string_view(text).substr(0, dots), rule.low) &&
           ReadNumber(std::string_view(text).substr(dots + 2), rule.high) && rule.low <= rule.high;
}

/** true, false or 1/N: kept as N, with 1 for always and 0 for never. */
bool ReadBool(const std::string& text, Rule& rule) {
    if (text == "true" || text == "false") {
        rule.low = text == "true" ? 1 : 0;
        return true;
    }
    return text.starts_with("1/") && ReadNumber(std::string_view(text).substr(2), rule.low) && rule.low > 1;
}

/** LIST [ATTR=VALUE...]; the choices become attributes and values in turn. */
bool ReadCount(const std::string& text, Rule& rule) {
    std::istringstream words(text);
    words >> rule.text;
    for (std::string condition; words >> condition;) {
        const size_t equals = condition.find('=');
        if (equals == std::string::npos) {
            return false;
        }
        rule.choices.push_back(condition.substr(0, equals));
        rule.choices.push_back(condition.substr(equals + 1));
    }
    return !rule.text.empty();
}

}  // namespace

Rule ParseRule(const std::string& text) {
    const size_t blank = text.find(' ');
    const std::string name = text.substr(0, blank);
    const std::string argument = blank == std::string::npos ? "" : text.substr(blank + 1);
    const VerbName* verb = std::find_if(std::begin(kVerbs), std::end(kVerbs),
                                        [&](const VerbName& each) { return name == each.name; });
    if (verb == std::end(kVerbs)) {
        throw CatalogueError("unknown rule '" + text + "'");
    }
    Rule rule;
    rule.verb = verb->verb;
    bool good = false;
    switch (verb->form) {
        case VerbName::Form::kNothing:
            good = argument.empty();
            break;
        case VerbName::Form::kText:
            rule.text = argument;
            good = !argument.empty();
            break;
        case VerbName::Form::kRange:
            good = ReadRange(argument, rule);
            break;
        case VerbName::Form::kChoices:
            Split(argument, "|", rule.choices);
            good = !rule.choices.empty();
            break;
        case VerbName::Form::kBool:
            good = ReadBool(argument, rule);
            break;
        case VerbName::Form::kCount:
            good = ReadCount(argument, rule);
            break;
    }
    if (!good) {
        throw CatalogueError("rule '" + text + "' is not complete");
    }
    return rule;
}

}  // namespace arraysim
