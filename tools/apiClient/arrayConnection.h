#pragma once

#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "apiMgmt/common/wirelink/wireLink.h"

class BASEApiMethod;
class BASEApiMethodReturn;

namespace apiclient {

/** An API manager's socket with a timeout for each step, one connection per call. Keeps the last response. */
class ArrayConnection : public APIChannel {
  public:
    ArrayConnection(const std::string& socket_path, long timeout_s);

    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) override;

    /** Returns the document of the last response as received; empty before the first. */
    const std::string& document() const { return document_; }

  private:
    WireLinkEndpoint endpoint_;
    std::string document_;
};

/**
 * Reads the session key from a file that the daemon would trust too. Throws UsageError if there is no such
 * key.
 */
std::string ReadSessionKey(const std::string& path);

/** Describes a rejected or failed call: the error state and the array's own messages. */
std::string DescribeFailure(const BASEApiMethod& call, const BASEApiMethodReturn& response);

}  // namespace apiclient
