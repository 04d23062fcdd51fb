#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingCheck.h"

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

uint32_t outstandingTrapCursor = 0;
int64_t lastTrapCheckTime_us = 0;

namespace {

constexpr int64_t kCheckInterval_s = 60;
constexpr int64_t kStale_s = 7 * 24 * 3600 + 1;

// The next step after the check of a record.
enum class scan {
    next_record,   // check the next record
    ends_at_next,  // end; the next call begins at the next record
    ends_here,     // end; the next call begins at this record
};

// Advances the cursor. Returns false at the end of the list, after moving it to the beginning.
bool move_on() {
    if (++outstandingTrapCursor < outstandingTraps.size())
        return true;
    outstandingTrapCursor = 0;
    return false;
}

void log_removal(const char* reason, const TrapToSend& command) {
    SUBAGENT_LOG(
        debug,
        "%s - removing outstanding trap: trapNum: %d, trapArgA: %d, trapArgB: %d, trapArgC: %d, trapArgD: "
        "%d\n",
        reason, command.trapNum, command.trapArgA, command.trapArgB, command.trapArgC, command.trapArgD);
}

scan remove_at_cursor() {
    remove_outstanding_trap(outstandingTrapCursor);
    return scan::next_record;
}

// Processes a new event for the object, so that IsRedundantTrap removes or replaces the record.
void notify_change(const OutstandingTrap& record) {
    const variable_entry& status = vars[record.statusVar];
    const bool is_number = value_kind_of(status.col_id) == value_kind::number;
    if (is_number)
        SUBAGENT_LOG(debug, "found status uint32 change: prev: %d, current: %d\n",
                     static_cast<int32_t>(record.statusUint), static_cast<int32_t>(status.uint));
    else
        SUBAGENT_LOG(debug, "found status string change: prev: %s, current: %s\n", record.statusStr->c_str(),
                     status.str.c_str());
    TrapToSend command = record.command;
    if (is_number && status.uint == kStatusUp)
        command.trapArgD = kClearingArgument;
    SUBAGENT_LOG(warning,
                 "found status change: trapNum: %d, trapArgA: %d, trapArgB: %d, trapArgC: %d, trapArgD: %d\n",
                 command.trapNum, command.trapArgA, command.trapArgB, command.trapArgC, command.trapArgD);
    processSendTrapCmd(command, false);
}

scan check_at_cursor() {
    OutstandingTrap& record = *outstandingTraps[outstandingTrapCursor];
    const int64_t now_us = ClockNowUs();
    const int64_t unchecked_s = (now_us - record.timeLastChecked_us) / kSecondUs;
    if (unchecked_s < kCheckInterval_s)
        return scan::next_record;
    if (unchecked_s >= kStale_s) {
        log_removal("oustanding trap is stale", record.command);
        return remove_at_cursor();
    }
    record.timeLastChecked_us = now_us;
    lastTrapCheckTime_us = now_us;
    if (record.verifyUint != vars[record.verifyVar].uint) {
        SUBAGENT_LOG(debug, "found verify-value mismatch - removing outstanding trap: trap: %d, var: %d\n",
                     static_cast<int32_t>(record.verifyUint),
                     static_cast<int32_t>(vars[record.verifyVar].uint));
        return remove_at_cursor();
    }
    TrapToSend command = record.command;
    if (processSendTrapCmd(command, true) != 0) {
        log_removal("error while checking status - element is probably gone", record.command);
        remove_outstanding_trap(outstandingTrapCursor);
        return scan::ends_at_next;  // counts as this second's re-check, because it may have taken an exchange
    }
    const variable_entry& status = vars[record.statusVar];
    if (value_kind_of(status.col_id) == value_kind::none) {
        log_no_value_kind(status.col_id);
        return scan::ends_here;
    }
    if (!has_same_value(record.statusUint, *record.statusStr, status))
        notify_change(record);
    return scan::ends_at_next;
}

}  // namespace

void check_outstanding_traps() {
    if (outstandingTraps.empty() || ClockNowUs() - lastTrapCheckTime_us < kSecondUs)
        return;
    // Events may have removed the record at the cursor and all after it.
    if (outstandingTrapCursor >= outstandingTraps.size())
        outstandingTrapCursor = 0;
    for (;;) {
        const scan next = check_at_cursor();
        if (next == scan::ends_here || !move_on() || next == scan::ends_at_next)
            return;
    }
}
