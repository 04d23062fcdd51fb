#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace arraysim {

/** A command or a line of a scenario that cannot be parsed or carried out. */
class CommandError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * The words of a command: separated by blanks, "..." keeps blanks, and inside quotes \" \\ \n \t stand for
 * those characters. Quotes may begin within a word: Name="two words". Throws CommandError.
 */
std::vector<std::string> SplitWords(std::string_view line);

/** The words from a position on, joined by one blank. */
std::string JoinWords(const std::vector<std::string>& words, size_t from);

/** A word as SplitWords reads it back: in quotes when it needs them. */
std::string QuoteWord(const std::string& word);

}  // namespace arraysim
