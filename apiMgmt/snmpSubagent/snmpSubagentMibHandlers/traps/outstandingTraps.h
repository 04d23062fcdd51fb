#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/**
 * The records of outstanding objects. While an object stays in the same state, no second notification about
 * it is sent; its recovery is detected and reported without an event. Records are lost when the process
 * exits. Main thread only, apart from the flag.
 */

/** The variables (indexes in `vars`) that identify an object. */
struct trap_variables {
    int32_t owner;  /**< names the object; key of its record */
    int32_t verify; /**< shows whether the same object is still in this row */
    int32_t status;
};

struct OutstandingTrap {
    TrapToSend command; /**< its alert string has at most 255 characters */

    /** Microseconds since the epoch. */
    int64_t timeAdded_us;
    int64_t timeLastChecked_us;

    /**
     * Numbers are copied when the record is created; those of owner and verify again when it follows its
     * object to another row. Strings are not copied, so a string owner matches by its variable alone.
     */
    int32_t ownerVar;
    uint32_t ownerUint;
    const std::string* ownerStr;
    int32_t verifyVar;
    uint32_t verifyUint;
    int32_t statusVar;
    uint32_t statusUint;
    const std::string* statusStr;
};

/** In order of creation. */
extern std::vector<std::unique_ptr<OutstandingTrap>> outstandingTraps;

/** Events since start-up that were suppressed because their object's state had been reported before. */
extern uint64_t suppressed_notifications;

/** Set when a management message requests handleDisplayOutstandingTraps. */
extern std::atomic<bool> displayTraps_requested;

/** How a column's values are compared, by SMI base type. */
enum class value_kind { number, text, none };

value_kind value_kind_of(int col_id);

/** Logs why a column's values cannot be compared. */
void log_no_value_kind(int col_id);

/** Returns whether a recorded value equals the variable's present one. */
bool has_same_value(uint32_t number, const std::string& text, const variable_entry& now);

/** Result of find_outstanding_trap if there is no record. */
inline constexpr size_t kNoOutstandingTrap = 987654321;

/** Returns the position of the first record of an owner variable whose value still matches. */
size_t find_outstanding_trap(int32_t ownerVar);

/** Appends a record and returns its position. */
size_t add_outstanding_trap(const TrapToSend& trap, const trap_variables& variables);

void remove_outstanding_trap(size_t position);

/**
 * Returns 0 if the notification must be sent and 1 if it is redundant. Maintains the records: the object's
 * record follows it to the row where it was just found; an object that is not Up gets a record; the record of
 * a healthy or removed object is deleted. If `recheck` is set, the record only follows and the result
 * is 1.
 */
int IsRedundantTrap(const TrapToSend& trap, const trap_variables& variables, bool recheck);

/** Logs every record. Returns 0. */
int handleDisplayOutstandingTraps();

/** Name of the object of a record, or an empty string if its table has no name. */
std::string outstanding_object_name(const OutstandingTrap& record);
