#pragma once

#include <string>
#include <string_view>

/** Pieces of documents, appended without any white space. */

inline void AppendElement(std::string& xml, std::string_view name, std::string_view text) {
    xml += '<';
    xml += name;
    xml += '>';
    xml += text;
    xml += "</";
    xml += name;
    xml += '>';
}
