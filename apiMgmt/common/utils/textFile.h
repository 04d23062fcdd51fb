#pragma once

#include <optional>
#include <string>

/** Returns the contents of a file, or std::nullopt with errno set if it cannot be read. */
std::optional<std::string> ReadTextFile(const std::string& path);

/**
 * Replaces a file in one step, with mode 0600; nobody sees half of it. With `is_durable` it is on the disk
 * afterwards. False, with errno set, if it cannot be written; the old file stays then. Only for directories
 * that nobody else may write.
 */
bool ReplaceTextFile(const std::string& path, const std::string& text, bool is_durable);
