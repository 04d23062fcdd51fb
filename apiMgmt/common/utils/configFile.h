#pragma once

#include <map>
#include <string>

/**
 * Reads lines of "key = value"; a later line overrides an earlier one with the same key. Skips lines that
 * begin with "#", have no "=" or no key, and everything beyond 64 KiB. Returns an empty map if the file
 * cannot be opened. Returns an empty map and logs to syslog if it cannot be read, is a symlink or is not a
 * regular file that root or the effective user owns.
 */
std::map<std::string, std::string> ReadConfigFile(const std::string& path);
