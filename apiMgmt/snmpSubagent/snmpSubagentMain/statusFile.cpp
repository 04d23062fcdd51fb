#include "apiMgmt/snmpSubagent/snmpSubagentMain/statusFile.h"

#include <cerrno>
#include <cstring>
#include <set>
#include <sstream>
#include <string_view>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/threadpool/scopedMutex.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/common/utils/version.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr int64_t kIntervalUs = 10 * kSecondUs;
constexpr const char* kStarts = "snmpsubagent_starts_total ";

// A label value in quotes.
std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char each : text) {
        if (each == '\n')
            result += "\\n";
        else if (each == '"' || each == '\\')
            result.append({'\\', each});
        else
            result += each;
    }
    return result + '"';
}

double seconds(int64_t duration_us) {
    return static_cast<double>(duration_us) / kSecondUs;
}

class metrics {
  public:
    // All samples of a metric follow its first line. The name ends with "_total" if it is a counter.
    void begin(const char* name, const char* help) {
        name_ = std::string("snmpsubagent_") + name;
        const char* type = name_.ends_with("_total") ? "counter" : "gauge";
        text_ += FormatString("# HELP %s %s\n# TYPE %s %s\n", name_.c_str(), help, name_.c_str(), type);
    }
    void add(double value, const std::string& labels = "") {
        text_ += FormatString("%s%s %.15g\n", name_.c_str(), labels.c_str(), value);
    }
    void add_single(const char* name, const char* help, double value) {
        begin(name, help);
        add(value);
    }
    const std::string& text() const { return text_; }

  private:
    std::string name_;
    std::string text_;
};

// The monotonic clock's moment as Unix time, which stays right if the wall clock is set.
double unix_time(int64_t moment_us) {
    const timeval now = ClockNow();
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) / kSecondUs -
           seconds(ClockNowUs() - moment_us);
}

std::string table_label(const refresh_operation& refresh) {
    std::string_view name = column_definitions[refresh.col_id].name;
    if (name.ends_with("Nbr"))
        name.remove_suffix(3);
    return "{table=" + quoted(name) + "}";
}

void add_tables(metrics& to) {
    to.begin("table_refresh_time_seconds", "Unix time of the last successful refresh of a table.");
    for (const refresh_operation& refresh : refresh_operations) {
        if (cols[refresh.col_id].last_good_refresh_us != 0)
            to.add(unix_time(cols[refresh.col_id].last_good_refresh_us), table_label(refresh));
    }
    to.begin("table_refresh_duration_seconds", "Time that the array took for the last successful response.");
    for (const refresh_operation& refresh : refresh_operations)
        to.add(seconds(cols[refresh.col_id].last_fetch_duration_us), table_label(refresh));
    to.begin("table_refresh_failures_total", "Refreshes that failed or were rejected by the array.");
    for (const refresh_operation& refresh : refresh_operations)
        to.add(cols[refresh.col_id].failed_refreshes, table_label(refresh));
}

size_t queued_notifications() {
    scopedMutex lock(trapsToSend_mutex);
    return trapsToSend.size();
}

void add_notifications(metrics& to) {
    to.add_single("notifications_queued", "Events that wait to be notified.",
                  static_cast<double>(queued_notifications()));
    to.add_single("notifications_sent_total", "Notifications that were sent.",
                  static_cast<double>(notification_count.sent));
    to.add_single("notifications_failed_total", "Notifications that could not be sent; the log says why.",
                  static_cast<double>(notification_count.failed));
    to.add_single("notifications_suppressed_total", "Events that repeated a state already notified.",
                  static_cast<double>(suppressed_notifications));
}

// As in the instance part of an OID.
std::string row_text(int32_t var_index) {
    const std::string row = std::to_string(get_row_seq(var_index));
    const int32_t parent = get_parent_seq(var_index);
    return parent < 0 ? row : std::to_string(parent) + "." + row;
}

// Names need not be unique, but readers reject a file in which a sample occurs twice.
void add_unhealthy_objects(metrics& to) {
    std::set<std::string> known;
    to.begin("unhealthy_object_since_seconds", "Unix time since when an object has been known as unhealthy.");
    for (const auto& record : outstandingTraps) {
        const notification_definition* notification = find_notification(record->command.trapNum);
        const std::string labels =
            "{object=" + quoted(outstanding_object_name(*record)) +
            ",row=" + quoted(row_text(record->ownerVar)) + ",status=" + quoted(vars[record->statusVar].str) +
            ",notification=" + quoted(notification == nullptr ? "" : notification->name) + "}";
        if (known.insert(labels).second)
            to.add(unix_time(record->timeAdded_us), labels);
    }
}

struct status_file {
    std::string path; /**< empty: not published */
    int start = 0;
    int64_t begin_us = 0;
    int64_t next_us = 0;
    bool has_failed = false;
};
status_file file;

// The file survives the daemon, but not a boot.
int starts_before(const std::string& path) {
    std::istringstream text(ReadTextFile(path).value_or(""));
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with(kStarts))
            return ParseInt(line.substr(strlen(kStarts)));
    }
    return 0;
}

std::string format_status(bool is_up) {
    metrics to;
    to.add_single("up", "1 while the daemon runs.", is_up ? 1 : 0);
    to.begin("info", "Version of the daemon.");
    to.add(1, "{version=" + quoted(kVersion) + "}");
    to.add_single("status_time_seconds", "Unix time of this file.", unix_time(ClockNowUs()));
    to.add_single("start_time_seconds", "Unix time of the daemon's start.", unix_time(file.begin_us));
    to.add_single("starts_total", "Starts since the machine booted.", file.start);
    to.begin("link_up", "1 while the array's API manager or snmpd responds.");
    to.add(snmpSubagentComm->apimgr_ok() ? 1 : 0, "{link=\"array\"}");
    to.add(snmpSubagentComm->agentx_ok() ? 1 : 0, "{link=\"snmpd\"}");
    add_tables(to);
    add_notifications(to);
    add_unhealthy_objects(to);
    return to.text();
}

void write_status_file(bool is_up) {
    if (file.path.empty() || ReplaceTextFile(file.path, format_status(is_up), false) || file.has_failed)
        return;
    file.has_failed = true;
    SUBAGENT_LOG(warning, "cannot write %s: %s\n", file.path.c_str(), strerror(errno));
}

}  // namespace

void open_status_file(const std::string& path) {
    file = {.path = path, .start = starts_before(path) + 1, .begin_us = ClockNowUs()};
}

void update_status_file() {
    if (ClockNowUs() < file.next_us)
        return;
    file.next_us = ClockNowUs() + kIntervalUs;
    write_status_file(true);
}

void close_status_file() {
    write_status_file(false);
}
