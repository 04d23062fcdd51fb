#pragma once

#include <optional>
#include <string>

/** Returns the contents of a file, or std::nullopt with errno set if it cannot be read. */
std::optional<std::string> ReadTextFile(const std::string& path);

/**
 * Replaces a file atomically, with mode 0600. If `is_durable` is set, the file is on the disk afterwards. If
 * it cannot be written, returns false with errno set and leaves the old file unchanged. Use this only in
 * directories that nobody else can write to.
 */
bool ReplaceTextFile(const std::string& path, const std::string& text, bool is_durable);
