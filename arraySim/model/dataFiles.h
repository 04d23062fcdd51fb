#pragma once

#include <string_view>

namespace arraysim {

/** The texts of the files in data, as they were when the program was built. */
extern const std::string_view kObjectsDef;
extern const std::string_view kCallsDef;

}  // namespace arraysim
