#include "apiMgmt/common/threadpool/mutexWrapper.h"

MUTEXWrapper::MUTEXWrapper(const pthread_mutexattr_t* attribute) {
    pthread_mutex_init(&mutex_, attribute);
}

MUTEXWrapper::~MUTEXWrapper() {
    pthread_mutex_destroy(&mutex_);
}

int MUTEXWrapper::Lock() {
    return pthread_mutex_lock(&mutex_);
}

int MUTEXWrapper::TryLock() {
    return pthread_mutex_trylock(&mutex_);
}

int MUTEXWrapper::Unlock() {
    return pthread_mutex_unlock(&mutex_);
}
