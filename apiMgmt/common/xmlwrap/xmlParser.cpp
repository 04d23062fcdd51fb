#include "apiMgmt/common/xmlwrap/xmlParser.h"

#include "apiMgmt/common/xmlwrap/xmlTreeBuilder.h"

namespace parser {

XMLParser::XMLParser(const char* encoding) : encoding_(encoding ? encoding : "") {}

XMLParser::~XMLParser() = default;
XMLParser::XMLParser(XMLParser&&) noexcept = default;
XMLParser& XMLParser::operator=(XMLParser&&) noexcept = default;

bool XMLParser::ParseXMLString(std::string_view text) {
    document_.reset();  // first, so that there are never two trees in memory
    document_ = XMLTreeBuilder(encoding_.empty() ? nullptr : encoding_.c_str()).Build(text, error_);
    return document_ != nullptr;
}

XMLElement XMLParser::GetDocumentElement() const {
    return document_ ? XMLElement(document_.get(), 0) : XMLElement();
}

XMLTag XMLParser::FindTag(std::string_view name) const {
    return document_ ? document_->FindTag(name) : kNoTag;
}

const std::string& XMLParser::GetError() const {
    return error_;
}

}  // namespace parser
