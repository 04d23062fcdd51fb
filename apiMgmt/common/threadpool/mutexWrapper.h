#pragma once

#include <pthread.h>

/** Owns a POSIX mutex. The operations return the codes of the POSIX calls and do not throw. */
class MUTEXWrapper {
  public:
    /** Without an attribute, the mutex is of the default kind, which is not recursive. */
    explicit MUTEXWrapper(const pthread_mutexattr_t* attribute = nullptr);
    virtual ~MUTEXWrapper();
    MUTEXWrapper(const MUTEXWrapper&) = delete;
    MUTEXWrapper& operator=(const MUTEXWrapper&) = delete;

    int Lock();
    int TryLock();
    int Unlock();

    /** For condition variables. The wrapper keeps ownership. */
    pthread_mutex_t* native() { return &mutex_; }

  private:
    pthread_mutex_t mutex_;
};
