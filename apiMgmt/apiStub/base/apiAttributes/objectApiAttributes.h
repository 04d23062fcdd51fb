#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"
#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"

/** Attributes that refer to objects or carry structured arguments. None but the reader of a text owns
 * anything. */

/** A reference: id, type and name of an object, separated by blanks. */
class OBJECTApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Empty for null. */
    std::string ToText(const APIObjectInstance* value) const;
    /** Null for a text that is no reference. */
    std::unique_ptr<APIObjectInstance> FromText(const std::string& text) const;
};

/** References joined by ":"; one within a reference travels as "-co-". */
class OBJECTARRAYApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Null pointers are passed over. */
    std::string ToText(const std::vector<const APIObjectInstance*>& values) const;
    /** Pieces that are no references are left out. */
    std::vector<std::unique_ptr<APIObjectInstance>> FromText(const std::string& text) const;
};

/** What a structured argument is to the attribute that carries it. */
class METHODArgument {
  public:
    virtual ~METHODArgument() = default;

    /** The argument as an element; escape: values go through EscapeXml. */
    virtual std::string ToXml(bool escape) const = 0;
};

/** A structured argument, which travels as an element. Read back with FromXmlText of the argument itself. */
class METHODOBJECTApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Empty for null. */
    std::string ToText(const METHODArgument* value) const;
};

/** Structured arguments, one behind the other. */
class METHODOBJECTARRAYApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    /** Null pointers are passed over. */
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

    /** Empty for null. */
    std::string ToText(const FILTERList* value) const;
    /** Null for a text that is no filter. */
    std::unique_ptr<FILTERList> FromText(const std::string& text) const;
};
