// Looks up names and their successors in a store in which some instances are cached. Every result is checked
// against a linear scan over all columns and, for names that a manager derives from the MIB, against an
// ordered map of the cached instances.

#include <map>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "fuzz/lib/literalLookup.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

using literal_lookup::name_type;

name_type name_of_variable(int32_t index) {
    const column_record& column = cols[vars[index].col_id];
    name_type name(column.oid_ptr, column.oid_ptr + column.oid_len);
    size_t length = name.size();
    name.resize(length + 2);
    append_seq_nums(name.data(), &length, index);
    name.resize(length);
    return name;
}

// A variable of any column, often the first or last of a parent, which in a large table nobody meets by
// chance.
int32_t any_variable(FuzzInput& input) {
    const column_record& column = cols[input.Below(NUMBER_OF_COLUMNS)];
    if (!column.is_table())
        return column.first_var;
    const size_t rows = column.maxNumOfRows;
    const size_t places[] = {0, rows - 1, input.Below(rows), input.Below(rows)};
    const size_t parent = input.Below(std::max(column.maxNumOfParents, 1U));
    return column.first_var + static_cast<int32_t>(parent * rows + places[input.Below(4)]);
}

// Caches up to 15 instances; which ones decides the input.
std::map<name_type, int32_t> fill_store(FuzzInput& input) {
    std::map<name_type, int32_t> cached;
    clear_cached_range(0, total_vars);
    for (size_t count = input.Below(16); count > 0; --count) {
        const int32_t index = any_variable(input);
        set_cached(index);
        cached.emplace(name_of_variable(index), index);
    }
    return cached;
}

oid any_arc(FuzzInput& input) {
    static const oid kEdges[] = {0,          2147483647,         2147483648,
                                 4294967295, 0xFFFFFFFF80000000, 0xFFFFFFFFFFFFFFFF};
    const size_t kind = input.Below(4);
    return kind == 0 ? kEdges[input.Below(std::size(kEdges))] : input.Below(kind == 1 ? 65536 : 256);
}

name_type any_arcs(FuzzInput& input) {
    name_type name;
    if (input.OnceIn(2)) {
        const column_record& column = cols[input.Below(NUMBER_OF_COLUMNS)];
        name.assign(column.oid_ptr, column.oid_ptr + column.oid_len);
    } else {
        name = name_of_variable(any_variable(input));
    }
    if (input.OnceIn(2))
        return name;
    name.resize(name.size() - std::min(name.size(), input.Below(4)));
    for (size_t more = input.Below(6); more > 0; --more)
        name.push_back(any_arc(input));
    return name;
}

// An exact block, for the sanitizer.
name_type any_name(FuzzInput& input) {
    name_type name = any_arcs(input);
    name.shrink_to_fit();
    return name;
}

// Whether the name stands for a place in the MIB: part of the way to a column, a column, or an instance of
// one with numbers within its capacity. Elsewhere the next instance is not that of a dictionary.
bool is_well_formed(const name_type& name) {
    for (const column_record& column : cols) {
        const int order = snmp_oidtree_compare(column.oid_ptr, column.oid_len, name.data(), name.size());
        if (order != 0 || name.size() <= column.oid_len)
            continue;
        const name_type rest(name.begin() + column.oid_len, name.end());
        if (!column.is_table())
            return rest == name_type{0};
        if (!column.has_parent())
            return rest.size() == 1 && rest[0] <= column.maxNumOfRows;
        return rest.size() == 2 && rest[0] >= 1 && rest[0] <= column.maxNumOfParents &&
               rest[1] <= column.maxNumOfRows;
    }
    return true;
}

void check_against_map(const name_type& name, const std::map<name_type, int32_t>& cached) {
    const auto exact = cached.find(name);
    FuzzCheck(get_index_of_oid(name.data(), name.size()) == (exact == cached.end() ? -1 : exact->second),
              "exact lookup differs from the map");
    const auto next = cached.upper_bound(name);
    FuzzCheck(find_next_index(name.data(), name.size()) == (next == cached.end() ? -1 : next->second),
              "next lookup differs from the map");
}

void check_against_walk(const name_type& name) {
    FuzzCheck(get_index_of_oid(name.data(), name.size()) == literal_lookup::exact(name),
              "exact lookup differs from the walk");
    const int64_t candidate = literal_lookup::next_candidate(name);
    FuzzCheck(
        find_next_index(name.data(), name.size()) == (candidate < 0 ? -1 : first_cached_from(candidate)),
        "next lookup differs from the walk");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    verbose = false;
    FuzzInput input(data, size);
    const std::map<name_type, int32_t> cached = fill_store(input);
    do {
        const name_type name = any_name(input);
        check_against_walk(name);
        if (is_well_formed(name))
            check_against_map(name, cached);
    } while (!input.IsEmpty());
    transcript::take();
    return 0;
}
