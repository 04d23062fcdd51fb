#include "tools/arraySim/xmlText.h"

#include <algorithm>

#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

/** Most values need no escaping, and a full alert list has some hundred thousand of them. */
bool IsPlain(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](unsigned char c) {
        return c < 32 || c == '<' || c == '>' || c == '&' || c == '\'' || c == '"';
    });
}

}  // namespace

void AppendElement(std::string& xml, std::string_view tag, const std::string& value) {
    xml.append("<").append(tag).append(">");
    xml.append(IsPlain(value) ? value : EscapeXml(value, false));
    xml.append("</").append(tag).append(">");
}

}  // namespace arraysim
