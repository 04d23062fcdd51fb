#pragma once

namespace protoIPCMsg {
class GPBIPCMsg;
}

/**
 * The transport of calls to the API manager, for callers that replace the library's own: with another socket,
 * or to inspect the messages.
 */
class APIChannel {
  public:
    virtual ~APIChannel() = default;

    /** Sends the request and waits for the response. Exceptions propagate through the call. */
    virtual void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) = 0;
};
