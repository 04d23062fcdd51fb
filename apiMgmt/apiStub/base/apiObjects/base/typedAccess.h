#pragma once

#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"
#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"

/**
 * Building blocks of typed setters and getters: an object, call or method object stores the string, and the
 * descriptor converts it.
 */

template <class Owner, class Attribute, class Value>
void SetTyped(Owner& owner, const Attribute& attribute, const Value& value) {
    owner.SetAttribute(attribute.GetXmlName(), attribute.ToText(value));
}

template <class Owner, class Attribute>
auto GetTyped(const Owner& owner, const Attribute& attribute) {
    return attribute.FromText(owner.GetAttribute(attribute.GetXmlName()));
}

/** Stores the Description of a row; an empty string for an unknown ID. */
template <class Owner>
void SetEnumId(Owner& owner, const ENUMApiAttribute& attribute, const ENUMTable& table, int id) {
    SetTyped(owner, attribute, std::string(table.DescriptionOf(id)));
}
