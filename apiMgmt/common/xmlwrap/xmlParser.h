#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/**
 * Documents of the API, parsed once into a compact tree: all text in one block, tags interned, elements
 * in one vector. Over expat, which stays hidden behind this header. Document type declarations are
 * refused, so that entities cannot expand; so are more than 128 levels, 4000000 elements or 65536 tags.
 * Attributes, comments and processing instructions are passed over; so is the text of an element that
 * has child elements. White space around a text is kept.
 */
namespace parser {

class XMLDocument;

/** A number for a tag name, valid within one document. */
using XMLTag = uint32_t;
inline constexpr XMLTag kNoTag = UINT32_MAX;

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

/** Parses a text and owns the document that comes of it. */
class XMLParser {
  public:
    /** encoding: overrides the document's own; null leaves it to the document. */
    explicit XMLParser(const char* encoding = nullptr);
    ~XMLParser();
    /** Elements stay valid. */
    XMLParser(XMLParser&&) noexcept;
    XMLParser& operator=(XMLParser&&) noexcept;
    XMLParser(const XMLParser&) = delete;
    XMLParser& operator=(const XMLParser&) = delete;

    /** True when the text is one well-formed document. Discards what was parsed before. */
    bool ParseXMLString(std::string_view text);

    /** The document element; tests false when the last text did not parse. */
    XMLElement GetDocumentElement() const;

    /** The number of a tag name in this document, kNoTag when it does not occur. */
    XMLTag FindTag(std::string_view name) const;

    /** Why the last text did not parse, with line and column; empty when it did. */
    const std::string& GetError() const;

  private:
    std::unique_ptr<XMLDocument> document_;
    std::string encoding_;
    std::string error_;
};

}  // namespace parser
