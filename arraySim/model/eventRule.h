#pragma once

#include <string>
#include <vector>

#include "arraySim/model/catalogue.h"

namespace arraysim {

/** Reads a line of objects.def that begins with `event`. Throws CatalogueError, without the line. */
EventRule ParseEventRule(const std::vector<std::string>& words);

}  // namespace arraysim
