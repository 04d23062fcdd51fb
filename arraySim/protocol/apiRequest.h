#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace arraysim {

/** A request that is answered with a failure: an error state of the API by its identifier, and a text. */
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

/** Reads a request document. Throws ApiFailure with ParsingError when it is not one; then `request` holds
    what could be read. */
void ParseApiRequest(std::string_view document, ApiRequest& request);

}  // namespace arraysim
