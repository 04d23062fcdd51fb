#pragma once

#include "apiMgmt/common/threadpool/logMessage.h"

/** Where the lines of the log task go. Called by one thread at a time. */
class BASELogger {
  public:
    BASELogger() = default;
    virtual ~BASELogger() = default;
    BASELogger(const BASELogger&) = delete;
    BASELogger& operator=(const BASELogger&) = delete;

    virtual void Log(const LOGMessage& message) = 0;
};
