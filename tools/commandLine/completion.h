#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace commandline {

/** A command line with an unfinished last word, interpreted by CLI11's description of the program. */
struct UnfinishedLine {
    const CLI::App* command = nullptr;    ///< the program, or the subcommand that the line contains
    const CLI::Option* option = nullptr;  ///< whose value the last word is; null if there is none
    std::vector<std::string> arguments;   ///< the positional arguments before the last word
    std::string last;
};

using Candidates = std::vector<std::string>;

/** Returns candidates that the description does not contain, or std::nullopt if the description is
 * sufficient. */
using CandidateSource = std::function<std::optional<Candidates>(const UnfinishedLine&)>;

/**
 * Answers `PROGRAM --complete WORD...`, which the shells' completion runs (completion.bash, completion.zsh
 * and completion.fish): prints what the last word can become, one candidate per line. By default, these are
 * the options, subcommands and values that `app` describes. After a candidate that ends in "=", ".", "," or a
 * space, the word continues. Returns false if the command line is any other.
 */
bool PrintCandidates(const CLI::App& app, int argc, const char* const* argv, std::ostream& out,
                     const CandidateSource& source = {});

/** Adds the option --version. */
void AddVersionOption(CLI::App& app);

}  // namespace commandline
