#pragma once

#include <string>
#include <string_view>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

namespace parser {
class XMLElement;
}

/** A structured argument of a call: a set of texts that travels as an element within an attribute. */
class BASEApiMethodObject : public METHODArgument {
  public:
    virtual const std::string& GetObjectName() const = 0;
    virtual const ATTRIBUTEList& GetAttributeList() const;

    /** An empty name is ignored. */
    void SetAttribute(std::string_view name, std::string_view text);
    /** Empty when the attribute is absent. */
    std::string GetAttribute(std::string_view name) const;
    bool HasAttribute(std::string_view name) const { return attributes.Contains(name); }
    const ATTRIBUTEMap& GetAttributes() const { return attributes; }

    /** The argument as an element; escape: values go through EscapeXml. Attributes without a descriptor are
       left out. */
    std::string ToXml(bool escape) const override;

    /** Takes over the child elements, sending each value through UnescapeXml. */
    void FromXml(const parser::XMLElement& element);

    /** Takes over an element whose angle brackets may be escaped. A text that is no document, or one of
       another name (letter case aside), changes nothing. */
    void FromXmlText(const std::string& text);

  protected:
    BASEApiMethodObject() = default;
    BASEApiMethodObject(const BASEApiMethodObject&) = default;
    BASEApiMethodObject& operator=(const BASEApiMethodObject&) = default;

  private:
    ATTRIBUTEMap attributes;
};
