#pragma once

#include <string>

/** A text of the array on one line, in UTF-8, and without anything that a terminal would obey. */
std::string PrintableText(const std::string& text);
