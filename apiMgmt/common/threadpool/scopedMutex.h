#pragma once

#include "apiMgmt/common/threadpool/mutexWrapper.h"

/** Holds a mutex for the duration of a block. */
class scopedMutex {
  public:
    /** Locks the mutex. Throws GENERALError if that fails. */
    explicit scopedMutex(MUTEXWrapper& mutex);
    ~scopedMutex();
    scopedMutex(const scopedMutex&) = delete;
    scopedMutex& operator=(const scopedMutex&) = delete;

  private:
    MUTEXWrapper& mutex_;
};
