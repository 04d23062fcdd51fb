#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"

#include <algorithm>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

std::vector<std::unique_ptr<OutstandingTrap>> outstandingTraps;
std::atomic<bool> displayTraps_requested{false};
uint64_t suppressed_notifications = 0;

namespace {

// The status of a healthy object, as number and as string.
constexpr uint32_t kGoodValue = 1;
constexpr const char* kGoodText = "Up";

// Removes the record of an object that is no longer in its row.
int drop_record(size_t position, const TrapToSend& trap, const trap_variables& variables,
                const char* reason) {
    SUBAGENT_LOG(
        debug,
        "we're removing the outstanding trap cuz %s: trapNum: %d, owenerOid: %d, statusOid: %d, status "
        "string: %s, var verify: %d, trap verify: %d\n",
        reason, trap.trapNum, vars[variables.owner].col_id, vars[variables.status].col_id,
        vars[variables.status].str.c_str(), static_cast<int32_t>(vars[variables.verify].uint),
        static_cast<int32_t>(outstandingTraps[position]->verifyUint));
    remove_outstanding_trap(position);
    return 1;
}

void log_redundant(const TrapToSend& trap, const trap_variables& variables, value_kind kind) {
    const variable_entry& status = vars[variables.status];
    const int owner_col_id = vars[variables.owner].col_id;
    if (kind == value_kind::number)
        SUBAGENT_LOG(debug,
                     "we're not sending out this trap cuz it would be redundant: trapNum: %d, owenerOid: %d, "
                     "statusOid: %d, status: %d\n",
                     trap.trapNum, owner_col_id, status.col_id, static_cast<int32_t>(status.uint));
    else
        SUBAGENT_LOG(debug,
                     "we're not sending out this trap cuz it would be redundant: trapNum: %d, owenerOid: %d, "
                     "statusOid: %d, status string: %s\n",
                     trap.trapNum, owner_col_id, status.col_id, status.str.c_str());
}

void log_change(const OutstandingTrap& record, const TrapToSend& trap, const trap_variables& variables,
                value_kind kind) {
    const variable_entry& status = vars[variables.status];
    const int owner_col_id = vars[variables.owner].col_id;
    if (kind == value_kind::number)
        SUBAGENT_LOG(debug,
                     "status uint has changed - remove this outstanding trap: trapNum: %d, owenerOid: %d, "
                     "statusOid: %d, old status: %d, new status: %d\n",
                     trap.trapNum, owner_col_id, status.col_id, static_cast<int32_t>(record.statusUint),
                     static_cast<int32_t>(status.uint));
    else
        SUBAGENT_LOG(debug,
                     "status string has changed - remove this outstanding trap: trapNum: %d, owenerOid: %d, "
                     "statusOid: %d, old status: %s, new status: %s\n",
                     trap.trapNum, owner_col_id, status.col_id, record.statusStr->c_str(),
                     status.str.c_str());
}

bool is_good(const variable_entry& status, value_kind kind) {
    return kind == value_kind::text ? status.str == kGoodText : status.uint == kGoodValue;
}

// Returns the position of the record of the command's object, whichever row the object was in. Does not
// compare rows: when rows are packed again, a record that is verified by its row number keeps its row until
// its own re-check.
size_t find_record_of(const TrapToSend& trap) {
    const object_rule& object = *find_notification(trap.trapNum)->object;
    const bool is_component = *object.not_up != '\0';
    const bool is_only_one = object.state.find == row_rule::one_or_two;
    const auto found = std::ranges::find_if(outstandingTraps, [&](const auto& record) {
        const TrapToSend& command = record->command;
        return command.trapNum == trap.trapNum && (is_only_one || command.trapArgA == trap.trapArgA) &&
               (!is_component || (command.trapArgB == trap.trapArgB && command.trapArgC == trap.trapArgC));
    });
    return found == outstandingTraps.end() ? kNoOutstandingTrap
                                           : static_cast<size_t>(found - outstandingTraps.begin());
}

// Returns the position of a record in the object's row whose verify value shows that it belongs to another
// object.
size_t find_displaced_record(const trap_variables& variables) {
    const size_t position = find_outstanding_trap(variables.owner);
    const bool is_displaced = position != kNoOutstandingTrap &&
                              outstandingTraps[position]->verifyUint != vars[variables.verify].uint;
    return is_displaced ? position : kNoOutstandingTrap;
}

// Moves the record to the object's present row. The recorded status remains that of the last notification.
void follow_object(OutstandingTrap& record, const trap_variables& variables) {
    record.ownerVar = variables.owner;
    record.ownerUint = vars[variables.owner].uint;
    record.ownerStr = &vars[variables.owner].str;
    record.verifyVar = variables.verify;
    record.verifyUint = vars[variables.verify].uint;
    record.statusVar = variables.status;
    record.statusStr = &vars[variables.status].str;
}

void log_record(const OutstandingTrap& record) {
    const TrapToSend& command = record.command;
    SUBAGENT_LOG(
        warning,
        "%d,%d,%d: %d, %d, %d, %d, %d, ownerVar col-id:%d, uint:%u, str:%s, verifyVar col-id:%d, uint:%u "
        "statusVar col-id:%d, uint:%u, str:%s\n",
        command.eventIdA, command.eventIdB, command.eventIdC, command.trapNum, command.trapArgA,
        command.trapArgB, command.trapArgC, command.trapArgD, vars[record.ownerVar].col_id, record.ownerUint,
        record.ownerStr->c_str(), vars[record.verifyVar].col_id, record.verifyUint,
        vars[record.statusVar].col_id, record.statusUint, record.statusStr->c_str());
}

}  // namespace

