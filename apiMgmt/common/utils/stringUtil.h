#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** String utilities. They are stateless and always use the C locale. */

/**
 * Copies at most size - 1 characters and appends a zero. Returns destination, which must not be null. Does
 * nothing if size is 0. A null source counts as empty.
 */
char* SafeStrncpy(char* destination, const char* source, size_t size);

/** Format like printf. If the format is invalid, return a string that says so. Do not throw. */
[[gnu::format(printf, 1, 2)]] std::string FormatString(const char* format, ...);
[[gnu::format(printf, 1, 0)]] std::string FormatStringV(const char* format, va_list arguments);

/** Remove whitespace (space, \f \n \r \t \v) in place. */
void Trim(std::string& text);
void TrimLeft(std::string& text);
void TrimRight(std::string& text);

std::string ToLower(std::string_view text);

/** Returns a negative number, 0 or a positive number, like strcasecmp. */
int CompareNoCase(std::string_view left, std::string_view right);

/**
 * Parses the number at the start of a string like atoi, but returns the nearest int for a number out of
 * range.
 */
int ParseInt(std::string_view text);

/** Parses an unsigned 64-bit number in the same way. Returns 0 for a negative number. */
uint64_t ParseUnsigned(std::string_view text);

/** Returns true for "true" (case-insensitive) and for a string whose integer value is 1. */
bool ParseBool(const std::string& text);

/** Parses like strtod. Sets *end to the first character after the number, unless end is null. */
double ParseDouble(const std::string& text, const char** end = nullptr);

/**
 * Parses the finite decimal number at the start of a string ("-1.5e3") and sets *end to the first character
 * after it. Unlike strtod, it rejects whitespace, a plus sign, hexadecimal digits, nan and inf. If it rejects
 * the string, finds no number or finds one that a double cannot represent, it returns std::nullopt and leaves
 * *end unchanged.
 */
std::optional<double> ParseDecimal(const std::string& text, const char** end);

/** Returns whether the string, apart from surrounding whitespace, is one number for strtod. */
bool IsNumeric(const std::string& text);

/**
 * Replaces in place, from left to right, without searching inserted strings. An empty old_text changes
 * nothing.
 */
void ReplaceAll(std::string& text, const std::string& old_text, const std::string& new_text);

/**
 * Splits text at each delimiter and replaces the contents of pieces. A delimiter at the very end yields an
 * empty last piece. If limit is not 0, there are at most that many pieces, the last of which contains the
 * rest. An empty string yields no pieces, and an empty delimiter yields one.
 */
void Split(const std::string& text, const std::string& delimiter, std::vector<std::string>& pieces,
           size_t limit = 0);

/** Like Split without a limit, but a delimiter at the very end yields no empty last piece. */
void SplitChar(const std::string& text, char delimiter, std::vector<std::string>& pieces);

/**
 * Escapes < and >. Unless angle_brackets_only is set, also escapes & ' " and replaces each character below 32
 * by a reference to a line feed.
 */
std::string EscapeXml(const std::string& text, bool angle_brackets_only);

/** Reverses EscapeXml, except that numeric character references remain. */
std::string UnescapeXml(const std::string& text, bool angle_brackets_only);
