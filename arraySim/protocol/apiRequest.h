#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "arraySim/model/catalogue.h"

namespace arraysim {

/** A request that is answered with a failure: the identifier of an error state of the API, and a message. */
class ApiFailure : public std::runtime_error {
  public:
    ApiFailure(std::string code, const std::string& text, std::string detail = {})
        : std::runtime_error(text), code_(std::move(code)), detail_(std::move(detail)) {}
    const std::string& code() const { return code_; }
    const std::string& detail() const { return detail_; }

  private:
    std::string code_;
    std::string detail_;
};

/** What a request document asks for. */
struct ApiRequest {
    std::string session_key;
    bool from_library = false;  ///< made by the object library, whose clients know its classes only
    std::string command_type;
    std::string object;
    std::string command;
    std::string async;
    std::string encode_type;
    std::map<std::string, std::string> attributes;

    /** Whether a reduced object is asked for. */
    bool IsLite() const;
    /** Empty when the request does not carry it. */
    std::string Attribute(const std::string& name) const;
};

/** Parses a request document. Throws ApiFailure with ParsingError if it is not one; `request` then holds what
    could be read. */
void ParseApiRequest(std::string_view document, ApiRequest& request);

/** What statistics, traces and faults call a ping. */
inline constexpr std::string_view kPingTopic = "Ping";

/** A message of the API channel, as far as it can be understood without the model. */
struct RequestMessage {
    enum class Type { kPing, kCommand, kOther };

    Type type = Type::kOther;
    std::string command = "other";
    std::string object = "-";  ///< "?" for an unknown one
    ApiRequest api_request;
    std::optional<ApiFailure> failure;  ///< if the document is none

    /** How the objects of the answer are encoded, as a value of the object library. */
    int Encoding() const;
};

RequestMessage ParseRequestMessage(const Catalogue& catalogue, const protoIPCMsg::GPBIPCMsg& message);

}  // namespace arraysim
