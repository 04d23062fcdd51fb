#pragma once

#include <string>
#include <string_view>

#include "apiMgmt/common/utils/stringUtil.h"

/** Functions that append parts of documents, without whitespace. */

/** Checks first, because most values need no escaping and a long list has hundreds of thousands of them. */
inline void AppendEscaped(std::string& xml, std::string_view text) {
    for (const char c : text) {
        const bool special =
            static_cast<unsigned char>(c) < 32 || c == '<' || c == '>' || c == '&' || c == '\'' || c == '"';
        if (special) {
            xml += EscapeXml(std::string(text), false);
            return;
        }
    }
    xml += text;
}

inline void AppendElement(std::string& xml, std::string_view name, std::string_view text,
                          bool escape = false) {
    xml += '<';
    xml += name;
    xml += '>';
    if (escape)
        AppendEscaped(xml, text);
    else
        xml += text;
    xml += "</";
    xml += name;
    xml += '>';
}
