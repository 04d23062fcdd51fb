#include "tools/apiClient/terminalOutput.h"

#include <algorithm>

namespace apiclient {

namespace {

constexpr size_t kGap = 2;

/** Returns the length in bytes of the control character at the start of a string, or 0 if there is none. */
size_t ControlLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < ' ' || first == 0x7f) {
        return 1;
    }
    // U+0080 to U+009F, which some terminals interpret as well.
    return first == 0xc2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xa0 ? 2 : 0;
}

}  // namespace

std::string Printable(const std::string& text) {
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

size_t CountCharacters(std::string_view text) {
    return static_cast<size_t>(
        std::ranges::count_if(text, [](unsigned char c) { return (c & 0xc0) != 0x80; }));
}

std::string AlignColumns(const std::vector<std::vector<std::string>>& rows, std::vector<size_t> widths) {
    for (const std::vector<std::string>& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], CountCharacters(row[i]));
        }
    }
    std::string text;
    for (const std::vector<std::string>& row : rows) {
        std::string line;
        size_t end = 0;
        for (size_t i = 0; i < row.size(); ++i) {
            line += std::string(end - std::min(end, CountCharacters(line)), ' ') + row[i];
            end += widths[i] + kGap;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace apiclient
