#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "apiMgmt/common/xmlwrap/xmlDocument.h"

struct XML_ParserStruct;

namespace parser {

/** Parses one string into a document. Not reusable. */
class XMLTreeBuilder {
  public:
    /** `encoding` is as for XMLParser. */
    explicit XMLTreeBuilder(const char* encoding);
    ~XMLTreeBuilder();
    XMLTreeBuilder(const XMLTreeBuilder&) = delete;
    XMLTreeBuilder& operator=(const XMLTreeBuilder&) = delete;

    /** Returns the document, or null with the reason in `error`. */
    std::unique_ptr<XMLDocument> Build(std::string_view text, std::string& error);

  private:
    static void OnStart(void* self, const char* name, const char** attributes);
    static void OnEnd(void* self, const char* name);
    static void OnText(void* self, const char* text, int length);
    static void OnDoctype(void* self, const char* name, const char* system_id, const char* public_id,
                          int subset);

    bool ParseInChunks(std::string_view text);
    void ReserveForRest(size_t parsed, size_t total);
    void CountAttributes(const char* const* attributes);
    void StartElement(const char* name);
    XMLTag TagNumber(const char* name);
    XMLTag NewTagNumber(const char* name);
    void EndElement();
    void AppendText(const char* text, size_t length);
    void Reject(const char* reason);
    std::string WithPosition(const char* reason) const;

    /** An element whose end tag has not been read. */
    struct OpenElement {
        uint32_t node;
        uint32_t last_child;
    };

    XML_ParserStruct* expat_;
    std::unique_ptr<XMLDocument> document_ = std::make_unique<XMLDocument>();
    std::array<OpenElement, kMaximumDepth> open_;
    uint32_t depth_ = 0;
    /**
     * The tag that followed each tag last time, because objects of a kind list their attributes in the same
     * order.
     */
    std::vector<XMLTag> follower_;
    XMLTag previous_tag_ = 0;
    size_t attributes_ = 0;
    std::string rejection_;
};

}  // namespace parser
