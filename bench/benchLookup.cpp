#include <net-snmp/net-snmp-config.h>
// The header below needs the one above.
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <random>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "bench/ratio.h"

// The cost of finding a variable in the full store, relative to one comparison per column.

namespace {

constexpr int kNames = 10000;
constexpr double kWanted = 0.2;

struct name {
    oid ids[MAX_handled_oidlen];
    size_t length;
};

std::vector<name> names_of_a_full_store() {
    init_all_oids();
    for (int32_t i = 0; i < total_vars; ++i)
        set_cached(i);
    std::mt19937 random(1);
    std::vector<name> names(kNames);
    for (name& each : names) {
        const auto index = static_cast<int32_t>(random() % static_cast<uint32_t>(total_vars));
        const column_record& column = cols[vars[index].col_id];
        std::copy_n(column.oid_ptr, column.oid_len, each.ids);
        each.length = column.oid_len;
        append_seq_nums(each.ids, &each.length, index);
    }
    return names;
}

void sweep_columns(const std::vector<name>& names) {
    for (const name& each : names) {
        int sum = 0;
        for (const column_record& column : cols)
            sum += snmp_oidtree_compare(column.oid_ptr, column.oid_len, each.ids, each.length);
        benchmark::DoNotOptimize(sum);
    }
}

void BM_exact_lookup_against_sweep(benchmark::State& state) {
    const std::vector<name> names = names_of_a_full_store();
    measure_ratio(
        state, kWanted,
        [&] {
            for (const name& each : names)
                benchmark::DoNotOptimize(get_index_of_oid(each.ids, each.length));
        },
        [&] { sweep_columns(names); });
}

void BM_next_lookup_against_sweep(benchmark::State& state) {
    const std::vector<name> names = names_of_a_full_store();
    measure_ratio(
        state, kWanted,
        [&] {
            for (const name& each : names)
                benchmark::DoNotOptimize(find_next_index(each.ids, each.length));
        },
        [&] { sweep_columns(names); });
}

}  // namespace

BENCHMARK(BM_exact_lookup_against_sweep)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_next_lookup_against_sweep)->UseManualTime()->Unit(benchmark::kMillisecond);
