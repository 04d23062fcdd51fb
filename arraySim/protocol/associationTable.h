#pragma once

#include "arraySim/protocol/callContext.h"

namespace arraysim {

/** Answers an association with the objects that its row of the table selects. Throws ApiFailure. */
Response AnswerAssociation(CallContext& context);

}  // namespace arraysim
