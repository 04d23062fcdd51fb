#include <iterator>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

struct Entity {
    char character;
    std::string_view reference;
};

// The angle brackets come first: some callers want only those.
constexpr Entity kEntities[] = {
    {'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}, {'\'', "&apos;"}, {'"', "&quot;"}};
constexpr size_t kAngleBracketCount = 2;

// Whatever the control character was, a line feed stands for it.
constexpr std::string_view kControlReference = "&#x0a;";

size_t EntityCount(bool angle_brackets_only) {
    return angle_brackets_only ? kAngleBracketCount : std::size(kEntities);
}

void AppendEscaped(std::string& escaped, char c, bool angle_brackets_only) {
    for (size_t i = 0; i < EntityCount(angle_brackets_only); ++i) {
        if (kEntities[i].character == c) {
            escaped += kEntities[i].reference;
            return;
        }
    }
    if (!angle_brackets_only && static_cast<unsigned char>(c) < 32) {
        escaped += kControlReference;
    } else {
        escaped += c;
    }
}

const Entity* FindEntityAtStart(std::string_view text, bool angle_brackets_only) {
    for (size_t i = 0; i < EntityCount(angle_brackets_only); ++i) {
        if (text.starts_with(kEntities[i].reference)) {
            return &kEntities[i];
        }
    }
    return nullptr;
}

}  // namespace

std::string EscapeXml(const std::string& text, bool angle_brackets_only) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        AppendEscaped(escaped, c, angle_brackets_only);
    }
    return escaped;
}

std::string UnescapeXml(const std::string& text, bool angle_brackets_only) {
    std::string plain;
    plain.reserve(text.size());
    std::string_view rest = text;
    while (!rest.empty()) {
        const Entity* entity = rest.front() == '&' ? FindEntityAtStart(rest, angle_brackets_only) : nullptr;
        plain += entity == nullptr ? rest.front() : entity->character;
        rest.remove_prefix(entity == nullptr ? 1 : entity->reference.size());
    }
    return plain;
}
