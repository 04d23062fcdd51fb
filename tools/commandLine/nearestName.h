#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace commandline {

/**
 * Finds the name that `given` is most likely a misspelling of: the one with the fewest letters to change,
 * insert or delete, case-insensitively; at most a third of the letters plus one. Returns std::nullopt if no
 * name is that near.
 */
std::optional<std::string> NearestName(std::string_view given, const std::vector<std::string>& names);

/** The same with another maximum number of letters. */
std::optional<std::string> NearestName(std::string_view given, const std::vector<std::string>& names,
                                       size_t maximum);

/** Returns "there is no WHAT 'GIVEN'; do you mean NAME?", or with `hint` in place of the question if none is
 * near. */
std::string UnknownName(std::string_view what, std::string_view given, const std::vector<std::string>& names,
                        std::string_view hint);

}  // namespace commandline
