#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

/**
 * Returns what the last word of a command line can become: objects, commands, arguments with values of
 * enumerations, conditions, columns, and the options of the program that `app` describes with their values.
 * words: those before it, without the program's name. A candidate that ends in "=", ".", "," or a space goes
 * on. File names are left to the shell.
 */
std::vector<std::string> Completions(const CLI::App& app, const std::vector<std::string>& words,
                                     const std::string& last);
