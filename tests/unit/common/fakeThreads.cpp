#include "tests/unit/common/fakeThreads.h"

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>

std::atomic<bool> NoNewThreads::forbidden = false;

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                              void* argument) {
    static const auto create =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return NoNewThreads::forbidden ? EAGAIN : create(thread, attributes, routine, argument);
}
