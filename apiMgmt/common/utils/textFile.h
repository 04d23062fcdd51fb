#pragma once

#include <optional>
#include <string>

/** Returns the contents of a file, or std::nullopt with errno set if it cannot be read. */
std::optional<std::string> ReadTextFile(const std::string& path);
