#pragma once

#include "arraySim/protocol/callContext.h"

namespace arraysim {

/** Carries out the steps that the table defines for a command other than Get, GetList and Modify. Throws
    ApiFailure. */
Response AnswerCommand(CallContext& context);

}  // namespace arraysim
