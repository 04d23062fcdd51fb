#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

namespace arraysim {

/** A rule of data/array/objects.def that cannot be understood or carried out; says nothing about the line. */
class RuleError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** How the value of an attribute is made. data/array/objects.def explains the words. */
struct ValueRule {
    enum class Verb { kText, kNumber, kBool, kPick, kSize, kTemperature, kRail, kDate, kSame, kCount };

    Verb verb = Verb::kText;
    int64_t low = 0;
    int64_t high = 0;
    std::string text;                  ///< template, attribute of `=`, list of `count`
    std::vector<std::string> choices;  ///< to pick from; attributes and values of `count` in turn

    /** Whether the attribute holds the API index of the object's controller or enclosure. */
    bool IsParentIndex() const { return verb == Verb::kText && text == "{parent}"; }
};

/** Parses a rule of data/array/objects.def for an attribute. Throws RuleError. */
ValueRule ParseRule(const std::string& text, const BASEApiAttribute& attribute);

/** The rule of an attribute that no line mentions, whatever its object is: by its name, else by its type. */
ValueRule DefaultRule(const BASEApiAttribute& attribute);

}  // namespace arraysim
