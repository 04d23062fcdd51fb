#include <pthread.h>
#include <pthread_np.h>

#include "tests/unit/common/threadName.h"

std::string ThisThreadsName() {
    char name[64] = {};
    pthread_get_name_np(pthread_self(), name, sizeof name);
    return name;
}
