// The subagent log, as lines "log LEVEL TEXT" of the transcript.

#include <cstdarg>
#include <string>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/transcript.h"

// Writes the final newline as "$", so that messages with and without it can be distinguished.
void subagent_log(int level, const char*, const char*, int, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::string text = FormatStringV(format, arguments);
    va_end(arguments);
    if (!text.empty() && text.back() == '\n')
        text.back() = '$';
    transcript::add("log " + std::to_string(level) + " " + text);
}

void redirect_stdout_to_log() {
    transcript::add("redirect_stdout_to_log");
}
void reopen_redirected_log() {
    transcript::add("reopen_redirected_log");
}
void close_redirected_log() {
    transcript::add("close_redirected_log");
}
void truncate_subagent_log() {
    transcript::add("truncate_subagent_log");
}
