#pragma once

#include <map>
#include <string>

/**
 * Reads lines of "key = value"; a later line overrides an earlier one of the same key. Lines that begin
 * with "#", have no "=" or no key are skipped. A file that cannot be opened gives an empty map; one that
 * fails in the middle gives what was read so far and a line in syslog.
 */
std::map<std::string, std::string> ReadConfigFile(const std::string& path);
