#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "apiMgmt/common/xmlwrap/xmlElement.h"

/**
 * Parses documents of the API into a compact tree: all text in one block, interned tags, elements in one
 * vector. Uses expat, which this header hides. Rejects document type declarations, so entities cannot expand,
 * and more than 128 levels, 4000000 elements or 65536 tags. Ignores attributes, comments, processing
 * instructions and the text of elements with children. Keeps whitespace.
 */
namespace parser {

/** Parses a string and owns the resulting document. */
class XMLParser {
  public:
    /** `encoding` overrides the document's own unless it is null. */
    explicit XMLParser(const char* encoding = nullptr);
    ~XMLParser();
    /** Elements remain valid. */
    XMLParser(XMLParser&&) noexcept;
    XMLParser& operator=(XMLParser&&) noexcept;
    XMLParser(const XMLParser&) = delete;
    XMLParser& operator=(const XMLParser&) = delete;

    /** Returns whether the string is a well-formed document. Discards the previous document. */
    bool ParseXMLString(std::string_view text);

    /** Returns the document element. It tests false if the last string did not parse. */
    XMLElement GetDocumentElement() const;

    /** Returns the number of a tag name in this document; kNoTag if it does not occur. */
    XMLTag FindTag(std::string_view name) const;

    /** Returns why the last string did not parse, with line and column; empty if it did. */
    const std::string& GetError() const;

  private:
    std::unique_ptr<XMLDocument> document_;
    std::string encoding_;
    std::string error_;
};

}  // namespace parser
