#pragma once

#include <pthread.h>

#include <string>

/**
 * Starts one detached, named thread, which cannot be stopped or joined: it ends when its routine returns, and
 * may outlive the wrapper.
 */
class THREADWrapper {
  public:
    using Routine = void* (*)(void*);

    THREADWrapper() = default;
    virtual ~THREADWrapper() = default;
    THREADWrapper(const THREADWrapper&) = delete;
    THREADWrapper& operator=(const THREADWrapper&) = delete;

    /**
     * Starts the thread. Returns 0 on success, and also if an earlier call has started it, even if it has
     * ended; -1 without a routine; else the code of pthread_create. An empty name leaves the thread unnamed.
     * Not thread-safe.
     */
    int Run(const std::string& name, Routine routine, void* argument);

  private:
    pthread_t handle_{};
    std::string name_;
};
