#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "apiMgmt/common/wirelink/wireLink.h"

class BASEApiMethod;
class BASEApiMethodReturn;

namespace apiclient {

/** The response is not a document of the array's API. */
class ResponseError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** Executes calls through an API manager's socket, one connection per call, and keeps the last response. */
class ArrayConnection : public APIChannel {
  public:
    ArrayConnection(const std::string& socket_path, long timeout_s);

    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) override;

    /**
     * Returns what the array has returned, also for a rejected call; null for a success without a result.
     * Throws WireLinkError if the API manager cannot be reached, ResponseError for a malformed response.
     */
    std::unique_ptr<BASEApiMethodReturn> Call(BASEApiMethod& call, const std::string& session_key,
                                              const std::string& locale);

    /** Returns the document of the last response as received; empty before the first. */
    const std::string& document() const { return document_; }

    /** Returns the number of objects in that document, including classes that the library does not know. */
    size_t CountObjects() const;

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
