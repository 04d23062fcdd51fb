#pragma once

#include <memory>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

/**
 * The request as a call of the object library, its arguments in the form in which the array keeps such
 * values. Throws ApiFailure for an object or a command that the API does not have, and for arguments that the
 * call refuses, does not take or needs.
 */
std::unique_ptr<BASEApiMethod> MakeCall(const ApiRequest& request);

/** Throws ApiFailure unless one with this privilege (UserPrivilege) may make the call. */
void CheckPrivilege(const BASEApiMethod& call, int privilege);

}  // namespace arraysim
