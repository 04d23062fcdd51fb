#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr std::string_view kAlertSeparator = "@@@";
constexpr size_t kMaximumAlertString = 255;

int commands_in_hand = 0;

// Returns the alert text from the full alert string, then truncates the string.
std::string take_alert_text(std::string& alertString) {
    const size_t separator = alertString.rfind(kAlertSeparator);
    const std::string text =
        separator == std::string::npos ? "" : alertString.substr(separator + kAlertSeparator.size());
    if (alertString.size() > kMaximumAlertString)
        alertString.resize(kMaximumAlertString);
    return text;
}

}  // namespace

void write_trap_text(std::string& value, int col_id, const std::string& text) {
    value = text;
    store_text(cols[col_id].first_var, value);
}

void write_trap_number(int32_t& value, int col_id, int32_t number) {
    value = number;
    store_number(cols[col_id].first_var, value);
}

void write_alert_state(int32_t state) {
    write_trap_number(trapAlertState, COLID_trapAlertState, state);
}

void write_action_text(const std::string& text) {
    write_trap_text(trapActionText, COLID_trapActionText, text);
}

void note_forced_trap() {
    if (commands_in_hand == 0)
        write_alert_state(kAlertActive);
}

trap_command_in_hand::trap_command_in_hand() {
    ++commands_in_hand;
}

trap_command_in_hand::~trap_command_in_hand() {
    --commands_in_hand;
}

void prepare_trap_variables(TrapToSend& trap) {
    const bool clears = trap.trapArgD == kClearingArgument;
    const std::string alert_text = (clears ? "Alert Cleared - " : "") + take_alert_text(trap.alertString);
    write_trap_text(trapEventId, COLID_trapEventId,
                    FormatString("%d,%d,%d", trap.eventIdA, trap.eventIdB, trap.eventIdC));
    write_alert_state(clears ? kAlertCleared : kAlertActive);
    write_action_text("no action needed");
    write_trap_text(trapAlertText, COLID_trapAlertText, alert_text);
    trapCompStatusText = "empty";
}

std::string with_numbers(std::string_view text, std::initializer_list<int32_t> numbers) {
    std::string filled;
    for (const int32_t number : numbers) {
        const size_t place = text.find("%d");
        if (place == std::string_view::npos)
            break;
        filled.append(text.substr(0, place)).append(std::to_string(number));
        text.remove_prefix(place + 2);
    }
    return filled.append(text);
}

int reject_trap(std::string_view text, std::initializer_list<int32_t> numbers) {
    SUBAGENT_LOG(warning, "%s\n", with_numbers(text, numbers).c_str());
    return 1;
}

void set_trap_row(int col_id, int32_t row) {
    cols[col_id].trapRow = row;
}

void refresh_table_of(int col_id) {
    cols[col_id].get_fn(cols[col_id].head_var, false);
}
