#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlDocument.h"

namespace parser {

/** One element: a light handle, copied freely, valid as long as its parser lives and parses nothing
    else. A default one, and one behind the last child or sibling, tests false. */
class XMLElement {
  public:
    XMLElement() = default;
    XMLElement(const XMLDocument* document, uint32_t node) : document_(document), node_(node) {}

    explicit operator bool() const { return document_ != nullptr; }

    /** The tag's text and its number. */
    std::string_view GetTagName() const;
    XMLTag GetTag() const;

    /** The text of an element without child elements, entities resolved; empty for one with children. */
    std::string_view GetText() const;

    /** The text of an element; for one with child elements their markup. */
    std::string GetElementContent() const;

    /** The child elements with that tag, compared exactly, in document order; possibly none. */
    std::vector<XMLElement> GetChildElemsByTagName(std::string_view tag) const;

    /** The first child element with that tag; one that tests false when there is none. */
    XMLElement GetFirstChildByTagName(std::string_view tag) const;

    XMLElement GetFirstChild() const;
    XMLElement GetNextSibling() const;

  private:
    const XMLDocument* document_ = nullptr;
    uint32_t node_ = 0;
};

}  // namespace parser
