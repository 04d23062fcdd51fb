#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "arraySim/model/catalogue.h"

namespace arraysim {

/** The condition of an object, as in its attribute `Status`. */
enum class Condition { kUp, kDown, kDegraded };

const char* FormatCondition(Condition condition);
/** Parses a condition; case-insensitive. Returns none for any other string. */
std::optional<Condition> ParseCondition(std::string_view text);

/** Returns whether objects of the kind have a status. */
bool HasCondition(const Kind& kind);

/** An attribute that shows a condition. A value that begins with "=" is that of another attribute. */
struct ConditionAttribute {
    std::string_view list;
    Condition condition;
    std::string_view attribute;
    std::string_view value;
};

std::span<const ConditionAttribute> ConditionAttributes();

/** The words by which alerts and events refer to the objects of a list. */
struct AlertWords {
    std::string_view list;
    std::string_view noun;
    std::string_view category;
};

/** Returns the words for a kind; there is a default. */
const AlertWords& WordsFor(const Kind& kind);

}  // namespace arraysim
