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
 * The memory of what is not healthy: while an object stays in the same state no second notification goes
 * out for it, and its return to health is found and notified without an event. Lost with the process. Main
 * thread only, apart from the flag.
 */

/** The variables (indexes in `vars`) by which an object is known. */
struct trap_variables {
    int32_t owner;  /**< names the object; the key of its record */
    int32_t verify; /**< tells whether the same object still stands in this row */
    int32_t status;
};

struct OutstandingTrap {
    TrapToSend command; /**< the alert string has at most 255 characters */

    /** Microseconds since the epoch. */
    int64_t timeAdded_us;
    int64_t timeLastChecked_us;

    /** The numbers date from when the record was made; those of owner and verify from when it last followed
        its object. The strings are the variables' own, with their present values: a string owner matches by
        its variable alone. */
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

/** Events since the start that were not notified because their object's state had been notified before. */
extern uint64_t suppressed_notifications;

/** A management message asks for handleDisplayOutstandingTraps. */
extern std::atomic<bool> displayTraps_requested;

/** How the values of a column are compared: by SMI base type. */
enum class value_kind { number, text, none };

value_kind value_kind_of(int col_id);

/** Logs why a column's values cannot be compared. */
void log_no_value_kind(int col_id);

/** Whether a value that was kept is that of the variable now. */
bool has_same_value(uint32_t number, const std::string& text, const variable_entry& now);

/** What find_outstanding_trap answers when there is no record. */
inline constexpr size_t kNoOutstandingTrap = 987654321;

/** The first record of an owner variable whose value still matches. */
size_t find_outstanding_trap(int32_t ownerVar);

/** Its position. */
size_t add_outstanding_trap(const TrapToSend& trap, const trap_variables& variables);

void remove_outstanding_trap(size_t position);

/**
 * Returns 0 if the notification must be sent and 1 otherwise. Maintains the records: the object's record
 * follows it to the row where it was found now, an object that is not Up gets a record, and one that is
 * healthy or gone loses it. With `recheck` set, the record only follows and the result is 1.
 */
int IsRedundantTrap(const TrapToSend& trap, const trap_variables& variables, bool recheck);

/** Logs every record. Result 0. */
int handleDisplayOutstandingTraps();

/** Name of the object of a record, or an empty string if its table has no name. */
std::string outstanding_object_name(const OutstandingTrap& record);
