#pragma once

#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"
#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"

/**
 * What the typed setters and getters of a class are made of: an object, a call or a method object keeps the
 * text, the descriptor converts.
 */

template <class Owner, class Attribute, class Value>
void SetTyped(Owner& owner, const Attribute& attribute, const Value& value) {
    owner.SetAttribute(attribute.GetXmlName(), attribute.ToText(value));
}

template <class Owner, class Attribute>
auto GetTyped(const Owner& owner, const Attribute& attribute) {
    return attribute.FromText(owner.GetAttribute(attribute.GetXmlName()));
}

/** Stores the Description of a row; an empty text for an id that the table does not know. */
template <class Owner>
void SetEnumId(Owner& owner, const ENUMApiAttribute& attribute, const ENUMTable& table, int id) {
    SetTyped(owner, attribute, std::string(table.DescriptionOf(id)));
}
