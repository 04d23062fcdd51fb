#include "tools/apiClient/givenArguments.h"

#include <algorithm>
#include <cctype>

#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/apiClient/usageError.h"

bool IsElementName(std::string_view name) {
    return !name.empty() && (std::isalpha(static_cast<unsigned char>(name[0])) || name[0] == '_') &&
           std::ranges::all_of(name, [](unsigned char c) { return std::isalnum(c) || c == '_' || c == '-'; });
}

GivenArguments GroupArguments(const std::vector<std::string>& words) {
    GivenArguments given;
    for (const std::string& word : words) {
        const size_t equals = word.find('=');
        const std::string path = word.substr(0, equals);
        const size_t point = path.find('.');
        const std::string name = path.substr(0, point);
        if (equals == std::string::npos || !IsElementName(name)) {
            throw UsageError("'" + word + "' is no argument of the form Name=Value");
        }
        auto found = std::ranges::find_if(
            given, [&](const auto& each) { return CompareNoCase(each.first, name) == 0; });
        if (found == given.end()) {
            found = given.insert(given.end(), {name, {}});
        }
        found->second.push_back(
            {point == std::string::npos ? "" : path.substr(point + 1), word.substr(equals + 1)});
    }
    return given;
}
