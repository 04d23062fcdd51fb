#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"

#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/postProcess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

namespace {

constexpr int32_t kDiskStatusChange = 202;
constexpr size_t kLongestDiskName = 500;  // what of a name is looked at

// 1-based; 0 when no row holds the index. A negative one is no index, whatever a cell may hold.
int32_t row_of_index(int index_column, int32_t index) {
    if (index < 0)
        return 0;
    const column_record& column = cols[index_column];
    return find_row_by_value(column.first_var, static_cast<int32_t>(column.maxNumOfRows),
                             static_cast<uint32_t>(index)) +
           1;
}

int32_t row_of_controller(int32_t index) {
    if (index == ctlrIndexFirst)
        return 1;
    return index == ctlrIndexSecond ? 2 : 0;
}

// A negative number counts as one that is too large.
bool is_beyond_table(int col_id, int32_t row) {
    return static_cast<uint32_t>(row) > cols[col_id].maxNumOfRows;
}

int32_t row_by_rule(const state_rule& state, int32_t trapArgA) {
    switch (state.find) {
        case row_rule::controller:
            return row_of_controller(trapArgA);
        case row_rule::one_or_two:
            return trapArgA == 1 || trapArgA == 2 ? 1 : 0;
        case row_rule::row:
            return trapArgA;
        default:
            return row_of_index(state.index_column, trapArgA);
    }
}

// The status of one object, read anew. 0 on success.
int read_status(const object_rule& object, int32_t trapArgA, int32_t status_var) {
    if (object.fresh != fresh_rule::instance)
        return 0;
    if (GetSingleInstance(object.api_name, trapArgA, "Status", status_var, false) != 0)
        return 1;
    tsstatus_enum_post_process(status_var);
    return 0;
}

void advise_on(const object_rule& object, int32_t status_var) {
    if (vars[status_var].uint == kStatusUp)
        return;
    write_action_text(object.state.unhealthy);
    if (object.clears_only_when_up && trapAlertState == kAlertCleared)
        write_alert_state(kAlertActive);
}

// 0 when the notification can go, 1 after a logged refusal.
int show_enclosure_of_disk(int32_t disk_row) {
    const disk_enclosure enclosure =
        find_enclosure_of_disk(vars[cols[COLID_tsDiskName].first_var + disk_row - 1].str);
    if (!enclosure.is_named) {
        // The first row reads so until the next refresh.
        set_trap_row(COLID_tsEnclName, 1);
        vars[cols[COLID_tsEnclName].first_var].str = "Unknown";
        return 0;
    }
    if (enclosure.row == 0)
        return 1;
    set_trap_row(COLID_tsEnclName, enclosure.row);
    return 0;
}

}  // namespace

int32_t find_object_row(const object_rule& object, int32_t trapArgA) {
    const state_rule& state = object.state;
    if (trapArgA == 0 && *object.no_index != '\0') {
        refuse_trap(object.no_index);
        return 0;
    }
    if (object.fresh == fresh_rule::table_first)
        refresh_table_of(state.status_column);
    const bool is_bounded = state.find == row_rule::bounded_index || state.find == row_rule::row;
    if (is_bounded && is_beyond_table(state.status_column, trapArgA)) {
        refuse_trap(state.too_large, {trapArgA});
        return 0;
    }
    const int32_t row = row_by_rule(state, trapArgA);
    if (row == 0)
        refuse_trap(state.unknown, {trapArgA});
    return row;
}

int32_t bring_object_up_to_date(const object_rule& object, int32_t row, int32_t trapArgA) {
    const state_rule& state = object.state;
    if (object.fresh == fresh_rule::table) {
        refresh_table_of(state.status_column);
        row = row_by_rule(state, trapArgA);
        if (row == 0) {
            refuse_trap(state.unknown, {trapArgA});
            return 0;
        }
    }
    for (const int col_id : object.rows)
        set_trap_row(col_id, row);
    if (!is_cached(cols[state.status_column].first_var + row - 1)) {
        refuse_trap(state.missing, {trapArgA});
        return 0;
    }
    return row;
}

int send_object_trap(const notification_definition& notification, const TrapToSend& trap, bool recheck) {
    const object_rule& object = *notification.object;
    int32_t row = find_object_row(object, trap.trapArgA);
    if (row != 0)
        row = bring_object_up_to_date(object, row, trap.trapArgA);
    if (row == 0)
        return 1;
    const trap_variables variables = {.owner = cols[object.state.owner_column].first_var + row - 1,
                                      .verify = cols[object.state.verify_column].first_var + row - 1,
                                      .status = cols[object.state.status_column].first_var + row - 1};
    if (read_status(object, trap.trapArgA, variables.status) != 0)
        return 1;
    advise_on(object, variables.status);
    if (IsRedundantTrap(trap, variables, recheck))
        return 0;
    if (notification.number == kDiskStatusChange && show_enclosure_of_disk(row) != 0)
        return 1;
    return send_notification(notification.number);
}

disk_enclosure find_enclosure_of_disk(const std::string& disk_name) {
    const std::string name = disk_name.substr(0, kLongestDiskName);
    const size_t dash = name.find('-');
    if (dash == std::string::npos || dash + 1 == name.size())
        return {.is_named = false, .row = 0};
    const auto enclosure = static_cast<int32_t>(strtol(name.substr(0, dash).c_str(), nullptr, 10));
    const int32_t row = row_of_index(COLID_tsEnclApiIndex, enclosure);
    if (row == 0)
        refuse_trap("could not find encl index: enclNum %d", {enclosure});
    return {.is_named = true, .row = row};
}
