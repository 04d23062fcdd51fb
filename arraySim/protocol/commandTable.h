#pragma once

#include "arraySim/protocol/callContext.h"

namespace arraysim {

/** Carries out a command of the API other than Get, GetList and Modify, as its row of the table says. Throws
    ApiFailure. */
Answer AnswerCommand(CallContext& context);

}  // namespace arraysim
