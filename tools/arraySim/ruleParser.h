#pragma once

#include <string>

#include "tools/arraySim/catalogue.h"

namespace arraysim {

/** Reads a rule of data/objects.def, whose head lists them. Throws CatalogueError without a line. */
Rule ParseRule(const std::string& text);

}  // namespace arraysim
