#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlDocument.h"

namespace parser {

/**
 * An element: a copyable handle, valid while its parser exists and parses nothing else. Tests false if it is
 * default-constructed or follows the last child or sibling.
 */
class XMLElement {
  public:
    XMLElement() = default;
    XMLElement(const XMLDocument* document, uint32_t node) : document_(document), node_(node) {}

    explicit operator bool() const { return document_ != nullptr; }

    /** The tag's name and its number. */
    std::string_view GetTagName() const;
    XMLTag GetTag() const;

    /**
     * Returns the text of an element without children, with entities resolved; empty for an element with
     * children.
     */
    std::string_view GetText() const;

    /** Returns the text of an element without children, else the children's markup. */
    std::string GetElementContent() const;

    /** Returns the children with that tag (case-sensitive), in document order. */
    std::vector<XMLElement> GetChildElemsByTagName(std::string_view tag) const;

    /** Returns the first child with that tag, or an element that tests false. */
    XMLElement GetFirstChildByTagName(std::string_view tag) const;

    XMLElement GetFirstChild() const;
    XMLElement GetNextSibling() const;

  private:
    const XMLDocument* document_ = nullptr;
    uint32_t node_ = 0;
};

}  // namespace parser
