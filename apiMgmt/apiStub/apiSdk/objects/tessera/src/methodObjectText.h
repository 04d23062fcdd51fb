#pragma once

#include <string>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"

/** Parsers for structured arguments in an attribute of a call. */

/** Returns an object without attributes if the string is not of this class. */
template <class MethodObject>
MethodObject ReadMethodObject(const std::string& text) {
    MethodObject value;
    value.FromXmlText(text);
    return value;
}

/**
 * Returns all objects of this class, in order. Ignores elements with other names. Returns none if the string
 * is not well-formed.
 */
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
