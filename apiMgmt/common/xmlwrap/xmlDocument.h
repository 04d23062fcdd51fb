#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace parser {

/** A number for a tag name, valid within one document. */
using XMLTag = uint32_t;
inline constexpr XMLTag kNoTag = UINT32_MAX;

inline constexpr uint32_t kNoNode = UINT32_MAX;

/** The deepest nesting that is accepted, the document element being the first level. */
inline constexpr uint32_t kGreatestDepth = 128;

/** One element. Kept small: a full array's answer has some 200000 of them. */
struct XMLNode {
    XMLTag tag;
    uint32_t first_child = kNoNode;
    uint32_t next_sibling = kNoNode;
    uint32_t text_offset;
    uint32_t text_length = 0;
};

/** What came of a text: nodes in document order, the document element being number 0. */
class XMLDocument {
  public:
    std::vector<XMLNode> nodes;
    /** The text of all elements without children, end to end. */
    std::string text;
    /** Names in order of first appearance; they belong to tag_numbers. */
    std::vector<const std::string*> tag_names;
    /** An ordered map: no choice of names makes it slow, and the parse rarely asks it. */
    std::map<std::string, XMLTag, std::less<>> tag_numbers;

    XMLTag FindTag(std::string_view name) const {
        auto found = tag_numbers.find(name);
        return found == tag_numbers.end() ? kNoTag : found->second;
    }

    std::string_view TextOf(const XMLNode& node) const {
        return std::string_view(text).substr(node.text_offset, node.text_length);
    }
};

}  // namespace parser
