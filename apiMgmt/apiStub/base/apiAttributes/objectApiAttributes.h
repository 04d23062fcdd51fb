#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"
#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"

/**
 * Attributes that refer to objects or contain structured arguments. Pointers passed to ToText remain the
 * caller's.
 */

/** A reference: instance ID, type and name of an object, separated by spaces. */
class OBJECTApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Returns "" for null. */
    std::string ToText(const APIObjectInstance* value) const;
    /** Returns null if the string is not a reference. */
    std::unique_ptr<APIObjectInstance> FromText(const std::string& text) const;
};

/** References joined by ":". Each ":" within a reference is written as "-co-". */
class OBJECTARRAYApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Null pointers are skipped. */
    std::string ToText(const std::vector<const APIObjectInstance*>& values) const;
    /** Pieces that are not references are skipped. */
    std::vector<std::unique_ptr<APIObjectInstance>> FromText(const std::string& text) const;
};

/** Interface of a structured argument for the attribute that contains it. */
class METHODArgument {
  public:
    virtual ~METHODArgument() = default;

    /** Returns the argument as an element. If `escape` is set, values are escaped with EscapeXml. */
    virtual std::string ToXml(bool escape) const = 0;
};

/** A structured argument, written as an element. The argument's FromXmlText reads it. */
class METHODOBJECTApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Returns "" for null. */
    std::string ToText(const METHODArgument* value) const;
};

/** Structured arguments, concatenated. */
class METHODOBJECTARRAYApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Null pointers are skipped. */
    template <class Argument = METHODArgument>
    std::string ToText(const std::vector<const Argument*>& values) const {
        std::string elements;
        for (const Argument* value : values)
            elements += value == nullptr ? std::string() : value->ToXml(true);
        return elements;
    }
};

/** The filter of a list. */
class GETLISTFILTERApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Returns "" for null. */
    std::string ToText(const FILTERList* value) const;
    /** Returns null if the string is not a filter. */
    std::unique_ptr<FILTERList> FromText(const std::string& text) const;
};
