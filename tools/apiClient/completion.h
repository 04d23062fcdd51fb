#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace apiclient {

/**
 * Returns what the last word of a command line can become: objects, commands, arguments, values of
 * enumerations, conditions, columns, and the options of the program that `app` describes, with their values.
 * words: the words before it, without the program's name. After a candidate that ends in "=", ".", "," or a
 * space, the word continues. File names are left to the shell.
 */
std::vector<std::string> Completions(const CLI::App& app, const std::vector<std::string>& words,
                                     const std::string& last);

}  // namespace apiclient
