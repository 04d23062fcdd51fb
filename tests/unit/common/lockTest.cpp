#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "apiMgmt/common/threadpool/scopedMutex.h"
#include "tests/unit/errorOf.h"

TEST(Locks, AGuardThatFailedReleasesNothing) {
    pthread_mutexattr_t attribute;
    pthread_mutexattr_init(&attribute);
    pthread_mutexattr_settype(&attribute, PTHREAD_MUTEX_ERRORCHECK);
    MUTEXWrapper mutex(&attribute);
    pthread_mutexattr_destroy(&attribute);
    {
        const scopedMutex guard(mutex);
        EXPECT_EQ(ErrorOf([&] { const scopedMutex second(mutex); }),
                  "Error acquiring scoped mutex, error code[" + std::to_string(EDEADLK) + "]");
        EXPECT_EQ(mutex.TryLock(), EBUSY);  // the first guard still holds it
    }
    EXPECT_EQ(mutex.TryLock(), 0);
    EXPECT_EQ(mutex.Lock(), EDEADLK);
    EXPECT_EQ(mutex.Unlock(), 0);
}
