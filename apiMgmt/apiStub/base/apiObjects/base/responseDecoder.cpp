#include "apiMgmt/apiStub/base/apiObjects/base/responseDecoder.h"

#include <memory>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"

namespace {

constexpr int kNoError = 1;
constexpr int kParsingError = 4;
constexpr char kInvalidContent[] = "Invalid content in response message";
constexpr char kInvalidXml[] = "Invalid response in return XML";

using Return = std::unique_ptr<BASEApiMethodReturn>;

struct ApiStatus {
    bool successful = false;
    int errorState = kNoError;
    std::string error;
    std::string localizedError;
    std::string errorDetail;
};

Return ParsingFailure(const char* error, const std::string& detail) {
    return std::make_unique<INVALIDMethodReturn>(false, kParsingError, error, error, detail, nullptr);
}

/** Returns why the envelope does not contain the response to a command; null if it does. */
const char* FaultOfEnvelope(const protoIPCMsg::GPBIPCMsg& response) {
    if (response.msgtype() != protoIPCMsg::APIResp || !response.has_apirespmsg())
        return "Message type invalid or missing from response";
    if (response.apirespmsg().cmdtype() != protoIPCMsg::Command || !response.apirespmsg().has_cmd())
        return "Command type invalid or missing from response";
    return nullptr;
}

std::string ContentOf(const parser::XMLElement& parent, std::string_view tag) {
    return parent.GetFirstChildByTagName(tag).GetElementContent();
}

// ---- Status ----

/** Accepts the ID or the description of a row. */
int ErrorStateOf(const std::string& text) {
    if (text.empty())
        return kNoError;
    const bool is_number = IsNumeric(text);
    const int number = is_number ? ParseInt(text) : 0;
    for (const ENUMRow& row : APIEnumsIDStrList::gErrorStateEnumIdStrList) {
        if ((is_number && row.Value == number) || CompareNoCase(row.Description, text) == 0)
            return row.Value;
    }
    return kUnknownErrorState;
}

ApiStatus StatusOf(const parser::XMLElement& element) {
    ApiStatus status;
    status.successful = ParseBool(ContentOf(element, "Successful"));
    if (status.successful)
        return status;
    status.errorState = ErrorStateOf(ContentOf(element, "ErrorCode"));
    status.error = ContentOf(element, "Error");
    status.localizedError = ContentOf(element, "LocalizedError");
    status.errorDetail = ContentOf(element, "ErrorDetail");
    return status;
}

// ---- Results ----

void SetAttributeOf(BASEApiObject& object, std::string_view name, std::string_view text) {
    object.SetAttribute(name, text, true);
}

void SetAttributeOf(BASEApiMethodObject& object, std::string_view name, std::string_view text) {
    object.SetAttribute(name, text);
}

/** Copies text directly from the document; only children's markup must be composed. */
template <class Object>
void ReadAttributes(Object& object, const parser::XMLElement& element) {
    for (parser::XMLElement child = element.GetFirstChild(); child; child = child.GetNextSibling()) {
        if (child.GetFirstChild())
            SetAttributeOf(object, child.GetTagName(), child.GetElementContent());
        else
            SetAttributeOf(object, child.GetTagName(), child.GetText());
    }
}

/** Reads objects of known classes, or only the first of them, and counts the others. */
template <class Object>
std::vector<std::unique_ptr<Object>> ReadObjects(const parser::XMLElement& result, bool only_first,
                                                 size_t& skipped) {
    const auto& factory = APIObjectFactory<Object>::Instance();
    std::vector<std::unique_ptr<Object>> objects;
    for (parser::XMLElement child = result.GetFirstChild(); child; child = child.GetNextSibling()) {
        std::unique_ptr<Object> object;
        if (!only_first || objects.empty())
            object = factory.Create(child.GetTagName());
        if (!object) {
            ++skipped;
            continue;
        }
        ReadAttributes(*object, child);
        objects.push_back(std::move(object));
    }
    return objects;
}

Return ReadBool(const parser::XMLElement& result) {
    return std::make_unique<BOOLMethodReturn>(ParseBool(result.GetElementContent()));
}

Return ReadInt(const parser::XMLElement& result) {
    return std::make_unique<INTMethodReturn>(NumberOfText<int32_t>(result.GetElementContent()));
}

template <class TextReturn>
Return ReadText(const parser::XMLElement& result) {
    return std::make_unique<TextReturn>(result.GetElementContent());
}

template <bool is_array>
Return ReadArrayObjects(const parser::XMLElement& result) {
    auto answer = std::make_unique<COMPObjectMethodReturn>(is_array);
    auto objects = ReadObjects<BASEApiObject>(result, !is_array, answer->skippedCount);
    std::vector<BASEApiObject*> list;
    list.reserve(objects.size());
    for (auto& object : objects)
        list.push_back(object.release());
    answer->AssignObjects(std::move(list));
    return answer;
}

template <bool is_array>
Return ReadMethodObjects(const parser::XMLElement& result) {
    auto answer = std::make_unique<METHODObjectMethodReturn>(is_array);
    answer->objects = ReadObjects<BASEApiMethodObject>(result, !is_array, answer->skippedCount);
    return answer;
}

struct ResultReader {
    const char* tag;
    Return (*read)(const parser::XMLElement& result);
};

/** If a document has several results, the first in this table counts. */
constexpr ResultReader kResultReaders[] = {
    {"ReturnBool", ReadBool},
    {"ReturnInt", ReadInt},
    {"ReturnString", ReadText<STRINGMethodReturn>},
    {"ReturnObject", ReadArrayObjects<false>},
    {"ReturnObjectArray", ReadArrayObjects<true>},
    {"ReturnMethodObject", ReadMethodObjects<false>},
    {"ReturnMethodObjectArray", ReadMethodObjects<true>},
    {"ReturnEnumMask", ReadText<ENUMMaskMethodReturn>},
    {"ReturnEnum", ReadText<ENUMMethodReturn>},
};

Return ReadResult(const parser::XMLElement& root) {
    for (const ResultReader& reader : kResultReaders) {
        const parser::XMLElement result = root.GetFirstChildByTagName(reader.tag);
        if (result)
            return reader.read(result);
    }
    return nullptr;
}

Return DecodeDocument(const std::string& document) {
    parser::XMLParser parser;
    if (!parser.ParseXMLString(document))
        return ParsingFailure(kInvalidContent, "Failed to parse XML response data");
    const parser::XMLElement root = parser.GetDocumentElement();
    if (root.GetTagName() != "lumapi")
        return nullptr;
    const std::vector<parser::XMLElement> found = root.GetChildElemsByTagName("ApiMethodReturn");
    if (found.size() != 1)
        return ParsingFailure(
            kInvalidXml,
            FormatString("Incorrect number of APIMethodReturn elements.  Expected 1, found [%u].",
                         static_cast<unsigned>(found.size())));
    const ApiStatus status = StatusOf(found.front());
    if (!status.successful)
        return std::make_unique<BASEApiMethodReturn>(false, status.errorState, status.error,
                                                     status.localizedError, status.errorDetail, nullptr);
    return ReadResult(root);
}

}  // namespace

std::unique_ptr<BASEApiMethodReturn> ReturnOfResponse(const protoIPCMsg::GPBIPCMsg& response) {
    const char* fault = FaultOfEnvelope(response);
    if (fault != nullptr)
        return ParsingFailure(kInvalidContent, fault);
    return DecodeDocument(response.apirespmsg().cmd().respdata());
}
