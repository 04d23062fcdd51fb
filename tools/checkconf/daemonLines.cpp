#include "tools/checkconf/daemonLines.h"

#include <cstdarg>
#include <utility>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// Set by the settings like the daemon's; debug lines are none that would be told of here.
std::atomic<bool> verbose{false};

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

// The program has no log file to care for.
void redirect_stdout_to_log() {}
void reopen_redirected_log() {}
void close_redirected_log() {}
void truncate_subagent_log() {}

std::vector<std::string> checkconf::TakeDaemonLines() {
    return std::exchange(lines, {});
}
