#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "apiMgmt/common/threadpool/baseLogger.h"

/** What loggers were given, and whether they still are; outlives them. All waits are for events. */
class LogRecord {
  public:
    /** A logger that writes here; it waits at each message while the gate is shut. */
    std::unique_ptr<BASELogger> MakeLogger();

    void ShutGate() { SetGate(false); }
    void OpenGate() { SetGate(true); }

    /** All messages so far, "level|category|message" each, as soon as there are so many. */
    std::vector<std::string> WaitFor(size_t count);
    LOGMessage last();
    /** Waits until a logger stands at the shut gate. */
    void WaitForVisitor();
    void WaitForEndOfLogger();

  private:
    class Logger;

    void SetGate(bool is_open);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<LOGMessage> messages_;
    bool gate_is_open_ = true;
    bool has_visitor_ = false;
    int loggers_ = 0;
};
