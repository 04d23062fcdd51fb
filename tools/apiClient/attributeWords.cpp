#include "tools/apiClient/attributeWords.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <numeric>

namespace {

constexpr size_t kRowsInWords = 15;

// What is said of kinds that have no rules.
const std::map<std::string_view, const char*> kKindWords = {
    {"BOOLEAN", "True or False"},
    {"INSTANCEID", "the id of an instance"},
    {"OBJECT", "a reference: id, type and name of an object, as in '64702.17 TsDisk 01-17'"},
    {"OBJECTARRAY", "references, each id, type and name of an object; repeat the attribute for several"},
    {"STRINGARRAY", "texts; repeat the attribute for several"},
    {"DATETIME", "a time as in '10/31/2016 01:02:03 PM' or '10/31/2016-13:02:03'"},
    {"SIZE", "a number of blocks of 512 bytes, or one with a unit, as in '1.5 TB'"},
    {"TEMPERATURE", "a temperature as in '45 C' or '113 F'"},
    {"VERSION", "a version as in '06.03.01.002'"},
    {"IPV4ADDRESS", "an IPv4 address"},
    {"IPV6ADDRESS", "an IPv6 address"},
    {"GETLISTFILTER", "a filter, as --filter makes it"},
};

std::string One(const std::string& units) {
    return units.empty() ? units : units.substr(0, units.size() - 1);
}

std::string Limits(std::optional<int64_t> low, std::optional<int64_t> high, const std::string& unit) {
    if (low && high) {
        return std::to_string(*low) + " to " + std::to_string(*high) + unit;
    }
    if (low) {
        return "at least " + std::to_string(*low) + (*low == 1 ? One(unit) : unit);
    }
    return high ? "at most " + std::to_string(*high) + (*high == 1 ? One(unit) : unit) : "";
}

std::string NumberWords(const CatalogueAttribute& attribute) {
    const std::string what = attribute.kind == "INT"      ? "a whole number"
                             : attribute.kind == "DOUBLE" ? "a number"
                                                          : "whole numbers with a blank between them";
    const std::string limits = Limits(attribute.min, attribute.max, "");
    return limits.empty() ? what : what + ", " + limits;
}

std::string TextWords(const CatalogueAttribute& attribute) {
    std::optional<int64_t> low = attribute.minLength;
    if (low == 0) {
        low.reset();  // no limit at all
    }
    std::string words = "a text";
    if (const std::string limits = Limits(low, attribute.maxLength, " bytes"); !limits.empty()) {
        words += " of " + limits;
    }
    if (!attribute.invalid.empty()) {
        words += " without";
        for (const char c : attribute.invalid) {
            words += std::string(" ") + c;
        }
    }
    return words;
}

std::string EnumWords(const CatalogueAttribute& attribute) {
    const std::string what = attribute.kind == "ENUM" ? "one of " : "some of ";
    if (attribute.table.empty()) {
        return attribute.kind == "ENUM" ? "a word" : "words with a blank between them";
    }
    const ENUMTable rows = attribute.Rows();
    if (rows.size() <= kRowsInWords) {
        return what + EnumerationWords(rows);
    }
    return what + std::to_string(rows.size()) + " words; --enumeration " + attribute.table + " lists them";
}

bool SameLetters(std::string_view left, std::string_view right) {
    const auto letters = [](std::string_view text) {
        std::string kept;
        std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                     [](unsigned char c) { return std::isalnum(c); });
        return ToLower(kept);
    };
    return letters(left) == letters(right);
}

}  // namespace

std::string AllowedWords(const CatalogueAttribute& attribute) {
    if (attribute.kind == "INT" || attribute.kind == "DOUBLE" || attribute.kind == "INTARRAY") {
        return NumberWords(attribute);
    }
    if (attribute.kind == "STRING" || attribute.kind == "NAME") {
        return TextWords(attribute);
    }
    if (attribute.kind == "ENUM" || attribute.kind == "ENUMMASK") {
        return EnumWords(attribute);
    }
    if (!attribute.object.empty()) {
        const bool is_list = attribute.kind == "METHODOBJECTARRAY";
        return "structured, " + attribute.object + ": give " + attribute.name + (is_list ? ".1" : "") +
               ".FIELD=VALUE for each field" + (is_list ? ", .2 for the second and so on" : "");
    }
    return kKindWords.at(attribute.kind);
}

std::string AttributeWords(const CatalogueAttribute& attribute) {
    if (attribute.label.empty() || SameLetters(attribute.name, attribute.label)) {
        return attribute.name;
    }
    return attribute.name + " (" + attribute.label + ")";
}

std::string EnumerationWords(const ENUMTable& rows) {
    std::string words;
    for (const ENUMRow& row : rows) {
        words += (words.empty() ? "" : ", ") + std::string(row.Description);
        if (!SameLetters(row.Description, row.UiString)) {
            words += " (" + UiText(row) + ")";
        }
    }
    return words;
}

std::string UiText(const ENUMRow& row) {
    std::string text;
    for (const char c : row.UiString) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xc0 | byte >> 6);
            text += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return text;
}

size_t TextDistance(std::string_view left, std::string_view right) {
    const std::string from = ToLower(left);
    const std::string to = ToLower(right);
    std::vector<size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < from.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < to.size(); ++j) {
            const size_t changed = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}
