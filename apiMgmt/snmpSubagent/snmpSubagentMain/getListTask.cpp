#include <pthread.h>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

// False when the daemon is about to end.
bool wait_for_request() {
    while (bgUpdateState.load(std::memory_order_acquire) != BGUPDATE_STATE_getlist_requested) {
        ClockSleepMicroseconds(kSecondUs);
        if (!snmpSubagent_is_active)
            return false;
    }
    return true;
}

}  // namespace

void* GetListTaskMain(void* /*argument*/) {
    while (!snmpSubagent_is_active)
        ClockSleepMicroseconds(kSecondUs);
    while (wait_for_request()) {
        const int result = force_get_table_info(bgUpdateTable, true);
        bgUpdateState.store(result != 0 ? BGUPDATE_STATE_error_on_getlist : BGUPDATE_STATE_getlist_done,
                            std::memory_order_release);
    }
    return reinterpret_cast<void*>(-1);
}

int StartGetListTask() {
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, GetListTaskMain, nullptr);
    if (error != 0) {
        SUBAGENT_LOG(4, "Error: Failed to create GetListTask thread: error: %d\n", error);
        return 1;
    }
    pthread_detach(thread);  // never joined
    return 0;
}
