#include "apiMgmt/common/xmlwrap/xmlTreeBuilder.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace parser {
namespace {

constexpr size_t kMaximumSize = size_t{1} << 30;  // offsets fit in 32 bits even if UTF-8 triples it
constexpr size_t kMaximumElements = 4'000'000;
constexpr size_t kMaximumTags = 65'536;
constexpr size_t kMaximumAttributesOfElement = 256;
constexpr size_t kMaximumAttributes = 100'000;  // expat keeps their names, although nothing reads them
constexpr size_t kMaximumTagLength = 1'048'576;
constexpr size_t kChunk = 65'536;

/**
 * Returns the length of the next chunk for expat. Ends it after a '>' if possible, because expat copies the
 * unparsed rest of a chunk.
 */
size_t LengthOfNextChunk(std::string_view rest) {
    if (rest.size() <= kChunk)
        return rest.size();
    const size_t last = rest.substr(0, kChunk).rfind('>');
    return last == std::string_view::npos ? kChunk : last + 1;
}

}  // namespace

XMLTreeBuilder::XMLTreeBuilder(const char* encoding) : expat_(XML_ParserCreate(encoding)) {
    if (!expat_)
        throw std::bad_alloc();
    XML_SetUserData(expat_, this);
    XML_SetElementHandler(expat_, OnStart, OnEnd);
    XML_SetCharacterDataHandler(expat_, OnText);
    XML_SetStartDoctypeDeclHandler(expat_, OnDoctype);
}

XMLTreeBuilder::~XMLTreeBuilder() {
    XML_ParserFree(expat_);
}

std::unique_ptr<XMLDocument> XMLTreeBuilder::Build(std::string_view text, std::string& error) {
    if (text.empty())
        error = "the document is empty";
    else if (text.size() > kMaximumSize)
        error = "the document is longer than 1 GiB";
    else if (ParseInChunks(text))
        error.clear();
    else
        error = rejection_.empty() ? WithPosition(XML_ErrorString(XML_GetErrorCode(expat_))) : rejection_;
    return error.empty() ? std::move(document_) : nullptr;
}

bool XMLTreeBuilder::ParseInChunks(std::string_view text) {
    size_t parsed = 0;
    while (parsed < text.size()) {
        const size_t length = LengthOfNextChunk(text.substr(parsed));
        const bool last = parsed + length == text.size();
        if (XML_Parse(expat_, text.data() + parsed, static_cast<int>(length), last) != XML_STATUS_OK)
            return false;
        if (parsed == 0 && !last)
            ReserveForRest(length, text.size());
        parsed += length;
        if (!last && parsed > kMaximumTagLength + static_cast<size_t>(XML_GetCurrentByteIndex(expat_))) {
            Reject("a tag or comment is too long");  // expat re-reads an unfinished one with each chunk
            return false;
        }
    }
    return true;
}

/**
 * Estimates the size of the tree from the first chunk. Growth by doubling would temporarily hold the tree
 * twice, and reserving for the worst case would take many times the text.
 */
void XMLTreeBuilder::ReserveForRest(size_t parsed, size_t total) {
    const double chunks = 1.05 * static_cast<double>(total) / static_cast<double>(parsed);
    const auto scaled = [chunks](size_t used) {
        return static_cast<size_t>(static_cast<double>(used) * chunks);
    };
    document_->nodes.reserve(std::min(scaled(document_->nodes.size()), kMaximumElements));
    document_->text.reserve(scaled(document_->text.size()));
}

// The handlers are called by C code, which exceptions must not cross. Some are still called after a
// rejection.

void XMLTreeBuilder::OnStart(void* self, const char* name, const char** attributes) {
    auto* builder = static_cast<XMLTreeBuilder*>(self);
    try {
        if (builder->rejection_.empty())
            builder->CountAttributes(attributes);
        if (builder->rejection_.empty())
            builder->StartElement(name);
    } catch (const std::bad_alloc&) {
        builder->Reject("out of memory");
    }
}

void XMLTreeBuilder::OnEnd(void* self, const char* /*name*/) {
    auto* builder = static_cast<XMLTreeBuilder*>(self);
    if (builder->rejection_.empty())
        builder->EndElement();
}

