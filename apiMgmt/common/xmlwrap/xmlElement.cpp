#include "apiMgmt/common/xmlwrap/xmlElement.h"

namespace parser {
namespace {

/** A carriage return is escaped, because the next parser would turn it into a newline. */
void AppendEscaped(std::string& out, std::string_view text) {
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '\r':
                out += "&#13;";
                break;
            default:
                out += c;
        }
    }
}

void AppendEndTag(std::string& out, const std::string& name) {
    out += "</";
    out += name;
    out += '>';
}

/**
 * Returns the markup of a node's children. Iterative, because the peer determines the depth of a document.
 */
std::string MarkupOfChildren(const XMLDocument& document, uint32_t parent) {
    std::string out;
    std::vector<uint32_t> open;
    uint32_t current = document.nodes[parent].first_child;
    while (current != kNoNode) {
        const XMLNode& node = document.nodes[current];
        const std::string& name = *document.tag_names[node.tag];
        out += '<';
        out += name;
        out += '>';
        if (node.first_child != kNoNode) {
            open.push_back(current);
            current = node.first_child;
            continue;
        }
        AppendEscaped(out, document.TextOf(node));
        AppendEndTag(out, name);
        current = node.next_sibling;
        while (current == kNoNode && !open.empty()) {
            const XMLNode& closed = document.nodes[open.back()];
            open.pop_back();
            AppendEndTag(out, *document.tag_names[closed.tag]);
            current = closed.next_sibling;
        }
    }
    return out;
}

}  // namespace

std::string_view XMLElement::GetTagName() const {
    if (!document_)
        return {};
    return *document_->tag_names[document_->nodes[node_].tag];
}

XMLTag XMLElement::GetTag() const {
    return document_ ? document_->nodes[node_].tag : kNoTag;
}

std::string_view XMLElement::GetText() const {
    if (!document_)
        return {};
    return document_->TextOf(document_->nodes[node_]);
}

std::string XMLElement::GetElementContent() const {
    if (!document_)
        return {};
    if (document_->nodes[node_].first_child == kNoNode)
        return std::string(GetText());
    return MarkupOfChildren(*document_, node_);
}

std::vector<XMLElement> XMLElement::GetChildElemsByTagName(std::string_view tag) const {
    std::vector<XMLElement> found;
    const XMLTag number = document_ ? document_->FindTag(tag) : kNoTag;
    if (number == kNoTag)
        return found;
    for (XMLElement child = GetFirstChild(); child; child = child.GetNextSibling()) {
        if (child.GetTag() == number)
            found.push_back(child);
    }
    return found;
}

XMLElement XMLElement::GetFirstChildByTagName(std::string_view tag) const {
    const XMLTag number = document_ ? document_->FindTag(tag) : kNoTag;
    if (number == kNoTag)
        return {};
    XMLElement child = GetFirstChild();
    while (child && child.GetTag() != number)
        child = child.GetNextSibling();
    return child;
}

XMLElement XMLElement::GetFirstChild() const {
    if (!document_ || document_->nodes[node_].first_child == kNoNode)
        return {};
    return XMLElement(document_, document_->nodes[node_].first_child);
}

XMLElement XMLElement::GetNextSibling() const {
    if (!document_ || document_->nodes[node_].next_sibling == kNoNode)
        return {};
    return XMLElement(document_, document_->nodes[node_].next_sibling);
}

}  // namespace parser
