#pragma once

#include <string>

#include "arraySim/protocol/answer.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

/** The session key and its privilege. */
struct Session {
    std::string key;
    int privilege = USER_PRIVILEGE_ADMIN;
};

/** Carries out a request. Does not throw ApiFailure: a failure becomes the answer. */
Answer CarryOut(Model& model, const ApiRequest& request, const Session& session, const ObjectStyle& style,
                const ListAlteration& alteration);

}  // namespace arraysim
