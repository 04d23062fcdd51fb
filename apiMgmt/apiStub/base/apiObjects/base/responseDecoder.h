#pragma once

#include <memory>

class BASEApiMethodReturn;

namespace protoIPCMsg {
class GPBIPCMsg;
}

/**
 * Decodes a response as described at BASEApiMethod::DecodeResponse: envelope, document, status, result. Each
 * step that fails yields its own return; nothing throws.
 */
std::unique_ptr<BASEApiMethodReturn> ReturnOfResponse(const protoIPCMsg::GPBIPCMsg& response);
