#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace arraysim {

/** An error in a command or a line of a scenario: it cannot be parsed or executed. */
class CommandError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * Splits a command into words at spaces. "..." preserves spaces, and \" \\ \n \t are escape sequences within
 * quotes. Quotes may begin within a word: Name="two words". Throws CommandError.
 */
std::vector<std::string> SplitWords(std::string_view line);

/** Joins the words from a position on with single spaces. */
std::string JoinWords(const std::vector<std::string>& words, size_t from);

/** Quotes a word if SplitWords requires it. */
std::string QuoteWord(const std::string& word);

}  // namespace arraysim
