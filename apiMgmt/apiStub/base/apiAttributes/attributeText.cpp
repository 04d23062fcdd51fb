#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr char kColonMark[] = "-co-";

}  // namespace

std::string JoinTexts(const std::vector<std::string>& texts, std::string_view separator) {
    std::string joined;
    bool is_first = true;
    for (const std::string& text : texts) {
        if (!is_first)
            joined += separator;
        is_first = false;
        joined += text;
    }
    return joined;
}

std::vector<std::string> WordsOf(const std::string& text) {
    std::vector<std::string> words;
    SplitChar(text, ' ', words);
    std::erase(words, "");
    return words;
}

std::string MarkColons(std::string text) {
    ReplaceAll(text, ":", kColonMark);
    return text;
}

std::string UnmarkColons(std::string text) {
    ReplaceAll(text, kColonMark, ":");
    return text;
}
