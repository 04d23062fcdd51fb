#pragma once

#include <map>
#include <string>

/**
 * Reads lines of "key = value"; a later line overrides an earlier one of the same key. Skips lines that begin
 * with "#", have no "=" or no key, and everything beyond 64 kB. Returns an empty map if the file cannot be
 * opened, and also, with a line in syslog, if it is not a regular file that belongs to root or the effective
 * user (links are not followed) or cannot be read.
 */
std::map<std::string, std::string> ReadConfigFile(const std::string& path);
