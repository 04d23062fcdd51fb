#pragma once

#include <memory>

#include "apiMgmt/common/threadpool/baseLogger.h"
#include "apiMgmt/common/threadpool/threadWrapper.h"

/**
 * A queue of log lines with a thread that gives them to a logger one by one, in the order of arrival, so
 * that those who log do not wait for the output. The thread is not joined: what it works on is shared with
 * it and lives until it has ended, even when the task is gone before.
 */
class LOGTask : public BASELogTask {
  public:
    explicit LOGTask(std::unique_ptr<BASELogger> logger);
    /** Stops the thread first, which takes 2 seconds. */
    ~LOGTask() override;

    /** True when the thread runs, also from before. A failure is told to syslog. Not to be called by two
        threads at a time, nor beside Stop. */
    bool Start() override;

    /** Queues a line; without a logger or before and after the thread's life it is dropped. Any thread.
        Throws GENERALError when the lock fails. */
    void Post(const LOGMessage& message) override;

    /** Lets the thread end behind what is queued, and gives it 2 seconds for that. */
    void Stop();

  private:
    struct Queue;

    bool has_thread() const;
    static void* Work(void* queue);

    const std::shared_ptr<Queue> queue_;
    std::unique_ptr<THREADWrapper> thread_;  // guarded by the queue's mutex
};
