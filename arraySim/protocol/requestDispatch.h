#pragma once

#include <string>

#include "arraySim/protocol/apiRequest.h"
#include "arraySim/protocol/response.h"

namespace arraysim {

/** The session key and its privilege. */
struct Session {
    std::string key;
    int privilege = USER_PRIVILEGE_ADMIN;
};

/** Carries out a request. Does not throw ApiFailure: a failure becomes the response. */
Response CarryOut(Model& model, const ApiRequest& request, const Session& session, const ObjectStyle& style,
                  const ListAlteration& alteration);

}  // namespace arraysim
