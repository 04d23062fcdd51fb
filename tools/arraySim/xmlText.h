#pragma once

#include <string>
#include <string_view>

namespace arraysim {

/** Appends an element with a text, escaped. */
void AppendElement(std::string& xml, std::string_view tag, const std::string& value);

}  // namespace arraysim
