#pragma once

#include <pthread.h>

#include <string>

/**
 * Starts one detached, named thread. There is no way to stop or join it through the wrapper: it ends
 * by returning from its routine, and may outlive the wrapper.
 */
class THREADWrapper {
  public:
    using Routine = void* (*)(void*);

    THREADWrapper() = default;
    virtual ~THREADWrapper() = default;
    THREADWrapper(const THREADWrapper&) = delete;
    THREADWrapper& operator=(const THREADWrapper&) = delete;

    /**
     * 0 when the thread runs (also when an earlier call has started it: a wrapper runs one thread, and
     * counts as started for good), -1 without a routine, else the code of pthread_create. An empty name
     * leaves the thread unnamed. Not to be called by two threads at a time.
     */
    int Run(const std::string& name, Routine routine, void* argument);

  private:
    pthread_t handle_{};
    std::string name_;
};
