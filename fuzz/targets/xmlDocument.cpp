// Parses bytes as a document, and escapes them as a string. A document that parses must be within the limits,
// and the markup of its elements must parse to the same elements, also when the parser receives it in two
// chunks. An escaped string must parse to the original.

#include <algorithm>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlDocument.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "fuzz/lib/fuzzCheck.h"

namespace {

bool HasControlCharacter(const std::string& text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 32)
            return true;
    }
    return false;
}

void CheckEscapes(const std::string& text) {
    UnescapeXml(text, true);
    UnescapeXml(text, false);
    if (HasControlCharacter(text))
        return;
    const std::string escaped = EscapeXml(text, false);
    if (UnescapeXml(escaped, false) != text)
        FuzzFail("does not survive escaping as '" + escaped + "'");
    parser::XMLParser parser;
    if (parser.ParseXMLString("<a>" + escaped + "</a>"))
        if (parser.GetDocumentElement().GetText() != text)
            FuzzFail("does not survive parsing of '" + escaped + "'");
}

// Appends the tags and texts of the elements, without the markup between them.
void Outline(const parser::XMLElement& element, uint32_t depth, std::string& outline) {
    FuzzCheck(depth <= parser::kMaximumDepth, "an element is nested too deeply");
    outline.append("<").append(element.GetTagName()).append(">").append(element.GetText());
    for (parser::XMLElement child = element.GetFirstChild(); child; child = child.GetNextSibling())
        Outline(child, depth + 1, outline);
    outline.append("</>");
}

std::string OutlineOf(const parser::XMLElement& root) {
    std::string outline;
    Outline(root, 1, outline);
    return outline;
}

// The parser passes a document on in chunks and prefers to split it after a '>'. It splits a text or tag only
// if the chunk contains no '>', which the padding achieves here.
void CheckChunks(const std::string& text) {
    constexpr size_t kChunk = 65'536;
    const size_t cuts = std::min({text.find('>'), text.size(), kChunk}) + 1;
    const size_t cut = std::hash<std::string>()(text) % cuts;
    const std::string padding(kChunk - cut, 'x');
    parser::XMLParser whole;
    parser::XMLParser chunks;
    const bool parses = whole.ParseXMLString("<r>" + text + "</r>");
    FuzzCheck(chunks.ParseXMLString("<r>" + padding + text + "</r>") == parses,
              "only the document in chunks is accepted, or only the whole");
    if (!parses)
        return;
    const parser::XMLElement root = chunks.GetDocumentElement();
    std::string outline = OutlineOf(root);
    if (!root.GetFirstChild())
        outline.erase(std::string_view("<r>").size(), padding.size());
    FuzzCheck(outline == OutlineOf(whole.GetDocumentElement()), "chunks make a different document");
}

void CheckDocument(const std::string& text) {
    parser::XMLParser parser;
    if (!parser.ParseXMLString(text)) {
        FuzzCheck(!parser.GetError().empty() && !parser.GetDocumentElement(), "failure without a message");
        return;
    }
    const parser::XMLElement root = parser.GetDocumentElement();
    FuzzCheck(static_cast<bool>(root), "a document without an element");
    const std::string tag(root.GetTagName());
    parser::XMLParser again;
    std::string content = root.GetElementContent();
    if (HasControlCharacter(content))
        return;  // escaping turns them into line feeds
    if (!root.GetFirstChild())
        content = EscapeXml(content, false);
    if (!again.ParseXMLString("<" + tag + ">" + content + "</" + tag + ">"))
        FuzzFail("its content does not parse: " + again.GetError());
    FuzzCheck(OutlineOf(again.GetDocumentElement()) == OutlineOf(root), "its content has changed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    CheckEscapes(text);
    CheckChunks(text);
    CheckDocument(text);
    return 0;
}
