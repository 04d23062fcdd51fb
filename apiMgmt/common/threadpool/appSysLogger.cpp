#include "apiMgmt/common/threadpool/appSysLogger.h"

#include <syslog.h>

#include "apiMgmt/common/threadpool/appLogger.h"
#include "apiMgmt/common/threadpool/debugLogFile.h"
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
