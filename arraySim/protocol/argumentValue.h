#pragma once

#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

namespace arraysim {

/**
 * A value in the form in which the array keeps it: "True" for 1, an enumeration's word as its table writes
 * it. Throws ApiFailure for a text that means nothing to an attribute of that kind, which the library reads
 * as some value.
 */
std::string ArgumentValue(const BASEApiAttribute& attribute, const std::string& text);

}  // namespace arraysim
