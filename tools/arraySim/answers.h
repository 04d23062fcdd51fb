#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "tools/arraySim/apiDocument.h"
#include "tools/arraySim/apiRequest.h"
#include "tools/arraySim/model.h"

namespace arraysim {

/** What the array checks requests against and how it writes, for its whole life. */
struct AnswerRules {
    std::string session_key;
    Spelling spelling = Spelling::kApi;
};

/** How a list of objects is bent before it is written. */
struct ListBend {
    std::optional<size_t> beyond_capacity;  ///< so many objects more than the daemon's table takes
    bool no_objects = false;
};

/**
 * Carries out a request: the only place that knows the commands of the API. GetList and Get read the model,
 * Modify of the array object changes it. Throws ApiFailure.
 */
ApiAnswer CarryOut(Model& model, const ApiRequest& request, const std::string& session_key,
                   const ObjectStyle& style, const ListBend& bend);

}  // namespace arraysim
