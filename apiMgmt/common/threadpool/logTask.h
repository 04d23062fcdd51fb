#pragma once

#include <memory>

#include "apiMgmt/common/threadpool/baseLogger.h"
#include "apiMgmt/common/threadpool/threadWrapper.h"

/**
 * A queue of log lines with a thread that passes them to a logger in the order of arrival, so that logging
 * does not wait for output. The thread is not joined: it shares the queue and the logger, which live until it
 * has ended even if the task is destroyed before.
 */
class LOGTask : public BASELogTask {
  public:
    explicit LOGTask(std::unique_ptr<BASELogger> logger);
    /** Calls Stop, which takes 2 seconds. */
    ~LOGTask() override;

    /**
     * Starts the thread. Returns true if it is running, even if it was already; logs a failure to syslog.
     * Must not be called concurrently with itself or Stop.
     */
    bool Start() override;

    /**
     * Queues a line, or drops it if there is no logger or the thread is not running. Any thread. Throws
     * GENERALError if the lock fails.
     */
    void Post(const LOGMessage& message) override;

    /** Makes the thread exit after it has written the queued lines. Waits up to 2 seconds for it. */
    void Stop();

  private:
    struct Queue;

    bool has_thread() const;
    static void* Work(void* queue);

    const std::shared_ptr<Queue> queue_;
    std::unique_ptr<THREADWrapper> thread_;  // guarded by the queue's mutex
};
