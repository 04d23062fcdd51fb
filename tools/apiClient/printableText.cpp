#include "tools/apiClient/printableText.h"

#include <string_view>

namespace {

/** Bytes of the control character at the start of a text, 0 when there is none. */
size_t ControlLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < ' ' || first == 0x7f) {
        return 1;
    }
    // U+0080 to U+009F, which some terminals obey as well.
    return first == 0xc2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xa0 ? 2 : 0;
}

}  // namespace

std::string PrintableText(const std::string& text) {
    std::string printable;
    for (std::string_view rest = text; !rest.empty();) {
        const size_t control = ControlLength(rest);
        if (rest[0] == '\n') {
            printable += "\\n";
        } else {
            printable += control > 0 ? '?' : rest[0];
        }
        rest.remove_prefix(control > 0 ? control : 1);
    }
    return printable;
}
