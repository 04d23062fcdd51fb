#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"

#include <pthread.h>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

int bgUpdateColumn = 0;
int64_t bgUpdateLastFetch_us = 0;

namespace {

constexpr int64_t kScanGateUs = kSecondUs;
constexpr int64_t kScalarPacingFactor = 20;
constexpr int64_t kTablePacingFactor = 10;
constexpr uint32_t kForegroundRowLimit = 10;

// 120 seconds plus the column's share of another minute, which spreads the tables over the cycle.
int64_t background_minimum_age_us(int col_id) {
    return 120 * kSecondUs + int64_t{col_id} * (60 * kSecondUs) / NUMBER_OF_COLUMNS;
}

// tsObjectCountNbr has one row, but the array needs long to count its objects.
bool is_foreground_table(int col_id) {
    return cols[col_id].maxNumOfRows <= kForegroundRowLimit && col_id != COLID_tsObjectCountNbr;
}

// Next step of the scan after a column: continue, or stop, with this column or the next one first in line.
enum class scan { next_column, ends_here, ends_at_next };

scan refresh_in_foreground(int col_id) {
    bgUpdateLastFetch_us = ClockNowUs();
    force_get_table_info(col_id, false);
    return scan::ends_at_next;
}

// Merges the GetList task's response, or logs its failure, after which the state is idle. Returns false while
// the task is busy.
bool take_background_response() {
    const int state = bgUpdateState.load(std::memory_order_acquire);
    switch (state) {
        case BGUPDATE_STATE_idle:
            return true;
        case BGUPDATE_STATE_getlist_requested:
            return false;
        case BGUPDATE_STATE_getlist_done:
            process_table_info(bgUpdateTable, bgUpdateApiName.c_str(), bgUpdateMapSize, bgUpdateMap,
                               bgUpdateResponse);
            bgUpdateResponse = {};  // many megabytes for a full array
            break;
        case BGUPDATE_STATE_error_on_getlist:
            SUBAGENT_LOG(debug,
                         "BGUPDATE_STATE_error_on_getlist for bgUpdateTable: %d, bgUpdateApiName: %s\n",
                         bgUpdateTable, bgUpdateApiName.c_str());
            note_failed_refresh(bgUpdateTable);
            break;
        default:
            SUBAGENT_LOG(warning, "Error: invalid bgUpdateState: %d\n", state);
            break;
    }
    bgUpdateState.store(BGUPDATE_STATE_idle, std::memory_order_release);
    return true;
}

scan serve_background_table(int col_id, int64_t elapsed_us) {
    if (!take_background_response())
        return scan::ends_here;
    if (elapsed_us < background_minimum_age_us(col_id))
        return scan::next_column;
    bgUpdateLastFetch_us = ClockNowUs();
    bgUpdateTable = col_id;
    bgUpdateState.store(BGUPDATE_STATE_getlist_requested, std::memory_order_release);
    return scan::ends_at_next;
}

scan serve_column(int col_id) {
    const column_record& column = cols[col_id];
    if (column.get_fn == nullptr || (column.is_table() && !column.is_head()))
        return scan::next_column;
    const int64_t elapsed_us = ClockNowUs() - column.last_fetch_time_us;
    const int64_t duration_us = column.last_fetch_duration_us;
    const int64_t pacing_factor = column.is_table() ? kTablePacingFactor : kScalarPacingFactor;
    if (elapsed_us < pacing_factor * duration_us)
        return scan::ends_here;
    if (!column.is_table() || is_foreground_table(col_id))
        return refresh_in_foreground(col_id);
    return serve_background_table(col_id, elapsed_us);
}

}  // namespace

void check_for_table_changes() {
    if (!snmpSubagentComm->apimgr_ok() || ClockNowUs() - bgUpdateLastFetch_us < kScanGateUs)
        return;
    scan verdict = scan::next_column;
    while (verdict == scan::next_column) {
        verdict = serve_column(bgUpdateColumn);
        if (verdict == scan::ends_here)
            break;
        ++bgUpdateColumn;
        if (bgUpdateColumn == NUMBER_OF_COLUMNS || !snmpSubagent_is_active)
            break;
    }
    if (bgUpdateColumn == NUMBER_OF_COLUMNS)
        bgUpdateColumn = 0;
}

// ---- the GetList task ----

namespace {

// Returns false if the daemon is about to exit.
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
        SUBAGENT_LOG(warning, "Error: Failed to create GetListTask thread: error: %d\n", error);
        return 1;
    }
    pthread_detach(thread);
    return 0;
}
