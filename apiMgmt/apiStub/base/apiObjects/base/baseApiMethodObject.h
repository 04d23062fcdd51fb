#pragma once

#include <string>
#include <string_view>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

namespace parser {
class XMLElement;
}

/** A structured argument of a call: a set of strings that is written as an element within an attribute. */
class BASEApiMethodObject : public METHODArgument {
  public:
    virtual const std::string& GetObjectName() const = 0;
    virtual const ATTRIBUTEList& GetAttributeList() const;

    /** Ignores an empty name. */
    void SetAttribute(std::string_view name, std::string_view text);
    /** Returns "" if the attribute is absent. */
    std::string GetAttribute(std::string_view name) const;
    bool HasAttribute(std::string_view name) const { return attributes.Contains(name); }
    const ATTRIBUTEMap& GetAttributes() const { return attributes; }

    /**
     * Returns the argument as an element. If `escape` is set, values are escaped with EscapeXml. Omits
     * attributes without a descriptor.
     */
    std::string ToXml(bool escape) const override;

    /** Sets the attributes from the child elements, unescaping each value with UnescapeXml. */
    void FromXml(const parser::XMLElement& element);

    /**
     * Sets the attributes from an element whose angle brackets may be escaped. Does nothing if the string is
     * not a document or has another name (case-insensitive).
     */
    void FromXmlText(const std::string& text);

  protected:
    BASEApiMethodObject() = default;
    BASEApiMethodObject(const BASEApiMethodObject&) = default;
    BASEApiMethodObject& operator=(const BASEApiMethodObject&) = default;

  private:
    ATTRIBUTEMap attributes;
};
