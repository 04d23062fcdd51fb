#pragma once

namespace protoIPCMsg {
class GPBIPCMsg;
}

/** The way of a call to the API manager and back, for a caller that wants another than the library's own:
   another socket, or a look at the messages. */
class APIChannel {
  public:
    virtual ~APIChannel() = default;

    /** Sends the request and waits for the answer. What goes wrong is thrown, and passes through the call. */
    virtual void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) = 0;
};
