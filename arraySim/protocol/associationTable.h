#pragma once

#include "arraySim/protocol/callContext.h"

namespace arraysim {

/** Answers an association with the objects to which its row of the table leads. Throws ApiFailure. */
Answer AnswerAssociation(CallContext& context);

}  // namespace arraysim
