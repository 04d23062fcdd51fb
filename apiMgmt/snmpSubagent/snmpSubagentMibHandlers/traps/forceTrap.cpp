#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/forceTrap.h"

#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

// Subtracted from the component's API index. The reader of the command adds only 1, so a forced notification
// is about the component before that of the written row.
constexpr uint32_t kComponentIndexOffset = 2;

// trapArgA to trapArgC; trapArgD is always 0 and the alert string empty.
struct force_arguments {
    int64_t a = 0;  // wide enough for an API index
    int32_t b = 0;
    int32_t c = 0;
};

// Returns the variable of another column in the same row.
int32_t in_same_row(int32_t var_index, int col_id) {
    return cols[col_id].first_var + var_index - cols[vars[var_index].col_id].first_var;
}

bool find_controller(int32_t row, force_arguments* arguments) {
    if (row != 1 && row != 2) {
        SUBAGENT_LOG(debug, "oid request has invalid row seq num: %d\n", row);
        return false;
    }
    arguments->a = row == 1 ? ctlrIndexFirst : ctlrIndexSecond;
    return true;
}

// Rejects the last row of a full table.
bool find_object(const force_definition& force, int32_t var_index, int32_t row, force_arguments* arguments) {
    if (row == 0) {
        SUBAGENT_LOG(debug, "%s seq num is zero\n", force.word);
        return false;
    }
    if (static_cast<uint32_t>(row) >= cols[force.column].maxNumOfRows) {
        SUBAGENT_LOG(debug, "%s index too large\n", force.word);
        return false;
    }
    const int32_t index_var = in_same_row(var_index, force.index_column);
    if (!is_cached(index_var)) {
        SUBAGENT_LOG(debug, "%s does not exist\n", force.word);
        return false;
    }
    arguments->a = vars[index_var].uint;
    return true;
}

bool find_arguments(const force_definition& force, int32_t var_index, force_arguments* arguments) {
    const int32_t row = get_row_seq(var_index);
    switch (force.rule) {
        case force_rule::controller:
            return find_controller(row, arguments);
        case force_rule::index:
            return find_object(force, var_index, row, arguments);
        case force_rule::component:
            arguments->a = get_parent_seq(var_index);
            arguments->b = force.component;
            arguments->c = force.index_column < 0
                               ? row
                               : static_cast<int32_t>(vars[in_same_row(var_index, force.index_column)].uint -
                                                      kComponentIndexOffset);
            return true;
        case force_rule::row:
            arguments->a = row;
            return true;
    }
    return false;
}

}  // namespace

int force_notification(const force_definition& force, int32_t var_index) {
    force_arguments arguments;
    if (!find_arguments(force, var_index, &arguments))
        return 1;
    std::string command = force.event_id;
    for (const int64_t number :
         {int64_t{force.trapNum}, arguments.a, int64_t{arguments.b}, int64_t{arguments.c}, int64_t{0}})
        command.append(" ").append(std::to_string(number));
    forceTrapCommand = command + " @@@";
    return ExecuteForceTrap();
}

int ExecuteForceTrap() {
    SUBAGENT_LOG(debug, "NMS's ForceTrap payload: %s\n", forceTrapCommand.c_str());
    char scratch[kTrapCommandBuffer];
    return ParseTrapCommand(forceTrapCommand.c_str(), scratch, sizeof scratch);
}

int forceTrapCommand_set(int32_t var_index) {
    forceTrapCommand = vars[var_index].str;
    set_cached(var_index);
    return ExecuteForceTrap();
}
