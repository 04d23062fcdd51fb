#include "tools/mgmtSend/statusReport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"

namespace mgmtsend {

namespace {

constexpr std::string_view kPrefix = "snmpsubagent_";
constexpr double kStale_s = 60;  // the daemon writes every 10 seconds, or 15 while the array does not respond

/** Labels in the order of the file. */
struct Sample {
    std::vector<std::pair<std::string, std::string>> labels;
    double value = 0;

    std::string Label(std::string_view name) const {
        for (const auto& [each, found] : labels) {
            if (each == name) {
                return found;
            }
        }
        return "";
    }
};

using Metrics = std::vector<std::pair<std::string, std::vector<Sample>>>;

std::string Unescape(std::string_view escaped) {
    std::string text;
    for (size_t i = 0; i < escaped.size(); ++i) {
        const bool is_escape = escaped[i] == '\\' && i + 1 < escaped.size();
        i += is_escape ? 1 : 0;
        text += is_escape && escaped[i] == 'n' ? '\n' : escaped[i];
    }
    return text;
}

/** Reads the labels up to the closing brace and removes them from `rest`. */
std::vector<std::pair<std::string, std::string>> ReadLabels(std::string_view& rest) {
    std::vector<std::pair<std::string, std::string>> labels;
    while (!rest.empty() && rest.front() != '}') {
        const size_t equals = rest.find("=\"");
        if (equals == rest.npos) {
            break;
        }
        size_t end = equals + 2;
        while (end < rest.size() && rest[end] != '"') {
            end += rest[end] == '\\' ? 2 : 1;
        }
        if (end >= rest.size()) {
            break;
        }
        labels.emplace_back(rest.substr(0, equals), Unescape(rest.substr(equals + 2, end - equals - 2)));
        rest.remove_prefix(end + 1);
        if (rest.starts_with(',')) {
            rest.remove_prefix(1);
        }
    }
    return labels;
}

Metrics ReadMetrics(const std::string& text) {
    Metrics metrics;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(kPrefix)) {
            continue;
        }
        std::string_view rest = std::string_view(line).substr(kPrefix.size());
        const size_t end = rest.find_first_of("{ ");
        if (end == rest.npos) {
            continue;
        }
        const std::string name(rest.substr(0, end));
        rest.remove_prefix(end);
        Sample sample;
        if (rest.front() == '{') {
            rest.remove_prefix(1);
            sample.labels = ReadLabels(rest);
            rest.remove_prefix(std::min(rest.size(), size_t{1}));
        }
        sample.value = strtod(std::string(rest).c_str(), nullptr);
        if (metrics.empty() || metrics.back().first != name) {
            metrics.emplace_back(name, std::vector<Sample>());
        }
        metrics.back().second.push_back(std::move(sample));
    }
    return metrics;
}

const std::vector<Sample>& Find(const Metrics& metrics, std::string_view name) {
    static const std::vector<Sample> none;
    for (const auto& [each, samples] : metrics) {
        if (each == name) {
            return samples;
        }
    }
    return none;
}

double Value(const Metrics& metrics, std::string_view name) {
    const std::vector<Sample>& found = Find(metrics, name);
    return found.empty() ? 0 : found.front().value;
}

std::string FormatTime(double unix_time) {
    const auto seconds = static_cast<time_t>(std::llround(unix_time));
    tm local{};
    char text[32] = "";
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", localtime_r(&seconds, &local));
    return text;
}

/** Names come from the array, and a terminal must not obey them. */
std::string Printable(std::string text) {
    for (char& each : text) {
        const auto code = static_cast<unsigned char>(each);
        each = code < ' ' || code == 0x7f ? '?' : each;
    }
    return text;
}

std::string FormatHead(const Metrics& metrics, double now) {
    const double age = std::max(0.0, now - Value(metrics, "status_time_seconds"));
    const bool is_up = Value(metrics, "up") == 1 && age < kStale_s;
    const std::vector<Sample>& info = Find(metrics, "info");
    std::string head = FormatString(
        "snmpSubagent %s: %s\nstarted %s (start %.0f since boot); as of %.0f s ago\n",
        info.empty() ? "" : info.front().Label("version").c_str(), is_up ? "running" : "not running",
        FormatTime(Value(metrics, "start_time_seconds")).c_str(), Value(metrics, "starts_total"), age);
    for (const Sample& link : Find(metrics, "link_up")) {
        head += FormatString("%-6s %s\n", link.Label("link").c_str(),
                             link.value == 1 ? "responds" : "does not respond");
    }
    return head + FormatString("\nnotifications: %.0f sent, %.0f failed, %.0f suppressed, %.0f queued\n",
                               Value(metrics, "notifications_sent_total"),
                               Value(metrics, "notifications_failed_total"),
                               Value(metrics, "notifications_suppressed_total"),
                               Value(metrics, "notifications_queued"));
}

std::string FormatTables(const Metrics& metrics, double now) {
    std::map<std::string, double> refreshed;
    for (const Sample& each : Find(metrics, "table_refresh_time_seconds")) {
        refreshed[each.Label("table")] = each.value;
    }
    std::map<std::string, double> failures;
    for (const Sample& each : Find(metrics, "table_refresh_failures_total")) {
        failures[each.Label("table")] = each.value;
    }
    std::string table = FormatString("%-24s %8s %10s %9s\n", "table", "age", "response", "failures");
    for (const Sample& each : Find(metrics, "table_refresh_duration_seconds")) {
        const std::string name = each.Label("table");
        const auto found = refreshed.find(name);
        table += found == refreshed.end()
                     ? FormatString("%-24s %8s %10s %9.0f\n", name.c_str(), "never", "-", failures[name])
                     : FormatString("%-24s %6.0f s %8.3f s %9.0f\n", name.c_str(), now - found->second,
                                    each.value, failures[name]);
    }
    return table;
}

std::string FormatObjects(const Metrics& metrics) {
    std::string lines;
    for (const Sample& each : Find(metrics, "unhealthy_object_since_seconds")) {
        lines +=
            FormatString("%s  %-9s %s  (%s)\n", FormatTime(each.value).c_str(), each.Label("status").c_str(),
                         Printable(each.Label("object")).c_str(), each.Label("notification").c_str());
    }
    return lines;
}

nlohmann::ordered_json JsonNumber(double value) {
    const auto whole = static_cast<int64_t>(value);
    return static_cast<double>(whole) == value ? nlohmann::ordered_json(whole)
                                               : nlohmann::ordered_json(value);
}

nlohmann::ordered_json JsonSample(const Sample& sample) {
    nlohmann::ordered_json json;
    for (const auto& [name, value] : sample.labels) {
        json[name] = value;
    }
    json["value"] = JsonNumber(sample.value);
    return json;
}

}  // namespace

std::string FormatStatus(const std::string& text, double now) {
    const Metrics metrics = ReadMetrics(text);
    const std::string objects = FormatObjects(metrics);
    return FormatHead(metrics, now) + '\n' + FormatTables(metrics, now) + '\n' +
           (objects.empty() ? "no unhealthy objects known\n" : "unhealthy since:\n" + objects);
}

std::string FormatUnhealthyObjects(const std::string& text) {
    return FormatObjects(ReadMetrics(text));
}

std::string FormatStatusJson(const std::string& text) {
    nlohmann::ordered_json json;
    for (const auto& [name, samples] : ReadMetrics(text)) {
        if (samples.size() == 1 && samples.front().labels.empty()) {
            json[name] = JsonNumber(samples.front().value);
            continue;
        }
        for (const Sample& sample : samples) {
            json[name].push_back(JsonSample(sample));
        }
    }
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

}  // namespace mgmtsend
