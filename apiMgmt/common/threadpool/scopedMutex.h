#pragma once

#include "apiMgmt/common/threadpool/mutexWrapper.h"

/** Holds a mutex for a block. */
class scopedMutex {
  public:
    /** Throws GENERALError when the mutex cannot be locked; it is not held then. */
    explicit scopedMutex(MUTEXWrapper& mutex);
    ~scopedMutex();
    scopedMutex(const scopedMutex&) = delete;
    scopedMutex& operator=(const scopedMutex&) = delete;

  private:
    MUTEXWrapper& mutex_;
};
