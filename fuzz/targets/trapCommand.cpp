// Processes trap commands, one per line, with NUL for a newline, up to the notification. A line "!XY" sets
// all objects of the array to status X and all components to status Y. Each command must have one outcome:
// rejected with a log line, suppressed, or sent as one notification about its object, with the values in the
// store.

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "fuzz/lib/trapWords.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

size_t count_lines(const std::string& text, const std::string& beginning) {
    size_t count = text.rfind(beginning, 0) == 0 ? 1 : 0;
    for (size_t place = 0; (place = text.find("\n" + beginning, place)) != std::string::npos; ++place)
        ++count;
    return count;
}

std::unique_ptr<TrapToSend> parse(const std::string& text) {
    const size_t waiting = trapsToSend.size();
    std::vector<char> scratch(kTrapCommandBuffer);  // an exact block, for the sanitizer
    const int result = ParseTrapCommand(text.c_str(), scratch.data(), scratch.size());
    FuzzCheck(trapsToSend.size() == waiting + (result == 0 ? 1 : 0), "result and queue disagree");
    FuzzCheck((result == 0) == is_trap_command(text.c_str()),
              "accepted although malformed, or rejected although well-formed");
    if (result != 0)
        return nullptr;
    std::unique_ptr<TrapToSend> trap = std::move(trapsToSend.back());
    trapsToSend.pop_back();
    return trap;
}

int32_t row_of(const state_rule& state, int32_t argument) {
    switch (state.find) {
        case row_rule::controller:
            return argument == ctlrIndexFirst ? 1 : 2;
        case row_rule::one_or_two:
            return 1;
        case row_rule::row:
            return argument;
        default:
            break;
    }
    int32_t row = 1;
    while (vars[var_at(state.index_column, row)].uint != static_cast<uint32_t>(argument))
        ++row;
    return row;
}

std::string formatted_value(int32_t variable) {
    const variable_entry& entry = vars[variable];
    switch (cols[entry.col_id].data_type) {
        case SMI_BASETYPE_OCTET_STRING:
            return "\"" + entry.str + "\"";
        case SMI_BASETYPE_INTEGER32:
            return "integer " + std::to_string(static_cast<int32_t>(entry.uint));
        default:
            return "gauge " + std::to_string(entry.uint);
    }
}

std::string formatted_variables(const notification_definition& notification, int32_t row) {
    std::string shown;
    for (const int col_id : notification.columns) {
        const bool is_of_object =
            std::ranges::find(notification.object->rows, col_id) != notification.object->rows.end();
        const int32_t variable = cols[col_id].is_table()
                                     ? var_at(col_id, is_of_object ? row : cols[col_id].trapRow)
                                     : cols[col_id].first_var;
        shown += "\n  " + name_of(variable) + " " + formatted_value(variable);
    }
    return shown;
}

void check_notification(const TrapToSend& trap, const std::string& output) {
    const notification_definition* notification = find_notification(trap.trapNum);
    if (notification == nullptr || notification->object == nullptr)
        return;
    const object_rule& object = *notification->object;
    const int32_t row = row_of(object.state, trap.trapArgA);
    if (output.find(formatted_variables(*notification, row) + "\n") == std::string::npos)
        FuzzFail("the notification does not show its object:\n" + output);
    if (*object.not_up != '\0')  // about a component
        return;
    const int32_t status_var = var_at(object.state.status_column, row);
    const bool is_known = std::ranges::find(outstandingTraps, status_var, [](const auto& record) {
                              return record->statusVar;
                          }) != outstandingTraps.end();
    FuzzCheck(is_known == (vars[status_var].uint != kStatusUp),
              "an unhealthy object has no record, or a healthy one has");
}

void run(TrapToSend& trap) {
    const size_t known = outstandingTraps.size();
    const int result = processSendTrapCmd(trap, false);
    const std::string output = transcript::take();
    const size_t sent = count_lines(output, "notify ");
    if (sent > 1)
        FuzzFail("several notifications for one command:\n" + output);
    FuzzCheck(result != 0 || sent == 1 || outstandingTraps.size() <= known + 1, "more than one new record");
    if (result != 0 && sent == 0 && count_lines(output, "log 4 ") == 0)
        FuzzFail("rejected without a log line:\n" + output);
    if (sent == 1)
        check_notification(trap, output);
}

// Sets the status in those rows that exist.
void set_status(int status_column, int32_t parent, uint32_t status) {
    for (const int32_t row : {1, 2}) {
        if (row <= static_cast<int32_t>(cols[status_column].maxNumOfRows) &&
            is_cached(var_at(status_column, row, parent)))
            FuzzTrapWorld::set_status(var_at(status_column, row, parent), status);
    }
}

// Returns the status for a digit of a line "!XY", or Up if it is missing.
uint32_t status_in(const std::string& line, size_t place) {
    return line.size() > place ? static_cast<uint32_t>(line[place] - '0') % 8 : kStatusUp;
}

void set_statuses(const std::string& line) {
    static constexpr const char* kTexts[] = {"", "Up", "Down", "Degraded"};
    const uint32_t status = status_in(line, 1);
    for (const int head : {COLID_tsCtlrNbr, COLID_tsDiskNbr, COLID_tsEnclNbr, COLID_tsDiskFolderNbr,
                           COLID_tsVolumeNbr, COLID_tsServerNbr, COLID_tsCacheNbr, COLID_tsUPSNbr})
        set_status(head + 1, 1, status);
    for (const auto& [object, index] :
         {std::pair{"TsDisk", 40}, {"TsDisk", 43}, {"TsDiskFolder", 21}, {"TsVolume", 31}, {"TsServer", 51}})
        FuzzTrapWorld::answer_status(object, index, status < std::size(kTexts) ? kTexts[status] : "Other");
    for (const component_definition& component : components)
        set_status(component.state.status_column, 2, status_in(line, 2));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzTrapWorld world;
    verbose = false;
    outstandingTraps.clear();
    set_statuses("!");
    FuzzInput input(data, size);
    while (!input.IsEmpty()) {
        std::string line(input.Line());
        std::replace(line.begin(), line.end(), '\0', '\n');
        if (line.starts_with('!'))
            set_statuses(line);
        else if (const std::unique_ptr<TrapToSend> trap = parse(line))
            run(*trap);
    }
    handleDisplayOutstandingTraps();
    transcript::take();
    return 0;
}
