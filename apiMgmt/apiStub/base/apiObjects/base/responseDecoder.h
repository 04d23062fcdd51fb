#pragma once

#include <memory>

class BASEApiMethodReturn;

namespace protoIPCMsg {
class GPBIPCMsg;
}

/** From a response to a return, as BASEApiMethod::DecodeResponse says: envelope, document, status, result.
   Each step that fails makes a return of its own; nothing is thrown. */
std::unique_ptr<BASEApiMethodReturn> ReturnOfResponse(const protoIPCMsg::GPBIPCMsg& response);
