#pragma once

#include <memory>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

/**
 * Converts a request to a call of the API library, with arguments in the format in which the array stores
 * such values. Throws ApiFailure if the API lacks the object or command, or if an argument is invalid,
 * unknown or missing.
 */
std::unique_ptr<BASEApiMethod> MakeCall(const ApiRequest& request);

/** Throws ApiFailure if a session with this privilege (UserPrivilege) may not make the call. */
void CheckPrivilege(const BASEApiMethod& call, int privilege);

}  // namespace arraysim