value_kind value_kind_of(int col_id) {
    switch (cols[col_id].data_type) {
        case SMI_BASETYPE_INTEGER32:
        case SMI_BASETYPE_UNSIGNED32:
        case SMI_BASETYPE_ENUM:
        case SMI_BASETYPE_BITS:
            return value_kind::number;
        case SMI_BASETYPE_OCTET_STRING:
            return value_kind::text;
        default:
            return value_kind::none;
    }
}

void log_no_value_kind(int col_id) {
    const uint32_t data_type = cols[col_id].data_type;
    if (data_type == SMI_BASETYPE_UNKNOWN)
        SUBAGENT_LOG(warning, "got SMI_BASETYPE_UNKNOWN\n");
    else
        SUBAGENT_LOG(warning, "got an unknown data-type: %d\n", static_cast<int>(data_type));
}

bool has_same_value(uint32_t number, const std::string& text, const variable_entry& now) {
    return value_kind_of(now.col_id) == value_kind::text ? text == now.str : number == now.uint;
}

size_t find_outstanding_trap(int32_t ownerVar) {
    const variable_entry& owner = vars[ownerVar];
    for (size_t position = 0; position < outstandingTraps.size(); ++position) {
        const OutstandingTrap& record = *outstandingTraps[position];
        if (record.ownerVar != ownerVar)
            continue;
        switch (value_kind_of(owner.col_id)) {
            case value_kind::number:
                if (record.ownerUint == owner.uint)
                    return position;
                break;
            case value_kind::text:
                if (*record.ownerStr == owner.str)
                    return position;
                break;
            case value_kind::none:
                log_no_value_kind(owner.col_id);
                return kNoOutstandingTrap;
        }
    }
    return kNoOutstandingTrap;
}

size_t add_outstanding_trap(const TrapToSend& trap, const trap_variables& variables) {
    const int64_t now_us = ClockNowUs();
    outstandingTraps.emplace_back(new OutstandingTrap{.command = trap,
                                                      .timeAdded_us = now_us,
                                                      .timeLastChecked_us = now_us,
                                                      .ownerVar = variables.owner,
                                                      .ownerUint = vars[variables.owner].uint,
                                                      .ownerStr = &vars[variables.owner].str,
                                                      .verifyVar = variables.verify,
                                                      .verifyUint = vars[variables.verify].uint,
                                                      .statusVar = variables.status,
                                                      .statusUint = vars[variables.status].uint,
                                                      .statusStr = &vars[variables.status].str});
    return outstandingTraps.size() - 1;
}

void remove_outstanding_trap(size_t position) {
    outstandingTraps.erase(outstandingTraps.begin() + static_cast<std::ptrdiff_t>(position));
}

int IsRedundantTrap(const TrapToSend& trap, const trap_variables& variables, bool recheck) {
    const size_t known = find_record_of(trap);
    if (known != kNoOutstandingTrap)
        follow_object(*outstandingTraps[known], variables);
    // The re-check needs no more than the status, which the caller has re-read.
    if (recheck)
        return 1;
    const variable_entry& status = vars[variables.status];
    const value_kind kind = value_kind_of(status.col_id);
    if (kind == value_kind::none) {
        SUBAGENT_LOG(warning, "col-id:%d, can't process this data type: %d\n", status.col_id,
                     static_cast<int>(cols[status.col_id].data_type));
        return 1;
    }
    const size_t position = known != kNoOutstandingTrap ? known : find_displaced_record(variables);
    if (position != kNoOutstandingTrap) {
        const OutstandingTrap& record = *outstandingTraps[position];
        if (!is_cached(variables.status))
            return drop_record(position, trap, variables, "the var is no longer cached");
        if (record.verifyUint != vars[variables.verify].uint)
            return drop_record(position, trap, variables, "verify-value does not match");
        if (has_same_value(record.statusUint, *record.statusStr, status) &&
            trap.trapArgD != kClearingArgument) {
            ++suppressed_notifications;
            log_redundant(trap, variables, kind);
            return 1;
        }
        log_change(record, trap, variables, kind);
        remove_outstanding_trap(position);
    }
    if (!is_good(status, kind))
        add_outstanding_trap(trap, variables);
    return 0;
}

int handleDisplayOutstandingTraps() {
    displayTraps_requested = false;
    SUBAGENT_LOG(
        warning,
        "7,7,7: trapNum, trapArgA, trapArgB, trapArgC, trapArgD, owner, uint, str, status, uint, str\n");
    for (const auto& record : outstandingTraps)
        log_record(*record);
    return 0;
}

std::string outstanding_object_name(const OutstandingTrap& record) {
    const int owner = vars[record.ownerVar].col_id;
    if (value_kind_of(owner) == value_kind::text)
        return *record.ownerStr;
    for (int col_id = 0; col_id < NUMBER_OF_COLUMNS; ++col_id) {
        if (cols[col_id].head_var == cols[owner].head_var &&
            std::string_view(column_definitions[col_id].name).ends_with("Name"))
            return vars[cols[col_id].first_var + record.ownerVar - cols[owner].first_var].str;
    }
    return "";
}
