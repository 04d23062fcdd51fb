#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** Text helpers. None keeps state or takes a lock; all go by the rules of the C locale. */

/**
 * Copies at most size - 1 characters and always ends with a zero; returns destination. size 0 touches
 * nothing; a null source gives an empty text. destination must not be null.
 */
char* SafeStrncpy(char* destination, const char* source, size_t size);

/** printf into a string. A format that cannot be carried out gives a text that says so; nothing is thrown. */
[[gnu::format(printf, 1, 2)]] std::string FormatString(const char* format, ...);
[[gnu::format(printf, 1, 0)]] std::string FormatStringV(const char* format, va_list arguments);

/** Remove white space (blank, \f \n \r \t \v) in place. */
void Trim(std::string& text);
void TrimLeft(std::string& text);
void TrimRight(std::string& text);

std::string ToLower(std::string_view text);

/** Below 0, 0 or above 0, as strcasecmp. */
int CompareNoCase(std::string_view left, std::string_view right);

/** The number at the start of a text, as atoi reads it, but a number out of range gives the nearest int. */
int ParseInt(std::string_view text);

/** The same for an unsigned number of 64 bits; a negative one gives 0. */
uint64_t ParseUnsigned(std::string_view text);

/** True for "true" in any letter case and for a text whose integer value is 1. */
bool ParseBool(const std::string& text);

/** As strtod; *end is set behind the number, within text, unless end is null. */
double ParseDouble(const std::string& text, const char** end = nullptr);

/**
 * Parses the finite decimal number at the start of text ("-1.5e3") and sets *end behind it, within text.
 * Unlike strtod it takes no white space, plus sign, hexadecimal digits, nan or inf. Returns std::nullopt,
 * with *end unchanged, for those, without a number, and for one out of double's range.
 */
std::optional<double> ParseDecimal(const std::string& text, const char** end);

/** Whether the text, white space at its ends aside, is one floating-point number as strtod reads it. */
bool IsNumeric(const std::string& text);

/** Replaces in place, from left to right; what was inserted is not searched again. An empty old_text
    changes nothing. */
void ReplaceAll(std::string& text, const std::string& old_text, const std::string& new_text);

/**
 * Cuts text at each delimiter; pieces is cleared first. A delimiter at the very end gives an empty last
 * piece. With a limit above 0 the piece of that number takes all of the rest. An empty text gives no
 * pieces; an empty delimiter cuts nothing.
 */
void Split(const std::string& text, const std::string& delimiter, std::vector<std::string>& pieces,
           size_t limit = 0);

/** Like Split without a limit, but a delimiter at the very end gives no empty last piece. */
void SplitChar(const std::string& text, char delimiter, std::vector<std::string>& pieces);

/**
 * Escapes < and >; without angle_brackets_only also & ' " and the characters below 32, all of which
 * become a reference to a line feed.
 */
std::string EscapeXml(const std::string& text, bool angle_brackets_only);

/** The reverse, except that numeric character references stay as they are. */
std::string UnescapeXml(const std::string& text, bool angle_brackets_only);
