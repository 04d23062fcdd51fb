#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace parser {

/** Number of a tag name, valid within one document. */
using XMLTag = uint32_t;
inline constexpr XMLTag kNoTag = UINT32_MAX;

inline constexpr uint32_t kNoNode = UINT32_MAX;

/** Maximum nesting of elements; the document element is level 1. */
inline constexpr uint32_t kMaximumDepth = 128;

/** An element. Kept small, because a full array's response has some 200000. */
struct XMLNode {
    XMLTag tag;
    uint32_t first_child = kNoNode;
    uint32_t next_sibling = kNoNode;
    uint32_t text_offset;
    uint32_t text_length = 0;
};

/** A parsed document. Nodes are in document order; the document element is number 0. */
class XMLDocument {
  public:
    std::vector<XMLNode> nodes;
    /** The text of all elements without children, concatenated. */
    std::string text;
    /** Names in the order of their first appearance, owned by tag_numbers. */
    std::vector<const std::string*> tag_names;
    /** An ordered map, because crafted names cannot slow it down. It is rarely searched. */
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
