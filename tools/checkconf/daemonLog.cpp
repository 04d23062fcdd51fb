#include "tools/checkconf/daemonLog.h"

#include <cstdarg>
#include <utility>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr int kDebugLevel = 7;

std::vector<std::string> lines;

}  // namespace

void subagent_log(int level, const char*, const char*, int, const char* format, ...) {
    if (level == kDebugLevel)
        return;
    va_list arguments;
    va_start(arguments, format);
    std::string text = FormatStringV(format, arguments);
    va_end(arguments);
    TrimRight(text);
    lines.push_back(text);
}

// There is no log file.
void redirect_stdout_to_log() {}
void reopen_redirected_log() {}
void close_redirected_log() {}
void truncate_subagent_log() {}

std::vector<std::string> checkconf::TakeDaemonLog() {
    return std::exchange(lines, {});
}
