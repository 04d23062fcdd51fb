#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/arraySim/apiDocument.h"
#include "tools/arraySim/apiRequest.h"
#include "tools/arraySim/model.h"

namespace arraysim {

/** How a list of objects is bent before it is written. */
struct ListBend {
    std::optional<size_t> beyond_capacity;  ///< so many objects more than the daemon's table takes
    bool no_objects = false;
    /** Attributes of the first object alone that get a value of the fault's own. */
    std::vector<std::pair<std::string, std::string>> replaced_in_first;
};

/**
 * Carries out a request: the only place that knows the commands of the API. GetList and Get read the model,
 * Modify of the array object changes it. Throws ApiFailure.
 */
ApiAnswer CarryOut(Model& model, const ApiRequest& request, const std::string& session_key,
                   const ObjectStyle& style, const ListBend& bend);

}  // namespace arraysim
