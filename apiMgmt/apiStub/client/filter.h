#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/client/attributeValue.h"

namespace tessera {

/**
 * Conditions on the objects of a list:
 *
 *     Where(APITsDisk::StatusAttribute()) == "Down" && Where(APITsDisk::SizeAttribute()) > "1 TB"
 *
 * The array joins all conditions of a filter by "and" or all by "or", so an expression that mixes && and ||
 * does not compile. There is no "not equal". Strings and identifiers are compared case-insensitively.
 */
class Condition {
  public:
    /** Throws InvalidArgument for a value that is blank or that a filter would lose a part of. */
    Condition(const BASEApiAttribute& attribute, int filterOperator, std::string value);

    const BASEApiAttribute& GetAttribute() const { return *attribute; }
    int GetOperator() const { return filterOperator; }
    const std::string& GetValue() const { return value; }

  private:
    const BASEApiAttribute* attribute;
    int filterOperator;
    std::string value;
};

/** Conditions of which an object must meet all (kAnd), or at least one (kOr). */
template <int join>
class JoinedConditions {
  public:
    JoinedConditions(Condition condition) { conditions.push_back(std::move(condition)); }
    explicit JoinedConditions(std::vector<Condition> list) : conditions(std::move(list)) {}

    std::vector<Condition> conditions;
};
using AllOf = JoinedConditions<filter_join::kAnd>;
using AnyOf = JoinedConditions<filter_join::kOr>;

AllOf operator&&(AllOf left, const AllOf& right);
AnyOf operator||(AnyOf left, const AnyOf& right);

/** The filter of a list. The default selects all objects. */
class Filter {
  public:
    Filter() = default;
    Filter(Condition condition) : Filter(AllOf(std::move(condition))) {}
    /** Without conditions, selects all objects. */
    Filter(AllOf all) : join(filter_join::kAnd), conditions(std::move(all.conditions)) {}
    /** Throws InvalidArgument without conditions, because the array would return all objects. */
    Filter(AnyOf any);

    /**
     * Returns the filter for a call. Throws InvalidArgument if a condition is about an attribute that is not
     * in the list, because the array would ignore it. `object` is the name for the error.
     */
    FILTERList ListFor(const ATTRIBUTEList& attributes, const std::string& object) const;

  private:
    int join = filter_join::kUndecided;
    std::vector<Condition> conditions;
};

template <class Attribute, class... Kinds>
inline constexpr bool kIsAnyOf = (std::same_as<Attribute, Kinds> || ...);

/** Whether filters can compare the attribute's order. Strings are compared case-insensitively. */
template <class Attribute>
inline constexpr bool kHasOrder =
    kIsAnyOf<Attribute, STRINGApiAttribute, NAMEApiAttribute, INTApiAttribute, DOUBLEApiAttribute,
             DATETIMEApiAttribute, SIZEApiAttribute, TEMPERATUREApiAttribute, VERSIONApiAttribute>;

/** Whether filters can search the attribute for a part. */
template <class Attribute>
inline constexpr bool kHasParts = kIsAnyOf<Attribute, STRINGApiAttribute, NAMEApiAttribute,
                                           IPV4ADDRESSApiAttribute, IPV6ADDRESSApiAttribute>;

template <class Attribute>
inline constexpr bool kHasEquality =
    kHasOrder<Attribute> || kHasParts<Attribute> ||
    kIsAnyOf<Attribute, BOOLEANApiAttribute, ENUMApiAttribute, INSTANCEIDApiAttribute>;

/**
 * The left side of a condition. Values are strings or typed, as for Set; an operator that the attribute's
 * kind does not support does not compile. Throws InvalidArgument for a value of another kind.
 */
template <class Attribute>
class Comparand {
  public:
    explicit Comparand(const Attribute& described) : attribute(described) {}

    template <class Value>
    Condition operator==(const Value& value) const requires kHasEquality<Attribute> {
        return Compare(filter_operator::kEqual, value);
    }
    template <class Value>
    Condition operator<(const Value& value) const requires kHasOrder<Attribute> {
        return Compare(filter_operator::kLess, value);
    }
    template <class Value>
    Condition operator<=(const Value& value) const requires kHasOrder<Attribute> {
        return Compare(filter_operator::kLessOrEqual, value);
    }
    template <class Value>
    Condition operator>(const Value& value) const requires kHasOrder<Attribute> {
        return Compare(filter_operator::kGreater, value);
    }
    template <class Value>
    Condition operator>=(const Value& value) const requires kHasOrder<Attribute> {
        return Compare(filter_operator::kGreaterOrEqual, value);
    }

    /** The attribute's value contains this string. */
    Condition Contains(std::string_view part) const requires kHasParts<Attribute> {
        return Condition(attribute, filter_operator::kIqs, std::string(part));
    }
    /** This string contains the attribute's value. */
    Condition IsPartOf(std::string_view text) const requires kHasParts<Attribute> {
        return Condition(attribute, filter_operator::kIqin, std::string(text));
    }

  private:
    template <class Value>
    Condition Compare(int filterOperator, const Value& value) const {
        const std::string text = TextOf(attribute, value);
        const std::optional<std::string> read = ReadValue(attribute, text);
        if (!read)
            ThrowInvalidValue(attribute, text, attribute.GetXmlName());
        return Condition(attribute, filterOperator, *read);
    }

    const Attribute& attribute;
};

/** Begins a condition. Descriptors exist until the process exits, so conditions can be kept. */
template <class Attribute>
Comparand<Attribute> Where(const Attribute& attribute) {
    return Comparand<Attribute>(attribute);
}

}  // namespace tessera
