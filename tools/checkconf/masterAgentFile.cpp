#include "tools/checkconf/masterAgentFile.h"

#include <algorithm>
#include <sstream>

#include "apiMgmt/common/utils/stringUtil.h"

namespace checkconf {

namespace {

constexpr std::string_view kWhitespace = " \t\r";

/** Splits at whitespace, except within double or single quotes; stops at a comment. */
MasterAgentFile::Directive SplitWords(std::string_view line) {
    MasterAgentFile::Directive words;
    while (true) {
        line.remove_prefix(std::min(line.find_first_not_of(kWhitespace), line.size()));
        if (line.empty() || line[0] == '#')
            return words;
        const bool is_quoted = line[0] == '"' || line[0] == '\'';
        const size_t begin = is_quoted ? 1 : 0;
        const size_t end =
            std::min(is_quoted ? line.find(line[0], 1) : line.find_first_of(kWhitespace), line.size());
        words.emplace_back(line.substr(begin, end - begin));
        line.remove_prefix(std::min(end + begin, line.size()));
    }
}

}  // namespace

MasterAgentFile::MasterAgentFile(const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        Directive words = SplitWords(line);
        if (words.empty())
            continue;
        words[0] = ToLower(words[0]);
        Trim(line);
        std::string rest = line.substr(std::min(line.find_first_of(kWhitespace), line.size()));
        Trim(rest);
        last_texts_[words[0]] = rest;
        directives_.push_back(std::move(words));
    }
}

std::vector<MasterAgentFile::Directive> MasterAgentFile::Find(
    std::initializer_list<std::string_view> names) const {
    std::vector<Directive> found;
    std::ranges::copy_if(directives_, std::back_inserter(found), [&](const Directive& words) {
        return std::ranges::find(names, words[0]) != names.end();
    });
    return found;
}

std::string MasterAgentFile::LastText(const std::string& name) const {
    const auto found = last_texts_.find(name);
    return found == last_texts_.end() ? "" : found->second;
}

std::optional<int> MasterAgentFile::Number(std::string_view name) const {
    const std::vector<Directive> found = Find({name});
    if (found.empty() || found.back().size() < 2 ||
        found.back()[1].find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    return ParseInt(found.back()[1]);
}

}  // namespace checkconf
