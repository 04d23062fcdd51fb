#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "apiMgmt/common/wirelink/wireLink.h"

class BASEApiMethod;
class BASEApiMethodReturn;

/** An answer that is none of an API manager. */
class AnswerError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** The way to an API manager that listens at a path of one's choice. Keeps the document of the last answer.
 */
class ArrayConnection : public APIChannel {
  public:
    ArrayConnection(const std::string& socket_path, long timeout_s);

    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) override;

    /**
     * The answer to a call; null for a success without a result. Throws WireLinkError when the manager cannot
     * be reached, AnswerError when the answer is no document of the API. For a refusal, too, there is a
     * return.
     */
    std::unique_ptr<BASEApiMethodReturn> Call(BASEApiMethod& call, const std::string& session_key,
                                              const std::string& locale);

    /** As it came; empty before the first answer. */
    const std::string& Document() const { return document_; }

    /** The objects in that document, also those of classes that the library does not know. */
    size_t CountObjects() const;

  private:
    WireLinkEndpoint endpoint_;
    std::string document_;
};

/** The session key of the daemon, or that of another file by the same rules. Throws UsageError when there is
   none that may be trusted. */
std::string SessionKey(const std::string& path);
