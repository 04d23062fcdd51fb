#pragma once

#include <algorithm>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"

/** Returns whether a string has the format of a trap command: eight words, each followed by a space, within
   the part that is read. */
inline bool is_trap_command(const std::string& text) {
    const size_t length = std::min(text.size(), kTrapCommandBuffer - 1);
    int words = 0;
    for (size_t i = 1; i < length; ++i)
        words += text[i] == ' ' && text[i - 1] != ' ' ? 1 : 0;
    return words >= 8;
}
