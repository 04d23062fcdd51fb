#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

#include "apiMgmt/apiStub/base/apiObjects/base/elementText.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr char kLiteObj[] = "LiteObj";

/** Upper limit for the fixed markup of a call. */
constexpr size_t kFixedMarkup = 224;

constexpr int kInvalidValue = 25;
constexpr int kMissingArgument = 10009;

}  // namespace

BASEApiMethod::BASEApiMethod(bool association) : isAssociation(association) {}

BASEApiMethod::BASEApiMethod(bool association, const std::map<std::string, std::string>& initial)
    : isAssociation(association), attributes(initial.begin(), initial.end()) {
    attributes.erase("");
}

const ATTRIBUTEList& BASEApiMethod::GetAttributeList() const {
    static const auto& none = *new ATTRIBUTEList;
    return none;
}

std::string BASEApiMethod::GenerateXml(bool async, bool xmlObjects) const {
    const std::string& object = GetObjectName();
    const std::string& command = GetCommandName();
    size_t size = kFixedMarkup + object.size() + command.size();
    for (const auto& [name, text] : attributes)
        size += 2 * name.size() + text.size() + 5;

    std::string xml;
    xml.reserve(size);
    xml += "<ApiMethod>";
    AppendElement(xml, "CommandType", isAssociation ? "Association" : "Method");
    AppendElement(xml, "Object", object);
    AppendElement(xml, "Command", command);
    AppendElement(xml, "Async", async ? "true" : "false");
    AppendElement(xml, "ObjectEncodeType", xmlObjects ? "xml" : "csv");
    if (!attributes.empty()) {
        xml += "<Attributes>";
        for (const auto& [name, text] : attributes)
            AppendElement(xml, name, text);
        xml += "</Attributes>";
    }
    xml += "</ApiMethod>";
    return xml;
}

void BASEApiMethod::SetAttribute(const std::string& name, const std::string& text) {
    if (!name.empty())
        attributes.insert_or_assign(name, text);
}

std::string BASEApiMethod::GetAttribute(std::string_view name) const {
    const auto found = attributes.find(name);
    return found == attributes.end() ? std::string() : found->second;
}

bool BASEApiMethod::HasAttribute(std::string_view name) const {
    return attributes.contains(name);
}

void BASEApiMethod::SetLiteObj() {
    SetAttribute(kLiteObj, "1");
}

bool BASEApiMethod::IsLiteObj() const {
    return ParseBool(GetAttribute(kLiteObj));
}

// ---- checks of the arguments ----

bool BASEApiMethod::HasAttribute(const BASEApiAttribute* attribute) const {
    return attribute != nullptr && HasAttribute(attribute->GetXmlName());
}

const BASEApiAttribute* BASEApiMethod::FindAttribute(std::string_view name) const {
    return FindAttributeIn(GetAttributeList(), name);
}

bool BASEApiMethod::IsFilterAttribute(std::string_view name) {
    return ToLower(name).find("filter") != std::string::npos;
}

void BASEApiMethod::CheckRequired(std::span<const std::string> names, const char* sourceFile,
                                  uint32_t sourceLine) const {
    for (const std::string& name : names) {
        if (!HasAttribute(name) && !IsFilterAttribute(name))
            throw APIMethodError("Required attribute " + name + " not set", kInvalidValue, sourceFile,
                                 sourceLine, kMissingArgument, nullptr);
    }
}

void BASEApiMethod::ValidateAttributes() const {
    CheckRequiredAttributes();
    CheckState();
    for (const auto& [name, text] : attributes) {
        const BASEApiAttribute* attribute = FindAttribute(name);
        if (attribute != nullptr)
            attribute->Validate(text);
    }
}
