#pragma once

#include <string>
#include <string_view>
#include <vector>

/** Texts of several values, as the attribute classes write them. */

std::string JoinTexts(const std::vector<std::string>& texts, std::string_view separator);

/** The pieces between blanks, empty ones left out. */
std::vector<std::string> WordsOf(const std::string& text);

/** A ":" within an item of a list that is joined by ":" travels as a mark. */
std::string MarkColons(std::string text);
std::string UnmarkColons(std::string text);
