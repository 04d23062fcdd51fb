#pragma once

#include <memory>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

/**
 * Returns the request as a call of the object library, with its arguments as the array stores such values.
 * Throws ApiFailure for an object or a command that the API lacks, and for arguments that the call rejects,
 * does not take or lacks.
 */
std::unique_ptr<BASEApiMethod> MakeCall(const ApiRequest& request);

/** Throws ApiFailure unless a session with this privilege (UserPrivilege) may make the call. */
void CheckPrivilege(const BASEApiMethod& call, int privilege);

}  // namespace arraysim
