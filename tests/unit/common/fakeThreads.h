#pragma once

#include <atomic>

/** While an instance exists, pthread_create fails with EAGAIN. */
class NoNewThreads {
  public:
    NoNewThreads() { forbidden = true; }
    ~NoNewThreads() { forbidden = false; }
    NoNewThreads(const NoNewThreads&) = delete;
    NoNewThreads& operator=(const NoNewThreads&) = delete;

    static std::atomic<bool> forbidden;
};
