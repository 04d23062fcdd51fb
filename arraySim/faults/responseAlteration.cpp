#include "arraySim/faults/responseAlteration.h"

#include <string_view>

#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

constexpr std::string_view kRootOpens = "<lumapi>";
constexpr std::string_view kRootCloses = "</lumapi>";
constexpr std::string_view kStatusOpens = "<ApiMethodReturn>";
constexpr std::string_view kStatusCloses = "</ApiMethodReturn>";
constexpr std::string_view kSuccessOpens = "<Successful>";
constexpr std::string_view kSuccessCloses = "</Successful>";

/** Returns declarations of less than 1 KB whose last entity expands to 20 GB. */
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

/** Returns the contents between the XML declaration and the document element. */
std::string Prologue(const DocumentAlteration& alteration) {
    if (alteration.entities) {
        return ExpandingEntities();
    }
    if (alteration.external_entity) {
        return "<!DOCTYPE lumapi [<!ENTITY file SYSTEM \"file:///etc/hostname\">]>";
    }
    return alteration.doctype ? "<!DOCTYPE lumapi>" : "";
}

/** Returns an element that refers to the entity in the prologue, if there is one. */
std::string EntityUse(const DocumentAlteration& alteration) {
    if (alteration.entities) {
        return "<Note>&e10;</Note>";
    }
    return alteration.external_entity ? "<Note>&file;</Note>" : "";
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

/** Returns the first element with these tags, including the tags. */
std::string_view ElementIn(std::string_view document, std::string_view opens, std::string_view closes) {
    const size_t begin = document.find(opens);
    const size_t end = document.find(closes, begin);
    return document.substr(begin, end + closes.size() - begin);
}

/** Returns the status element, with Successful altered or omitted. */
std::string StatusElement(std::string_view document, const DocumentAlteration& alteration) {
    std::string status(ElementIn(document, kStatusOpens, kStatusCloses));
    const std::string success(ElementIn(status, kSuccessOpens, kSuccessCloses));
    if (alteration.no_successful) {
        ReplaceAll(status, success, "");
    } else if (alteration.lower_true) {
        const std::string value = success.substr(
            kSuccessOpens.size(), success.size() - kSuccessOpens.size() - kSuccessCloses.size());
        ReplaceAll(status, success,
                   std::string(kSuccessOpens) + ToLower(value) + std::string(kSuccessCloses));
    }
    return status;
}

}  // namespace

std::string AlterDocument(std::string document, const DocumentAlteration& alteration) {
    if (alteration == DocumentAlteration()) {
        return document;
    }
    if (alteration.empty) {
        return {};
    }
    const std::string_view whole = document;
    const size_t root = whole.find(kRootOpens);
    const size_t result = whole.find(kStatusCloses) + kStatusCloses.size();
    const size_t end = whole.rfind(kRootCloses);
    std::string altered(whole.substr(0, root));
    altered += Prologue(alteration);
    altered += alteration.wrong_root ? "<lumapy>" : kRootOpens;
    altered += alteration.no_return ? "" : StatusElement(whole, alteration);
    altered += EntityUse(alteration) + Nested(alteration.nesting);
    altered += alteration.unbalanced ? "<Open>" : "";
    altered += whole.substr(result, end - result);
    altered += alteration.wrong_root ? "</lumapy>" : kRootCloses;
    if (alteration.truncated) {
        altered.resize(altered.size() / 2);
    }
    return altered;
}

void AlterEnvelope(const EnvelopeAlteration& alteration, protoIPCMsg::GPBIPCMsg& response) {
    if (alteration.wrong_sequence) {
        response.set_sequencenum(response.sequencenum() + 1);
    }
    if (alteration.wrong_type) {
        response.set_msgtype(protoIPCMsg::CAResp);
    }
    if (alteration.no_command && response.has_apirespmsg()) {
        response.mutable_apirespmsg()->clear_cmd();
    }
    if (alteration.no_response) {
        response.clear_apirespmsg();
    }
}

}  // namespace arraysim
