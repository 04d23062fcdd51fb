#pragma once

#include <string>
#include <vector>

/**
 * What the last word of a command line can become: objects, commands, arguments with values of enumerations,
 * conditions, columns, options. words: those before it, without the program's name. A candidate that ends in
 * "=",
 * "." , "," or a blank goes on. File names are for the shell.
 */
std::vector<std::string> Completions(const std::vector<std::string>& words, const std::string& last);
