#pragma once

#include <string_view>

namespace arraysim {

/** The text of data/objects.def. */
extern const std::string_view kObjectsDef;

}  // namespace arraysim
