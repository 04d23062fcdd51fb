#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/** What was given for an argument: a value, and for a structured one which field of it is meant:
   "UseCurrent", in a list "1.IpAddress". */
struct GivenValue {
    std::string field;
    std::string value;
};

/** The values of each argument under its name, in the order in which they were given. */
using GivenArguments = std::vector<std::pair<std::string, std::vector<GivenValue>>>;

/** Reads words of the form Name=Value or Name.Field=Value. Throws UsageError for any other. */
GivenArguments GroupArguments(const std::vector<std::string>& words);

/** Whether a document can hold an element of that name. */
bool IsElementName(std::string_view name);
