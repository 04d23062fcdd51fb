#pragma once

#include "arraySim/protocol/callContext.h"

namespace arraysim {

/** Returns the objects that an association's row of the table selects. Throws ApiFailure. */
Response AnswerAssociation(CallContext& context);

}  // namespace arraysim
