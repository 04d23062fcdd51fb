#pragma once

#include <string>

#include "apiMgmt/common/threadpool/baseLogger.h"

/**
 * Writes lines to syslog, but those of levels "Info" and "Debug" to the debug file if their module is
 * enabled. The constructor reopens the process's connection to syslog and the destructor closes it, even if
 * other code uses it.
 */
class APPSysLogger : public BASELogger {
  public:
    APPSysLogger(const std::string& ident, bool also_to_stderr);
    ~APPSysLogger() override;

    void Log(const LOGMessage& message) override;

  private:
    const std::string ident_;  // openlog keeps a pointer to it
};
