#pragma once

#include <span>
#include <string_view>

#include "arraySim/model/incidents.h"

namespace arraysim {

/** One attribute that shows a condition. A value that begins with "=" is that of another attribute. */
struct Sign {
    std::string_view kind;
    Condition condition;
    std::string_view attribute;
    std::string_view value;
};

/** How alerts speak of a kind. */
struct AlertWords {
    std::string_view kind;
    std::string_view noun;
    std::string_view category;
};

std::span<const Sign> Signs();
/** The kind's words; never fails. */
const AlertWords& WordsFor(const Kind& kind);

}  // namespace arraysim
