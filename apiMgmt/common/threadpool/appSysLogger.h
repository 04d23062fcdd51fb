#pragma once

#include <string>

#include "apiMgmt/common/threadpool/baseLogger.h"

/**
 * Sends lines to syslog, and those of the levels "Info" and "Debug" to the debug file instead, as far as
 * their module is enabled. The connection to syslog belongs to the process: it is opened anew by the
 * constructor and closed by the destructor, whoever else uses it.
 */
class APPSysLogger : public BASELogger {
  public:
    APPSysLogger(const std::string& ident, bool also_to_stderr);
    ~APPSysLogger() override;

    void Log(const LOGMessage& message) override;

  private:
    const std::string ident_;  // syslog keeps a pointer to its text
};
