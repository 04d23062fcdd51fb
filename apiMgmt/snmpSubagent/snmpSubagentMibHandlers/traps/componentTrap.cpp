#include <cstdlib>
#include <optional>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

namespace {

// Which variable of its table's columns a component has.
int32_t variable_of(int col_id, int32_t parent_row, int32_t row) {
    const column_record& column = cols[col_id];
    return column.first_var + (parent_row - 1) * static_cast<int32_t>(column.maxNumOfRows) + row - 1;
}

// The parent's row when it is there and Up; 0 after a logged refusal.
int32_t find_parent(const object_rule& parent, const TrapToSend& trap) {
    int32_t row = find_object_row(parent, trap.trapArgA);
    if (row == 0)
        return 0;
    const component_definition* component = find_component(trap.trapNum, trap.trapArgB);
    const bool takes_zero = component != nullptr && component->state.find == row_rule::next_index;
    if (trap.trapArgC == 0 && !takes_zero) {
        refuse_trap("component index is zero");
        return 0;
    }
    row = bring_object_up_to_date(parent, row, trap.trapArgA);
    if (row == 0)
        return 0;
    if (vars[cols[parent.state.status_column].first_var + row - 1].uint != kStatusUp) {
        refuse_trap(parent.not_up, {trap.trapArgA});
        return 0;
    }
    return row;
}

// The component's row within its parent; 0 after a logged refusal.
int32_t find_component_row(const component_definition& component, int32_t parent_row, int32_t trapArgC) {
    const state_rule& state = component.state;
    const uint32_t rows = cols[state.status_column].maxNumOfRows;
    int32_t row = trapArgC;
    if (state.find == row_rule::next_index) {
        row = find_row_by_value(variable_of(state.index_column, parent_row, 1), static_cast<int32_t>(rows),
                                static_cast<uint32_t>(trapArgC) + 1) +
              1;
        if (trapArgC < 0 || row == 0) {
            refuse_trap(state.unknown, {trapArgC});
            return 0;
        }
    }
    if (static_cast<uint32_t>(row) > rows) {
        refuse_trap(state.too_large, {row, static_cast<int32_t>(rows)});
        return 0;
    }
    if (!is_cached(variable_of(state.status_column, parent_row, row))) {
        refuse_trap(state.missing, {row});
        return 0;
    }
    return row;
}

// A measured value; some come as texts with a unit behind the number.
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

// Whether both values of every rule can be read: if not, no rule speaks.
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

// Empty: there is nothing to do.
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
        return refuse_trap("unknown H/W Comp Num passed fron lumivant-app: %d", {trap.trapArgB});
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
