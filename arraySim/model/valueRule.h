#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

namespace arraysim {

/** An error in a rule of data/array/objects.def, without its line: the rule cannot be parsed or applied. */
class RuleError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** The rule by which the value of an attribute is generated; see data/array/objects.def. */
struct ValueRule {
    enum class Verb { kText, kNumber, kBool, kPick, kSize, kTemperature, kRail, kDate, kSame, kCount };

    Verb verb = Verb::kText;
    int64_t low = 0;
    int64_t high = 0;
    std::string text;                  ///< template, attribute of `=`, list of `count`
    std::vector<std::string> choices;  ///< to pick from; for `count`, alternately attributes and values

    /** Returns whether the attribute holds the API index of the object's controller or enclosure. */
    bool IsParentIndex() const { return verb == Verb::kText && text == "{parent}"; }
};

/** Parses a rule of data/array/objects.def for an attribute. Throws RuleError. */
ValueRule ParseRule(const std::string& text, const BASEApiAttribute& attribute);

/** Returns the rule of an attribute without a separate line: by its name, else by its type. */
ValueRule DefaultRule(const BASEApiAttribute& attribute);

}  // namespace arraysim
