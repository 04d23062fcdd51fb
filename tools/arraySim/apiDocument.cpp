#include "tools/arraySim/apiDocument.h"

#include <optional>
#include <string_view>

#include "tools/arraySim/xmlText.h"

namespace arraysim {

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/** `successful` is the text of its Successful; none leaves the element out. */
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

/** Ten levels of ten: a few hundred bytes that stand for ten thousand million. */
std::string ExpandingEntities() {
    std::string declarations = "<!DOCTYPE lumapi [<!ENTITY e0 \"ha\">";
    for (int level = 1; level <= 10; ++level) {
        declarations += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int i = 0; i < 10; ++i) {
            declarations += "&e" + std::to_string(level - 1) + ";";
        }
        declarations += "\">";
    }
    return declarations + "]>";
}

/** What stands between the declaration and the document element. */
std::string Prologue(const DocumentBend& bend) {
    if (bend.entities) {
        return ExpandingEntities();
    }
    if (bend.external_entity) {
        return "<!DOCTYPE lumapi [<!ENTITY file SYSTEM \"file:///etc/hostname\">]>";
    }
    return bend.doctype ? "<!DOCTYPE lumapi>" : "";
}

/** A use of what the prologue declares. */
std::string EntityUse(const DocumentBend& bend) {
    if (bend.entities) {
        return "<Note>&e10;</Note>";
    }
    return bend.external_entity ? "<Note>&file;</Note>" : "";
}

std::string Nested(uint32_t levels) {
    std::string xml;
    for (uint32_t i = 0; i < levels; ++i) {
        xml += "<n>";
    }
    for (uint32_t i = 0; i < levels; ++i) {
        xml += "</n>";
    }
    return xml;
}

std::optional<std::string_view> SuccessfulText(const ApiAnswer& answer, const DocumentBend& bend) {
    if (bend.no_successful) {
        return std::nullopt;
    }
    if (bend.lower_true) {
        return answer.successful ? "true" : "false";
    }
    return answer.successful ? "True" : "False";
}

}  // namespace

std::string WriteDocument(const ApiAnswer& answer, const DocumentBend& bend) {
    if (bend.empty) {
        return {};
    }
    const std::string root = bend.wrong_root ? "lumapy" : "lumapi";
    std::string xml(kDeclaration);
    xml += Prologue(bend);
    xml += "<" + root + ">";
    xml += bend.no_return ? "" : MethodReturnElement(answer, SuccessfulText(answer, bend));
    xml += EntityUse(bend);
    xml += Nested(bend.nesting);
    xml += bend.unbalanced ? "<Open>" : "";
    xml += answer.result;
    xml += "</" + root + ">";
    if (bend.truncated) {
        xml.resize(xml.size() / 2);
    }
    return xml;
}

}  // namespace arraysim
