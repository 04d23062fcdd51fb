#include <algorithm>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/postProcess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"

namespace {

enum global_status : uint32_t { unknown_alert = 2, no_alert = 3, minor_alert = 4, major_alert = 5 };

constexpr uint32_t kTrue = 1;
constexpr uint32_t kGreatestAlertStatus = 9;
constexpr int kGreatestSeverity = 2;

// By the alert's status as alert_status_post_process numbers it: Complete, Critical, Degraded, Deleting,
// Down, Emergency, Inform, Okay, Unavailable, anything else.
constexpr int kSeverity[kGreatestAlertStatus + 1] = {0, 2, 1, 0, 2, 2, 0, 0, 1, 1};

uint32_t number_in_row(int col_id, int32_t row) {
    return vars[cols[col_id].first_var + row].uint;
}

bool counts(int32_t row) {
    return number_in_row(COLID_tsAlertActive, row) == kTrue &&
           number_in_row(COLID_tsAlertAcknowledged, row) != kTrue;
}

void note_worst_alert(int32_t row) {
    worstAlertNbr = number_in_row(COLID_tsAlertNbr, row);
    store_number(cols[COLID_worstAlertNbr].first_var, worstAlertNbr);
}

// Walks the alerts of both controllers up to the first row that is not cached.
global_status status_of_alerts() {
    const column_record& status = cols[COLID_tsAlertStatus];
    const auto size = static_cast<int32_t>(status.maxNumOfParents * status.maxNumOfRows);
    int severity = 0;
    for (int32_t row = 0; row < size && is_cached(status.first_var + row) && severity < kGreatestSeverity;
         ++row) {
        if (!counts(row))
            continue;
        const uint32_t alert_status = number_in_row(COLID_tsAlertStatus, row);
        if (alert_status > kGreatestAlertStatus)
            return unknown_alert;
        if (kSeverity[alert_status] > severity) {
            severity = kSeverity[alert_status];
            note_worst_alert(row);
        }
    }
    return static_cast<global_status>(no_alert + severity);
}

}  // namespace

int compute_global_status(int32_t var_index, bool /*background*/) {
    return store_number(var_index, status_of_alerts());
}
