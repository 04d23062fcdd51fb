#include "tools/arraySim/apiDocument.h"

#include <algorithm>
#include <cctype>

#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

/** Most values need no escaping, and a full alert list has some hundred thousand of them. */
bool IsPlain(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](unsigned char c) {
        return c < 32 || c == '<' || c == '>' || c == '&' || c == '\'' || c == '"';
    });
}

void AppendElement(std::string& xml, std::string_view tag, const std::string& value) {
    xml.append("<").append(tag).append(">");
    xml.append(IsPlain(value) ? value : EscapeXml(value, false));
    xml.append("</").append(tag).append(">");
}

/** `Tessera` has one spelling only. */
std::string ElementName(const Kind& kind, Spelling spelling) {
    std::string name = kind.name;
    if (spelling == Spelling::kApi && name.starts_with("Ts")) {
        name[0] = 't';
    }
    return name;
}

bool IsOmitted(const ObjectStyle& style, const std::string& attribute) {
    return std::any_of(style.omitted.begin(), style.omitted.end(),
                       [&](const std::string& each) { return CompareNoCase(each, attribute) == 0; });
}

const std::string* Replacement(const ObjectStyle& style, const std::string& attribute) {
    for (const auto& [name, value] : style.replaced) {
        if (CompareNoCase(name, attribute) == 0) {
            return &value;
        }
    }
    return nullptr;
}

}  // namespace

void AppendObject(std::string& xml, const Object& object, const ObjectStyle& style) {
    const std::string element = ElementName(*object.kind, style.spelling);
    xml.append("<").append(element).append(">");
    for (size_t i = 0; i < object.values.size(); ++i) {
        const Attribute& attribute = object.kind->attributes[i];
        if (!object.values[i] || (style.lite && !attribute.in_reduced) || IsOmitted(style, attribute.name)) {
            continue;
        }
        const std::string* replacement = Replacement(style, attribute.name);
        AppendElement(xml, attribute.name, replacement != nullptr ? *replacement : *object.values[i]);
    }
    xml.append("</").append(element).append(">");
}

std::string MethodReturnElement(const ApiAnswer& answer, std::optional<std::string_view> successful) {
    std::string xml = "<ApiMethodReturn>";
    AppendElement(xml, "Error", answer.error_text);
    AppendElement(xml, "ErrorCode", answer.error_code);
    xml += "<ErrorDetail></ErrorDetail>";
    AppendElement(xml, "LocalizedError", answer.error_text);
    xml += "<ReturnObjectEncode>Xml</ReturnObjectEncode>";
    if (successful) {
        AppendElement(xml, "Successful", std::string(*successful));
    }
    return xml + "<ObjectType>ApiMethodReturn</ObjectType></ApiMethodReturn>";
}

std::string WriteDocument(const ApiAnswer& answer) {
    std::string xml(kXmlDeclaration);
    xml.reserve(answer.result.size() + 512);
    xml += "<lumapi>";
    xml += MethodReturnElement(answer, answer.Successful() ? "True" : "False");
    xml += answer.result;
    return xml + "</lumapi>";
}

}  // namespace arraysim
