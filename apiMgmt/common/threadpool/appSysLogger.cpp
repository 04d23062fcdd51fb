#include "apiMgmt/common/threadpool/appSysLogger.h"

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/threadpool/appLogger.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/privateLog.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

int SyslogPriority(int32_t level) {
    const bool is_syslog_level = level >= app_level::kEmergency && level <= app_level::kNotice;
    return is_syslog_level ? level - 1 : LOG_INFO;
}

std::string SyslogText(int priority, const LOGMessage& message) {
    if (!message.headerInclude) {
        return FormatString("level(%d) category(%s) message(%s)", priority, message.category.c_str(),
                            message.message.c_str());
    }
    return FormatString("level(%d) category(%s) file(%s) func(%s) line(%d) message(%s)", priority,
                        message.category.c_str(), message.file.c_str(), message.func.c_str(), message.line,
                        message.message.c_str());
}

// ---- the debug file ----

constexpr off_t kMaximumSize = 1'000'000;

// Loses the file's contents if it cannot be renamed, rather than letting it grow without limit.
void RotateDebugLog() {
    unlink(kOldDebugLogFile);
    if (rename(kDebugLogFile, kOldDebugLogFile) != 0) {
        unlink(kDebugLogFile);
    }
}

// Returns the descriptor, or a negative number if the file cannot be opened.
int OpenDebugLog() {
    const int descriptor = OpenPrivateLog(kDebugLogFile);
    if (descriptor < 0 || lseek(descriptor, 0, SEEK_END) <= kMaximumSize) {
        return descriptor;
    }
    close(descriptor);
    RotateDebugLog();
    return OpenPrivateLog(kDebugLogFile, O_TRUNC);
}

std::string LocalTime() {
    const time_t now_s = ClockNow().tv_sec;
    tm local{};
    localtime_r(&now_s, &local);
    char text[64];
    return {text, strftime(text, sizeof text, "%m/%d/%Y-%H:%M:%S", &local)};
}

// Appends a line with the local time, after rotating a file of more than 1000000 bytes. If the file cannot be
// opened, the line is lost.
void AppendToDebugLogFile(const std::string& message) {
    const int descriptor = OpenDebugLog();
    if (descriptor < 0) {
        return;
    }
    const std::string line = LocalTime() + " " + message + "\n";
    // A full disk cannot be reported anywhere.
    [[maybe_unused]] const ssize_t written = write(descriptor, line.data(), line.size());
    close(descriptor);
}

}  // namespace

APPSysLogger::APPSysLogger(const std::string& ident, bool also_to_stderr) : ident_(ident) {
    openlog(ident_.c_str(), LOG_CONS | LOG_ODELAY | (also_to_stderr ? LOG_PERROR : 0), LOG_USER);
}

APPSysLogger::~APPSysLogger() {
    closelog();
}

void APPSysLogger::Log(const LOGMessage& message) {
    if (message.level == app_level::kInfo || message.level == app_level::kDebug) {
        if (APPLogger::IsModuleEnabled(message.category)) {
            AppendToDebugLogFile(message.message);
        }
        return;
    }
    const int priority = SyslogPriority(message.level);
    syslog(priority, "%s", SyslogText(priority, message).c_str());
}
