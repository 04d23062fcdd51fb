#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "apiMgmt/common/threadpool/baseLogger.h"

/** Records the messages and the lifetimes of loggers, and outlives them. Waits for events only. */
class LogRecord {
  public:
    /** Returns a logger that writes here. It blocks at each message while the gate is closed. */
    std::unique_ptr<BASELogger> MakeLogger();

    void ShutGate() { SetGate(false); }
    void OpenGate() { SetGate(true); }

    /** Blocks until there are this many messages. Returns all of them as "level|category|message". */
    std::vector<std::string> WaitFor(size_t count);
    LOGMessage last();
    /** Blocks until a logger waits at the closed gate. */
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
