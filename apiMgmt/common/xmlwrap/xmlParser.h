#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "apiMgmt/common/xmlwrap/xmlElement.h"

/**
 * Documents of the API, parsed once into a compact tree: all text in one block, tags interned, elements
 * in one vector. Over expat, which stays hidden behind this header. Document type declarations are
 * refused, so that entities cannot expand; so are more than 128 levels, 4000000 elements or 65536 tags.
 * Attributes, comments and processing instructions are passed over; so is the text of an element that
 * has child elements. White space around a text is kept.
 */
namespace parser {

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
