#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "arraySim/model/catalogue.h"

namespace arraysim {

/** The failure of a request: an error identifier of the API, and a message. */
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

/** The contents of a request document. */
struct ApiRequest {
    std::string session_key;
    bool from_library = false;  ///< by the API library, whose clients know only its classes
    std::string command_type;
    std::string object;
    std::string command;
    std::string async;
    std::string encode_type;
    std::map<std::string, std::string> attributes;

    /** Returns whether reduced objects are requested. */
    bool IsLite() const;
    /** Returns an empty string if the request lacks the attribute. */
    std::string Attribute(const std::string& name) const;
};

/** Parses a request document. Throws ApiFailure with ParsingError if it is malformed; `request` then contains
    what could be parsed. */
void ParseApiRequest(std::string_view document, ApiRequest& request);

/** The name of pings in statistics, traces and faults. */
inline constexpr std::string_view kPingTopic = "Ping";

/** A message of the API channel, as far as it can be parsed without the model. */
struct RequestMessage {
    enum class Type { kPing, kCommand, kOther };

    Type type = Type::kOther;
    std::string command = "other";
    std::string object = "-";  ///< "?" if it is unknown
    ApiRequest api_request;
    std::optional<ApiFailure> failure;  ///< if the document is malformed

    /** Returns the requested encoding of objects, as a constant of object_encoding. */
    int Encoding() const;
};

RequestMessage ParseRequestMessage(const Catalogue& catalogue, const protoIPCMsg::GPBIPCMsg& message);

}  // namespace arraysim
