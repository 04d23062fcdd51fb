#include <expat.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "bench/ratio.h"

// The cost of merging a table, including parsing, relative to expat tokenising the same document.

namespace {

constexpr double kWanted = 2.0;

std::string tag(const char* name, const std::string& text) {
    return std::string("<") + name + ">" + text + "</" + name + ">";
}

std::string response_of(const std::string& objects) {
    return "<?xml version=\"1.0\" "
           "encoding=\"UTF-8\"?>\n<lumapi><ApiMethodReturn><Successful>True</Successful>"
           "</ApiMethodReturn><ReturnObjectArray>" +
           objects + "</ReturnObjectArray></lumapi>";
}

// variant: part of the strings, so that those of two responses differ.
std::string alerts(int count, const std::string& variant) {
    std::string objects;
    for (int i = 0; i < count; ++i) {
        objects +=
            "<tsAlert>" + tag("Acknowledged", i % 7 == 0 ? "true" : "false") + tag("Active", "true") +
            tag("AlertDefinition", "DiskFolderThreshold" + variant) +
            tag("AlertStatus", i % 3 == 0 ? "Degraded" : "Inform") + tag("Category", "Storage") +
            tag("ControllerIndex", i < count / 2 ? "64702" : "64703") +
            tag("CreateTime", "11/24/2026 12:00:" + variant) + tag("Index", std::to_string(i + 1) + variant) +
            tag("Message",
                "Disk folder " + std::to_string(i) + " has passed its storage alert threshold " + variant) +
            tag("Type", "Alert") + "</tsAlert>";
    }
    return response_of(objects);
}

std::string disks(int count, const std::string& variant) {
    std::string objects;
    for (int i = 0; i < count; ++i) {
        objects += "<tsDisk>" + tag("EnclosureIndex", std::to_string(i / 24 + 1)) + tag("Healthy", "true") +
                   tag("Index", std::to_string(i + 1) + variant) + tag("IoPortType", "Sas") +
                   tag("Name", "01-" + std::to_string(i) + variant) + tag("Size", "781422768" + variant) +
                   tag("Status", "Up") + tag("StatusMessage", "") + "</tsDisk>";
    }
    return response_of(objects);
}

void tokenise(const std::string& text) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    if (XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK)
        abort();
    XML_ParserFree(parser);
}

const refresh_operation& refresh_of(int col_id) {
    return *std::find_if(std::begin(refresh_operations), std::end(refresh_operations),
                         [=](const refresh_operation& each) { return each.col_id == col_id; });
}

void merge(const refresh_operation& table, const std::string& text) {
    if (process_table_info(table.col_id, table.apiName, table.map_size, table.map, text) != 0)
        abort();
}

void measure_merge(benchmark::State& state, int col_id, const std::string& first, const std::string& second) {
    init_all_oids();
    ctlrIndexFirst = 64702;
    ctlrIndexSecond = 64703;
    const refresh_operation& table = refresh_of(col_id);
    merge(table, first);
    bool is_changed = false;
    measure_ratio(
        state, kWanted,
        [&] {
            is_changed = !is_changed;
            merge(table, is_changed ? second : first);
        },
        [&] { tokenise(first); });
    state.counters["bytes"] = static_cast<double>(first.size());
}

void BM_merge_18000_unchanged_alerts(benchmark::State& state) {
    const std::string text = alerts(18000, "0");
    measure_merge(state, COLID_tsAlertNbr, text, text);
}

void BM_merge_18000_changed_alerts(benchmark::State& state) {
    measure_merge(state, COLID_tsAlertNbr, alerts(18000, "0"), alerts(18000, "1"));
}

void BM_merge_2000_unchanged_disks(benchmark::State& state) {
    const std::string text = disks(2000, "0");
    measure_merge(state, COLID_tsDiskNbr, text, text);
}

void BM_merge_2000_changed_disks(benchmark::State& state) {
    measure_merge(state, COLID_tsDiskNbr, disks(2000, "0"), disks(2000, "1"));
}

}  // namespace

BENCHMARK(BM_merge_18000_unchanged_alerts)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_merge_18000_changed_alerts)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_merge_2000_unchanged_disks)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_merge_2000_changed_disks)->UseManualTime()->Unit(benchmark::kMillisecond);
