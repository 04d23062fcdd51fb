#include "arraySim/model/template.h"

#include <charconv>

#include "arraySim/model/catalogue.h"
#include "arraySim/model/objectMaker.h"

namespace arraysim {

namespace {

constexpr std::string_view kHex = "0123456789abcdef";
constexpr std::string_view kCode = "0123456789BCDFGHJKLMNPQRSTVWXYZ";
constexpr std::string_view kDigits = "0123456789";

int64_t NumberIn(std::string_view text) {
    int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::string OneOf(std::string_view characters, Random& random) {
    return std::string(1, characters[random.Below(characters.size())]);
}

}  // namespace

std::string Template::Expand(std::string_view text) {
    std::string filled;
    while (!text.empty()) {
        const size_t open = text.find('{');
        filled += text.substr(0, open);
        const size_t close = open == text.npos ? text.npos : text.find('}', open);
        if (close == text.npos) {
            break;
        }
        filled += Fill(text.substr(open + 1, close - open - 1));
        text.remove_prefix(close + 1);
    }
    return filled;
}

std::string Template::Fill(std::string_view placeholder) {
    const size_t end = placeholder.find_first_of("+*:");
    const std::string_view name = placeholder.substr(0, end);
    const char modifier = end == placeholder.npos ? '\0' : placeholder[end];
    const int64_t argument = modifier == '\0' ? 0 : NumberIn(placeholder.substr(end + 1));
    if (modifier == '*') {
        std::string repeated;
        for (int64_t i = 0; i < argument; ++i) {
            repeated += Value(name, 0);
        }
        return repeated;
    }
    std::string value = Value(name, modifier == '+' ? argument : 0);
    const size_t width = modifier == ':' ? static_cast<size_t>(argument) : 0;
    return value.size() < width ? std::string(width - value.size(), '0') + value : value;
}

std::string Template::Value(std::string_view name, int64_t added) {
    if (name == "index") {
        return std::to_string(place_.index + added);
    }
    if (name == "row") {
        return std::to_string(place_.row + added);
    }
    if (name == "parent") {
        return std::to_string(place_.parent_index + added);
    }
    if (name == "parentRow") {
        return std::to_string(place_.parent_row + added);
    }
    if (name == "serial") {
        return std::to_string(place_.serial + added);
    }
    if (name == "parentName") {
        return place_.parent_name;
    }
    if (name == "array") {
        return place_.array_name;
    }
    if (name == "letter") {
        return std::string(1, static_cast<char>('A' + (place_.row - 1) % 26));
    }
    if (name == "hex") {
        return OneOf(kHex, random_);
    }
    if (name == "code") {
        return OneOf(kCode, random_);
    }
    if (name == "digit") {
        return OneOf(kDigits, random_);
    }
    throw CatalogueError("unknown placeholder {" + std::string(name) + "} in a template");
}

}  // namespace arraysim
