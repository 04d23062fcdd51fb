#include "tools/commandLine/nearestName.h"

#include <algorithm>
#include <numeric>

#include "apiMgmt/common/utils/stringUtil.h"

namespace commandline {

namespace {

/** The Levenshtein distance. */
size_t EditDistance(std::string_view left, std::string_view right) {
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

}  // namespace

std::optional<std::string> NearestName(std::string_view given, const std::vector<std::string>& names) {
    return NearestName(given, names, given.size() / 3 + 1);
}

std::optional<std::string> NearestName(std::string_view given, const std::vector<std::string>& names,
                                       size_t maximum) {
    std::optional<std::string> nearest;
    size_t distance = maximum + 1;
    for (const std::string& name : names) {
        const size_t of_name = EditDistance(name, given);
        if (of_name < distance) {
            nearest = name;
            distance = of_name;
        }
    }
    return nearest;
}

std::string UnknownName(std::string_view what, std::string_view given, const std::vector<std::string>& names,
                        std::string_view hint) {
    const std::optional<std::string> nearest = NearestName(given, names);
    return "there is no " + std::string(what) + " '" + std::string(given) + "'; " +
           (nearest ? "do you mean " + *nearest + "?" : std::string(hint));
}

}  // namespace commandline
