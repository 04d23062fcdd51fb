#pragma once

#include <string>

#include "arraySim/model/catalogue.h"

namespace arraysim {

/** The rule that a text of data/objects.def means for an attribute. Throws CatalogueError. */
Rule ParseRule(const std::string& text, const BASEApiAttribute& attribute);

/** What an attribute has that no line speaks of. */
Rule DefaultRule(const Kind& kind, const BASEApiAttribute& attribute);

}  // namespace arraysim
