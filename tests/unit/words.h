#pragma once

#include <string>
#include <vector>

/** Splits a command line into words. Single quotes preserve spaces and empty words. */
inline std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    bool is_quoted = false;
    bool is_between = true;
    for (const char each : line) {
        if (each == ' ' && !is_quoted) {
            is_between = true;
            continue;
        }
        if (is_between)
            words.emplace_back();
        is_between = false;
        if (each == '\'')
            is_quoted = !is_quoted;
        else
            words.back() += each;
    }
    return words;
}

/** The words of a command line as the arguments of a program. */
class Arguments {
  public:
    explicit Arguments(const std::string& line) : words_(Words(line)) {
        for (const std::string& word : words_)
            pointers_.push_back(word.c_str());
    }
    int count() const { return static_cast<int>(pointers_.size()); }
    const char** values() { return pointers_.data(); }

  private:
    std::vector<std::string> words_;
    std::vector<const char*> pointers_;
};