void XMLTreeBuilder::OnText(void* self, const char* text, int length) {
    auto* builder = static_cast<XMLTreeBuilder*>(self);
    try {
        if (builder->rejection_.empty())
            builder->AppendText(text, static_cast<size_t>(length));
    } catch (const std::bad_alloc&) {
        builder->Reject("out of memory");
    }
}

void XMLTreeBuilder::OnDoctype(void* self, const char* /*name*/, const char* /*system_id*/,
                               const char* /*public_id*/, int /*subset*/) {
    static_cast<XMLTreeBuilder*>(self)->Reject("a document type declaration is not accepted");
}

/** `attributes` alternates names and values and ends with a null pointer. */
void XMLTreeBuilder::CountAttributes(const char* const* attributes) {
    size_t count = 0;
    while (attributes[2 * count] != nullptr)
        ++count;
    attributes_ += count;
    if (count > kMaximumAttributesOfElement || attributes_ > kMaximumAttributes)
        Reject("too many attributes");
}

void XMLTreeBuilder::StartElement(const char* name) {
    XMLDocument& document = *document_;
    if (depth_ == kMaximumDepth)
        return Reject("elements are nested too deeply");
    if (document.nodes.size() == kMaximumElements)
        return Reject("too many elements");
    const XMLTag tag = TagNumber(name);
    if (tag == kNoTag)
        return Reject("too many different tags");

    const auto node = static_cast<uint32_t>(document.nodes.size());
    if (depth_ > 0) {
        OpenElement& parent = open_[depth_ - 1];
        if (parent.last_child == kNoNode) {
            document.nodes[parent.node].first_child = node;
            document.text.resize(document.nodes[parent.node].text_offset);  // only leaves have text
        } else {
            document.nodes[parent.last_child].next_sibling = node;
        }
        parent.last_child = node;
    }
    document.nodes.push_back({.tag = tag, .text_offset = static_cast<uint32_t>(document.text.size())});
    open_[depth_++] = {.node = node, .last_child = kNoNode};
}

/** Returns the number of a tag; kNoTag if there are too many. */
XMLTag XMLTreeBuilder::TagNumber(const char* name) {
    XMLDocument& document = *document_;
    if (!document.tag_names.empty()) {
        const XMLTag guess = follower_[previous_tag_];
        if (std::strcmp(document.tag_names[guess]->c_str(), name) == 0)
            return previous_tag_ = guess;
    }
    XMLTag tag = document.FindTag(name);
    if (tag == kNoTag)
        tag = NewTagNumber(name);
    if (tag == kNoTag)
        return kNoTag;
    follower_[previous_tag_] = tag;
    return previous_tag_ = tag;
}

XMLTag XMLTreeBuilder::NewTagNumber(const char* name) {
    XMLDocument& document = *document_;
    const auto tag = static_cast<XMLTag>(document.tag_names.size());
    if (tag == kMaximumTags)
        return kNoTag;
    const auto entry = document.tag_numbers.emplace(name, tag).first;
    document.tag_names.push_back(&entry->first);
    follower_.push_back(0);
    return tag;
}

void XMLTreeBuilder::EndElement() {
    const OpenElement& closed = open_[--depth_];
    if (closed.last_child != kNoNode)
        return;
    XMLNode& leaf = document_->nodes[closed.node];
    leaf.text_length = static_cast<uint32_t>(document_->text.size()) - leaf.text_offset;
}

void XMLTreeBuilder::AppendText(const char* text, size_t length) {
    if (open_[depth_ - 1].last_child == kNoNode)
        document_->text.append(text, length);
}

void XMLTreeBuilder::Reject(const char* reason) {
    rejection_ = WithPosition(reason);
    XML_StopParser(expat_, XML_FALSE);
}

std::string XMLTreeBuilder::WithPosition(const char* reason) const {
    return "line " + std::to_string(XML_GetCurrentLineNumber(expat_)) + ", column " +
           std::to_string(XML_GetCurrentColumnNumber(expat_) + 1) + ": " + reason;
}

}  // namespace parser
