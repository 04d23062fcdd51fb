#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/postProcess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

// ---- an object ----

namespace {

constexpr int32_t kDiskStatusChange = 202;
constexpr size_t kLongestDiskName = 500;  // longer names are truncated

// Returns the row (from 1) with this API index; 0 if there is none. A negative number is never an index,
// whatever the table contains.
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

// A negative number counts as too large.
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

// Re-reads the status of one object if its rule says so. Returns 0 on success.
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

// Returns the row (from 1) that trapArgA selects; 0 after logging the rejection.
int32_t find_object_row(const object_rule& object, int32_t trapArgA) {
    const state_rule& state = object.state;
    if (trapArgA == 0 && *object.no_index != '\0') {
        reject_trap(object.no_index);
        return 0;
    }
    if (object.fresh == fresh_rule::table_first)
        refresh_table_of(state.status_column);
    const bool is_bounded = state.find == row_rule::bounded_index || state.find == row_rule::row;
    if (is_bounded && is_beyond_table(state.status_column, trapArgA)) {
        reject_trap(state.too_large, {trapArgA});
        return 0;
    }
    const int32_t row = row_by_rule(state, trapArgA);
    if (row == 0)
        reject_trap(state.unknown, {trapArgA});
    return row;
}

// Refreshes the table if its rule says so, and selects the object's row for the notification. Returns the row
// (from 1), which the refresh may have changed; 0 after logging that there is no such object.
int32_t refresh_object(const object_rule& object, int32_t row, int32_t trapArgA) {
    const state_rule& state = object.state;
    if (object.fresh == fresh_rule::table) {
        refresh_table_of(state.status_column);
        row = row_by_rule(state, trapArgA);
        if (row == 0) {
            reject_trap(state.unknown, {trapArgA});
            return 0;
        }
    }
    for (const int col_id : object.rows)
        set_trap_row(col_id, row);
    if (!is_cached(cols[state.status_column].first_var + row - 1)) {
        reject_trap(state.missing, {trapArgA});
        return 0;
    }
    return row;
}

// The row (from 1) of a disk's enclosure, from the disk's name "ENCLOSURE-SLOT". `is_named` is false if the
// name does not contain it; the row is 0 if there is no such enclosure, which is logged.
struct disk_enclosure {
    bool is_named;
    int32_t row;
};

disk_enclosure find_enclosure_of_disk(const std::string& disk_name) {
    const std::string name = disk_name.substr(0, kLongestDiskName);
    const size_t dash = name.find('-');
    if (dash == std::string::npos || dash + 1 == name.size())
        return {.is_named = false, .row = 0};
    const auto enclosure = static_cast<int32_t>(strtol(name.substr(0, dash).c_str(), nullptr, 10));
    const int32_t row = row_of_index(COLID_tsEnclApiIndex, enclosure);
    if (row == 0)
        reject_trap("could not find encl index: enclNum %d", {enclosure});
    return {.is_named = true, .row = row};
}

// Selects the enclosure's row for the notification. Returns 0, or 1 after logging the rejection.
int show_enclosure_of_disk(int32_t disk_row) {
    const disk_enclosure enclosure =
        find_enclosure_of_disk(vars[cols[COLID_tsDiskName].first_var + disk_row - 1].str);
    if (!enclosure.is_named) {
        // Overwrites row 1 until the next refresh.
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

int send_object_trap(const notification_definition& notification, const TrapToSend& trap, bool recheck) {
    const object_rule& object = *notification.object;
    int32_t row = find_object_row(object, trap.trapArgA);
    if (row != 0)
        row = refresh_object(object, row, trap.trapArgA);
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

// ---- a component ----

namespace {

// Returns the component's variable in a column of its table.
int32_t variable_of(int col_id, int32_t parent_row, int32_t row) {
    const column_record& column = cols[col_id];
    return column.first_var + (parent_row - 1) * static_cast<int32_t>(column.maxNumOfRows) + row - 1;
}

// Returns the parent's row if the parent exists and is Up; 0 after logging the rejection.
int32_t find_parent(const object_rule& parent, const TrapToSend& trap) {
    int32_t row = find_object_row(parent, trap.trapArgA);
    if (row == 0)
        return 0;
    const component_definition* component = find_component(trap.trapNum, trap.trapArgB);
    const bool takes_zero = component != nullptr && component->state.find == row_rule::next_index;
    if (trap.trapArgC == 0 && !takes_zero) {
        reject_trap("component index is zero");
        return 0;
    }
    row = refresh_object(parent, row, trap.trapArgA);
    if (row == 0)
        return 0;
    if (vars[cols[parent.state.status_column].first_var + row - 1].uint != kStatusUp) {
        reject_trap(parent.not_up, {trap.trapArgA});
        return 0;
    }
    return row;
}

// Returns the component's row within its parent; 0 after logging the rejection.
int32_t find_component_row(const component_definition& component, int32_t parent_row, int32_t trapArgC) {
    const state_rule& state = component.state;
    const uint32_t rows = cols[state.status_column].maxNumOfRows;
    int32_t row = trapArgC;
    if (state.find == row_rule::next_index) {
        row = find_row_by_value(variable_of(state.index_column, parent_row, 1), static_cast<int32_t>(rows),
                                static_cast<uint32_t>(trapArgC) + 1) +
              1;
        if (trapArgC < 0 || row == 0) {
            reject_trap(state.unknown, {trapArgC});
            return 0;
        }
    }
    if (static_cast<uint32_t>(row) > rows) {
        reject_trap(state.too_large, {row, static_cast<int32_t>(rows)});
        return 0;
    }
    if (!is_cached(variable_of(state.status_column, parent_row, row))) {
        reject_trap(state.missing, {row});
        return 0;
    }
    return row;
}

// Returns a measured value. Some are strings with a unit after the number.
std::optional<double> reading_of(int col_id, int32_t parent_row, int32_t row) {
    const variable_entry& entry = vars[variable_of(col_id, parent_row, row)];
    if (cols[col_id].data_type != SMI_BASETYPE_OCTET_STRING)
        return entry.uint;
    char* end = nullptr;
    const double value = strtod(entry.str.c_str(), &end);
    if (end == entry.str.c_str())
        return std::nullopt;
    return value;
}

// Returns whether both values of every rule are readable. If not, no rule applies.
bool can_compare(const component_definition& component, int32_t parent_row, int32_t row) {
    for (const level_rule* level : {&component.low, &component.high}) {
        if (level->reading_column >= 0 && (!reading_of(level->reading_column, parent_row, row) ||
                                           !reading_of(level->threshold_column, parent_row, row)))
            return false;
    }
    return true;
}

const char* advice_for_degraded(const component_definition& component, int32_t parent_row, int32_t row) {
    if (!can_compare(component, parent_row, row))
        return component.degraded;
    const auto value = [&](int col_id) { return *reading_of(col_id, parent_row, row); };
    const level_rule& low = component.low;
    if (low.reading_column >= 0 && value(low.reading_column) <= value(low.threshold_column))
        return low.advice;
    const level_rule& high = component.high;
    if (high.reading_column >= 0 && value(high.reading_column) >= value(high.threshold_column))
        return high.advice;
    return component.degraded;
}

// Returns an empty string if no action is needed.
const char* advice_for(const component_definition& component, uint32_t status, int32_t parent_row,
                       int32_t row) {
    if (status == kStatusUp)
        return "";
    if (*component.state.unhealthy != '\0')
        return component.state.unhealthy;
    if (status == kStatusDown)
        return component.down;
    return status == kStatusDegraded ? advice_for_degraded(component, parent_row, row) : "";
}

void describe(const trap_variables& variables, const char* advice) {
    const variable_entry& status = vars[variables.status];
    const std::string& name = vars[variables.owner].str;
    write_trap_number(trapCompStatus, COLID_trapCompStatus, static_cast<int32_t>(status.uint));
    write_trap_text(trapCompName, COLID_trapCompName, name);
    write_trap_text(trapCompLocation, COLID_trapCompLocation, name);
    write_trap_text(trapCompStatusText, COLID_trapCompStatusText, status.str);
    if (*advice != '\0')
        write_action_text(advice);
}

}  // namespace

int send_component_trap(const notification_definition& notification, const TrapToSend& trap, bool recheck) {
    const int32_t parent_row = find_parent(*notification.object, trap);
    if (parent_row == 0)
        return 1;
    write_trap_number(trapCompNum, COLID_trapCompNum, trap.trapArgB);
    write_trap_text(trapCompStatusText, COLID_trapCompStatusText, "empty");
    const component_definition* component = find_component(trap.trapNum, trap.trapArgB);
    if (component == nullptr)
        return reject_trap("unknown H/W Comp Num passed fron lumivant-app: %d", {trap.trapArgB});
    const state_rule& state = component->state;
    refresh_table_of(state.status_column);
    const int32_t row = find_component_row(*component, parent_row, trap.trapArgC);
    if (row == 0)
        return 1;
    const trap_variables variables = {.owner = variable_of(state.owner_column, parent_row, row),
                                      .verify = variable_of(state.verify_column, parent_row, row),
                                      .status = variable_of(state.status_column, parent_row, row)};
    describe(variables, advice_for(*component, vars[variables.status].uint, parent_row, row));
    return IsRedundantTrap(trap, variables, recheck) ? 0 : send_notification(notification.number);
}

// ---- a device that a SCSI initiator sees ----

namespace {

constexpr int32_t kDeviceStatusChange = 213;

// Makes the notification show an unknown object: row 1 with number 0 and name "Unknown". The destructor
// restores both values, because they belong to another object.
class unknown_object {
  public:
    unknown_object(int number_column, int name_column)
        : number_(vars[cols[number_column].first_var].uint),
          name_(vars[cols[name_column].first_var].str),
          kept_number_(std::exchange(number_, 0)),
          kept_name_(std::exchange(name_, "Unknown")) {
        set_trap_row(number_column, 1);
        set_trap_row(name_column, 1);
    }
    ~unknown_object() {
        number_ = kept_number_;
        name_ = std::move(kept_name_);
    }
    unknown_object(const unknown_object&) = delete;
    unknown_object& operator=(const unknown_object&) = delete;

  private:
    uint32_t& number_;
    std::string& name_;
    uint32_t kept_number_;
    std::string kept_name_;
};

// Placeholders for an unknown disk and enclosure; empty if they are known.
struct unknown_objects {
    std::optional<unknown_object> disk;
    std::optional<unknown_object> enclosure;

    void add_disk() { disk.emplace(COLID_tsDiskNbr, COLID_tsDiskName); }
    void add_enclosure() { enclosure.emplace(COLID_tsEnclNbr, COLID_tsEnclName); }
};

// Selects the rows of a disk and its enclosure for the notification. Returns 0, or 1 after logging the
// rejection.
int show_disk(int32_t row, unknown_objects& unknown) {
    set_trap_row(COLID_tsDiskNbr, row);
    set_trap_row(COLID_tsDiskName, row);
    const column_record& names = cols[COLID_tsDiskName];
    const bool is_row = row > 0 && static_cast<uint32_t>(row) <= names.maxNumOfRows;
    if (!is_row || !is_cached(names.first_var + row - 1))
        return reject_trap("disk does not exist: %d", {row});
    // Copied, because the refresh may change it.
    const std::string name = vars[names.first_var + row - 1].str;
    refresh_table_of(COLID_tsEnclApiIndex);
    const disk_enclosure enclosure = find_enclosure_of_disk(name);
    if (!enclosure.is_named) {
        unknown.add_enclosure();
        return 0;
    }
    if (enclosure.row == 0)
        return 1;
    set_trap_row(COLID_tsEnclNbr, enclosure.row);
    set_trap_row(COLID_tsEnclName, enclosure.row);
    return 0;
}

}  // namespace

int send_device_trap(const TrapToSend& trap) {
    if (trap.trapArgB == 0)
        return reject_trap("no scsi initiator device type passed");
    write_trap_number(trapSIDeviceType, COLID_trapSIDeviceType, trap.trapArgB);
    if (trap.trapArgC == 0)
        return reject_trap("no scsi initiator device status passed");
    write_trap_number(trapSIDeviceStatus, COLID_trapSIDeviceStatus, trap.trapArgC);
    unknown_objects unknown;
    if (trap.trapArgA == 0) {
        unknown.add_disk();
        unknown.add_enclosure();
    } else if (show_disk(trap.trapArgA, unknown) != 0) {
        return 1;
    }
    return send_notification(kDeviceStatusChange);
}
