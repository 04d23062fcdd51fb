#pragma once

#include <string>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"

/** Reads back the structured arguments that a call's attribute carries as text. */

/** One without attributes when the text is none of this class. */
template <class MethodObject>
MethodObject ReadMethodObject(const std::string& text) {
    MethodObject value;
    value.FromXmlText(text);
    return value;
}

/** All of them in order; elements of other names are passed over, and a text that is no markup gives none. */
template <class MethodObject>
std::vector<MethodObject> ReadMethodObjects(const std::string& text) {
    std::vector<MethodObject> values;
    parser::XMLParser parser;
    parser.ParseXMLString("<Values>" + text + "</Values>");
    if (const parser::XMLElement all = parser.GetDocumentElement()) {
        for (const parser::XMLElement& each : all.GetChildElemsByTagName(MethodObject::ObjectName()))
            values.emplace_back().FromXml(each);
    }
    return values;
}
