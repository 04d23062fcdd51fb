#include "arraySim/protocol/apiRequest.h"

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"

namespace arraysim {

namespace {

constexpr const char* kParsingError = "ParsingError";

std::string ChildText(const parser::XMLElement& element, std::string_view tag) {
    const parser::XMLElement child = element.GetFirstChildByTagName(tag);
    return child ? std::string(child.GetText()) : std::string();
}

/** Distinguishes documents of the daemon (`SessionKey`) from those of the API library (`sessionkey`). */
void ReadSessionKey(const parser::XMLElement& connection, ApiRequest& request) {
    request.session_key = ChildText(connection, "SessionKey");
    if (request.session_key.empty()) {
        request.session_key = ChildText(connection, "sessionkey");
        request.from_library = !request.session_key.empty();
    }
}

void ReadMethod(const parser::XMLElement& method, ApiRequest& request) {
    request.command_type = ChildText(method, "CommandType");
    request.object = ChildText(method, "Object");
    request.command = ChildText(method, "Command");
    request.async = ChildText(method, "Async");
    request.encode_type = ChildText(method, "ObjectEncodeType");
    const parser::XMLElement attributes = method.GetFirstChildByTagName("Attributes");
    if (!attributes) {
        return;
    }
    for (parser::XMLElement each = attributes.GetFirstChild(); each; each = each.GetNextSibling()) {
        // A structured argument has child elements and is stored as XML.
        request.attributes[std::string(each.GetTagName())] =
            each.GetFirstChild() ? each.GetElementContent() : std::string(each.GetText());
    }
}

/** Returns the name of a command for the statistics. */
std::string CommandLabel(const std::string& command) {
    for (const char* known : {"GetList", "Get", "Modify"}) {
        if (command == known) {
            return command;
        }
    }
    return "other";
}

}  // namespace

bool ApiRequest::IsLite() const {
    return ParseBool(Attribute("LiteObj"));
}

std::string ApiRequest::Attribute(const std::string& name) const {
    const auto found = attributes.find(name);
    return found == attributes.end() ? std::string() : found->second;
}

void ParseApiRequest(std::string_view document, ApiRequest& request) {
    parser::XMLParser parser;
    if (!parser.ParseXMLString(document)) {
        throw ApiFailure(kParsingError, "The request is not well-formed: " + parser.GetError());
    }
    const parser::XMLElement root = parser.GetDocumentElement();
    if (root.GetTagName() != "lumapi") {
        throw ApiFailure(kParsingError, "The document element is not lumapi");
    }
    if (const parser::XMLElement connection = root.GetFirstChildByTagName("ApiConnection")) {
        ReadSessionKey(connection, request);
    }
    const std::vector<parser::XMLElement> methods = root.GetChildElemsByTagName("ApiMethod");
    if (!methods.empty()) {
        ReadMethod(methods.front(), request);
    }
    if (methods.size() != 1) {
        throw ApiFailure(kParsingError, FormatString("Expected 1 ApiMethod, found %zu", methods.size()));
    }
}

int RequestMessage::Encoding() const {
    return api_request.encode_type == "csv" ? object_encoding::kCsv : object_encoding::kXml;
}

RequestMessage ParseRequestMessage(const Catalogue& catalogue, const protoIPCMsg::GPBIPCMsg& message) {
    RequestMessage parsed;
    if (message.msgtype() != protoIPCMsg::APIRequest || !message.has_apireqmsg()) {
        return parsed;
    }
    const protoIPCMsg::APIReqMsg& request = message.apireqmsg();
    if (request.cmdtype() == protoIPCMsg::Ping) {
        parsed.type = RequestMessage::Type::kPing;
        parsed.command = kPingTopic;
    } else if (request.cmdtype() == protoIPCMsg::Command) {
        parsed.type = RequestMessage::Type::kCommand;
        try {
            ParseApiRequest(request.cmd().cmddata(), parsed.api_request);
        } catch (const ApiFailure& failure) {
            parsed.failure = failure;
        }
        parsed.command = CommandLabel(parsed.api_request.command);
        const bool known = catalogue.FindRequestable(parsed.api_request.object).has_value();
        parsed.object = known ? parsed.api_request.object : "?";
    }
    return parsed;
}

}  // namespace arraysim
