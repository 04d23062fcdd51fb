#include "arraySim/model/eventRule.h"

#include <iterator>

#include "arraySim/model/numbers.h"

namespace arraysim {

namespace {

constexpr size_t kWordsBeforeArguments = 6;

struct ArgumentName {
    const char* name;
    EventArgument::What what;
};
constexpr ArgumentName kArgumentNames[] = {
    {"index", EventArgument::What::kIndex},
    {"index-1", EventArgument::What::kIndexBefore},
    {"row", EventArgument::What::kRow},
    {"parent", EventArgument::What::kParentIndex},
    {"parent-row", EventArgument::What::kParentRow},
};

[[noreturn]] void FailForm() {
    throw CatalogueError("an event reads: event TRAP ID ID ID of A [B [C]] [watches ATTR=GOOD]");
}

int32_t NumberIn(const std::string& word) {
    const std::optional<uint32_t> number = ReadUint32(word);
    if (!number || *number > INT32_MAX) {
        throw CatalogueError("'" + word + "' is no number of an event");
    }
    return static_cast<int32_t>(*number);
}

EventArgument ArgumentIn(const std::string& word) {
    for (const ArgumentName& each : kArgumentNames) {
        if (word == each.name) {
            return {each.what, 0};
        }
    }
    return {EventArgument::What::kNumber, NumberIn(word)};
}

void ReadWatched(const std::string& word, EventRule& rule) {
    const size_t equals = word.find('=');
    if (equals == std::string::npos) {
        FailForm();
    }
    rule.attribute = word.substr(0, equals);
    rule.good = word.substr(equals + 1);
}

}  // namespace

EventRule ParseEventRule(const std::vector<std::string>& words) {
    if (words.size() <= kWordsBeforeArguments || words[5] != "of") {
        FailForm();
    }
    EventRule rule;
    rule.trap = NumberIn(words[1]);
    for (size_t i = 0; i < std::size(rule.id); ++i) {
        rule.id[i] = NumberIn(words[2 + i]);
    }
    size_t end = words.size();
    if (words[end - 2] == "watches") {
        ReadWatched(words[end - 1], rule);
        end -= 2;
    }
    if (end <= kWordsBeforeArguments || end > kWordsBeforeArguments + std::size(rule.arguments)) {
        FailForm();
    }
    for (size_t i = kWordsBeforeArguments; i < end; ++i) {
        rule.arguments[i - kWordsBeforeArguments] = ArgumentIn(words[i]);
    }
    return rule;
}

}  // namespace arraysim
