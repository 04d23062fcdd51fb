#pragma once

#include <string>

#include "tools/apiClient/apiCatalogue.h"

class APIMethodError;
class BASEApiMethod;
class BASEApiMethodReturn;

/** Which argument the library refused, what was given and what is allowed. */
std::string ExplainValidation(const APIMethodError& error, const CatalogueCommand& command,
                              const BASEApiMethod& call);

/** What an answer that is no success says: the error state with its text, the array's own texts. */
std::string ExplainFailure(const BASEApiMethod& call, const BASEApiMethodReturn& answer);
