#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"

namespace tessera {

/**
 * Strict values: unlike the descriptors' FromText and ToText, these functions never substitute a value for an
 * invalid one. All of them are stateless.
 */

/**
 * Returns a value as documents contain it, or std::nullopt if the string is not a value of the attribute's
 * kind. Enumerations accept identifiers, readable names and IDs. Bounds and characters are not checked.
 */
std::optional<std::string> ReadValue(const BASEApiAttribute& attribute, const std::string& text);

/** Returns whether a document can contain the string: it has no control characters but line feeds. */
bool IsWritable(std::string_view text);

/**
 * Returns a value as documents contain it, not escaped. Throws InvalidArgument unless its kind, bounds and
 * characters are legal. An empty string, which removes a value, is legal for all kinds without bounds.
 * `name` is the attribute in the error.
 */
std::string CheckedValue(const BASEApiAttribute& attribute, const std::string& text, const std::string& name);

/** Larger enumerations are not listed in a message. */
inline constexpr size_t kMaximumRowsInMessage = 15;

/** Describes the legal values, for example "a string of 1 to 64 bytes without < > &". */
std::string LegalValues(const BASEApiAttribute& attribute);

/** Returns the human-readable name of a row in UTF-8. */
std::string ReadableName(const ENUMRow& row);

/** Returns whether two names differ in nothing but case, spaces and punctuation. */
bool HaveSameLetters(std::string_view left, std::string_view right);

/** Throws the error for a value that is not legal. */
[[noreturn]] void ThrowInvalidValue(const BASEApiAttribute& attribute, const std::string& text,
                                    const std::string& name);

/** Returns the identifier of a row. Throws InvalidArgument if there is none with that ID. */
std::string IdentifierOf(const ENUMTABLEApiAttribute& attribute, int id);

/** Returns the shortest decimal number that is read as this one. */
std::string TextOfReal(double number);

/**
 * Returns a string or a typed value as a string, to be checked with CheckedValue or ReadValue. Types that
 * would lose something do not compile.
 */
template <class Attribute, class Value>
std::string TextOf(const Attribute& attribute, const Value& value) {
    if constexpr (std::convertible_to<const Value&, std::string_view>) {
        return std::string(std::string_view(value));
    } else if constexpr (std::same_as<Attribute, BOOLEANApiAttribute>) {
        static_assert(std::same_as<Value, bool>, "a Boolean attribute takes a bool or a string");
        return attribute.ToText(value);
    } else if constexpr (std::same_as<Attribute, INTApiAttribute>) {
        static_assert(std::integral<Value>, "an integer attribute takes an integer or a string");
        return std::to_string(value);
    } else if constexpr (std::same_as<Attribute, DOUBLEApiAttribute>) {
        static_assert(std::is_arithmetic_v<Value>, "a floating-point attribute takes a number or a string");
        return TextOfReal(static_cast<double>(value));
    } else if constexpr (std::derived_from<Attribute, ENUMTABLEApiAttribute> && std::integral<Value>) {
        return IdentifierOf(attribute, static_cast<int>(value));
    } else if constexpr (std::same_as<Attribute, VERSIONApiAttribute>) {
        return value.GetHotfix() == 0 ? value.ToText() : value.ToTextWithHotfix();
    } else {
        return attribute.ToText(value);
    }
}

/** Returns the descriptor of that name in a list. Throws InvalidArgument if there is none. */
const BASEApiAttribute& DescriptorIn(const ATTRIBUTEList& list, const BASEApiAttribute& attribute,
                                     const std::string& owner);

/**
 * Sets an argument of a call, a field of a structured argument or an attribute of an object, in place of the
 * typed setters. `value` is a string or the type that the setter takes; an enumeration also takes an ID.
 * Throws InvalidArgument if the value is not legal or if the owner does not have the attribute.
 */
template <class Owner, class Attribute, class Value>
void Set(Owner& owner, const Attribute& attribute, const Value& value) {
    const BASEApiAttribute& known = DescriptorIn(owner.GetAttributeList(), attribute, owner.GetObjectName());
    const std::string& name = known.GetXmlName();
    owner.SetAttribute(name, CheckedValue(known, TextOf(attribute, value), name));
}

}  // namespace tessera
