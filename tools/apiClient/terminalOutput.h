#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace apiclient {

/**
 * Makes a string from the array safe for a terminal: on one line, line feeds as \n, with a question mark for
 * each control character.
 */
std::string Printable(const std::string& text);

/** Returns the number of characters of a UTF-8 string. */
size_t CountCharacters(std::string_view text);

/**
 * Aligns the cells of rows in columns, two spaces apart. widths: minimum width of each column, in characters;
 * columns beyond its end have none.
 */
std::string AlignColumns(const std::vector<std::vector<std::string>>& rows, std::vector<size_t> widths = {});

}  // namespace apiclient
