#include <pthread.h>

#include "tests/unit/common/threadName.h"

std::string ThisThreadsName() {
    char name[64] = {};
    pthread_getname_np(pthread_self(), name, sizeof name);
    return name;
}
