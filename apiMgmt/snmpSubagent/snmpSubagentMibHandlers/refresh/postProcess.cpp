#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/postProcess.h"

#include <algorithm>
#include <span>
#include <string>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/agentAddress.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr const char* kVendorPages = "https://www.vorn-lumivant.example/tessera";

struct text_number {
    const char* text;
    int32_t number;
};

constexpr text_number kStatus[] = {{"Up", 1}, {"Down", 2}, {"Degraded", 3}};
constexpr text_number kConnectivity[] = {{"Up", 1}, {"Down", 2}, {"Partial", 3}};
constexpr text_number kAlertCategory[] = {
    {"Connectivity", 0}, {"Disk", 1}, {"Hardware", 2}, {"Storage", 3}, {"System", 4}};
constexpr text_number kAlertStatus[] = {{"Complete", 0}, {"Critical", 1}, {"Degraded", 2},
                                        {"Deleting", 3}, {"Down", 4},     {"Emergency", 5},
                                        {"Inform", 6},   {"Okay", 7},     {"Unavailable", 8}};
constexpr text_number kBatteryStatus[] = {
    {"NoBattery", 0}, {"Normal", 1}, {"ExpirationPending", 2}, {"Expired", 3}};
constexpr text_number kTruth[] = {{"1", 1}, {"true", 1}, {"0", 2}, {"false", 2}};
constexpr text_number kIoPortType[] = {
    {"FibreChannel", 1}, {"Iscsi", 2}, {"FibreChannelOverEthernet", 3}, {"Sas", 4}};

const text_number* find_exact(std::span<const text_number> table, const std::string& text) {
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const text_number& row) { return text == row.text; });
    return found == table.end() ? nullptr : &*found;
}

const text_number* find_any_case(std::span<const text_number> table, const std::string& text) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const text_number& row) {
        return CompareNoCase(text, row.text) == 0;
    });
    return found == table.end() ? nullptr : &*found;
}

void set_number(int32_t var_index, const text_number* row, int32_t other) {
    vars[var_index].uint = static_cast<uint32_t>(row != nullptr ? row->number : other);
}

// Returns the variable of another column in the same row.
variable_entry& same_row(int32_t var_index, int col_id) {
    const column_record& own = cols[vars[var_index].col_id];
    return vars[cols[col_id].first_var + (var_index - own.first_var)];
}

}  // namespace

void tsstatus_enum_post_process(int32_t var_index) {
    const text_number* row = find_exact(kStatus, vars[var_index].str);
    set_number(var_index, row, -1);
    if (row == nullptr)
        SUBAGENT_LOG(warning, "unknown status string: '%s' for col_id: %d, index_of_var: %d\n",
                     vars[var_index].str.c_str(), vars[var_index].col_id, var_index);
}

void connectivity_enum_post_process(int32_t var_index) {
    set_number(var_index, find_exact(kConnectivity, vars[var_index].str), -1);
}

void alert_category_post_process(int32_t var_index) {
    set_number(var_index, find_exact(kAlertCategory, vars[var_index].str), 5);
}

void alert_status_post_process(int32_t var_index) {
    set_number(var_index, find_exact(kAlertStatus, vars[var_index].str), 9);
}

void battery_status_post_process(int32_t var_index) {
    set_number(var_index, find_exact(kBatteryStatus, vars[var_index].str), -1);
}

void truth_value_post_process(int32_t var_index) {
    set_number(var_index, find_any_case(kTruth, vars[var_index].str), 0);
}

void io_port_type_post_process(int32_t var_index) {
    set_number(var_index, find_any_case(kIoPortType, vars[var_index].str), 5);
}

void no_api_object_post_process(int32_t var_index) {
    if (vars[var_index].str == "no api object")
        vars[var_index].uint = 0;
}

void version_post_process(int32_t var_index) {
    std::string& version = vars[var_index].str;
    const size_t last_dot = version.rfind('.');
    if (last_dot != std::string::npos)
        version.resize(last_dot);
}

void size_post_process(int32_t var_index) {
    variable_entry& entry = vars[var_index];
    entry.uint = as_number_column(ParseUnsigned(entry.str) / kBlocksPerGb);
}

void force_trap_post_process(int32_t var_index) {
    vars[var_index].str = "Empty";
}

void vendor_product_post_process(int32_t var_index) {
    std::string& joined = vars[var_index].str;
    joined = same_row(var_index, COLID_tsDiskConfigVendor).str;
    joined += ' ';
    joined += same_row(var_index, COLID_tsDiskConfigProduct).str;
}

void management_url_post_process(int32_t var_index) {
    std::string address;
    bool is_leader = false;
    bool is_ipv4 = false;
    vars[var_index].str =
        get_array_ip_addr(&address, &is_leader, &is_ipv4) == 0 ? "https://" + address : kVendorPages;
}

// ---- the status of the whole array ----

namespace {

enum global_status : uint32_t { unknown_alert = 2, no_alert = 3, minor_alert = 4, major_alert = 5 };

constexpr uint32_t kTrue = 1;
constexpr uint32_t kMaximumAlertStatus = 9;
constexpr int kMaximumSeverity = 2;

// Severity of each alert status in the numbering of alert_status_post_process: Complete, Critical, Degraded,
// Deleting, Down, Emergency, Inform, Okay, Unavailable, others.
constexpr int kSeverity[kMaximumAlertStatus + 1] = {0, 2, 1, 0, 2, 2, 0, 0, 1, 1};

uint32_t number_in_row(int col_id, int32_t row) {
    return vars[cols[col_id].first_var + row].uint;
}

bool counts(int32_t row) {
    return number_in_row(COLID_tsAlertActive, row) == kTrue &&
           number_in_row(COLID_tsAlertAcknowledged, row) != kTrue;
}

void note_worst_alert(int32_t row) {
    worstAlertNbr = number_in_row(COLID_tsAlertNbr, row);
    store_number(cols[COLID_worstAlertNbr].first_var, worstAlertNbr);
}

// Examines the alerts of both controllers, up to the first row that is not cached.
global_status status_of_alerts() {
    const column_record& status = cols[COLID_tsAlertStatus];
    const auto size = static_cast<int32_t>(status.maxNumOfParents * status.maxNumOfRows);
    int severity = 0;
    for (int32_t row = 0; row < size && is_cached(status.first_var + row) && severity < kMaximumSeverity;
         ++row) {
        if (!counts(row))
            continue;
        const uint32_t alert_status = number_in_row(COLID_tsAlertStatus, row);
        if (alert_status > kMaximumAlertStatus)
            return unknown_alert;
        if (kSeverity[alert_status] > severity) {
            severity = kSeverity[alert_status];
            note_worst_alert(row);
        }
    }
    return static_cast<global_status>(no_alert + severity);
}

}  // namespace

int compute_global_status(int32_t var_index, bool /*background*/) {
    return store_number(var_index, status_of_alerts());
}
