#include "tests/unit/common/fakeSyslog.h"

#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

std::mutex mutex;
std::vector<std::string> lines;
const char* ident = nullptr;  // kept as a pointer, like the real syslog
int options = 0;
int facility = 0;

[[gnu::format(printf, 2, 0)]] void keep(int priority, const char* format, va_list arguments) {
    char text[1000];
    vsnprintf(text, sizeof text, format, arguments);
    const std::lock_guard guard(mutex);
    lines.push_back(std::to_string(priority) + "|" + text);
}

}  // namespace

extern "C" {

void openlog(const char* its_ident, int its_options, int its_facility) {
    const std::lock_guard guard(mutex);
    ident = its_ident;
    options = its_options;
    facility = its_facility;
}

void closelog() {
    const std::lock_guard guard(mutex);
    ident = nullptr;
}

void syslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    keep(priority, format, arguments);
    va_end(arguments);
}

// The name of syslog if _FORTIFY_SOURCE is set.
[[gnu::format(printf, 3, 4)]] void __syslog_chk(int priority, int, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    keep(priority, format, arguments);
    va_end(arguments);
}
}

std::vector<std::string> SyslogLines() {
    const std::lock_guard guard(mutex);
    return lines;
}

std::string SyslogConnection() {
    const std::lock_guard guard(mutex);
    if (ident == nullptr) {
        return "closed";
    }
    return std::string(ident) + "|" + std::to_string(options) + "|" + std::to_string(facility);
}
