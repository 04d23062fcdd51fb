#pragma once

#include <string>

/**
 * Appends one line with the local time to the debug file. A file of more than 1000000 bytes first takes
 * the place of the old one. A file that cannot be opened loses the line and nothing else. One thread.
 */
void AppendToDebugLogFile(const std::string& message);
