#include "tests/unit/common/fakeSyslog.h"

#include <syslog.h>

#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

std::mutex mutex;
std::condition_variable arrived;
std::vector<std::string> lines;

}  // namespace

extern "C" {

void openlog(const char*, int, int) {}
void closelog() {}

void syslog(int priority, const char* format, ...) {
    char text[1000];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    const std::lock_guard guard(mutex);
    lines.push_back(std::to_string(priority) + "|" + text);
    arrived.notify_all();
}
}

std::vector<std::string> SyslogLines() {
    const std::lock_guard guard(mutex);
    return lines;
}

void WaitForSyslogLine() {
    std::unique_lock guard(mutex);
    arrived.wait(guard, [] { return !lines.empty(); });
}
