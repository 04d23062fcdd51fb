#pragma once

#include <optional>
#include <string>

/** The whole text of a file. None, with errno set, when it cannot be read. */
std::optional<std::string> ReadTextFile(const std::string& path);
