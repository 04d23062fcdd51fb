#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <limits>
#include <unordered_map>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

variable_entry* vars = nullptr;
column_record cols[NUMBER_OF_COLUMNS];
int32_t total_vars = 0;
int32_t current_oid_for_init = 0;
int32_t current_head_var = 0;

static_assert(NUMBER_OF_COLUMNS <= 256, "a column number fits the byte of variable_entry::col_id");

namespace {

constexpr uint32_t kUnsetNumber = 0xFFFFFFFF;
constexpr int32_t kBitsPerWord = 64;

// One bit per entry: whether it is cached. Separate from `vars`, so that GETNEXT can skip the empty rows of
// mostly empty tables 64 entries at a time; the whole store needs only 32 KiB.
std::array<uint64_t, (MAX_total_vars + kBitsPerWord - 1) / kBitsPerWord> cached_bits;

uint64_t bit_of(int32_t var_index) {
    return uint64_t{1} << (var_index % kBitsPerWord);
}

void free_vars() {
    SUBAGENT_LOG(debug, "freeing vars array\n");
    delete[] vars;
    vars = nullptr;
    total_vars = 0;
}

int init_a_column(int col_id) {
    const column_definition& definition = column_definitions[col_id];
    if (!definition.is_table)
        return init_a_single_oid(col_id, definition.oid_len, definition.data_type, definition.oid_ptr,
                                 definition.get_fn, definition.set_fn);
    if (definition.is_first_of_table)
        current_head_var = current_oid_for_init;
    return init_tbl_col(definition.maxNumOfParents, definition.maxNumOfRows, definition.minNumOfRows, col_id,
                        definition.oid_len, definition.data_type, definition.oid_ptr, definition.get_fn,
                        definition.set_fn, definition.col_flags);
}

}  // namespace

int init_a_var(int col_id) {
    if (current_oid_for_init >= MAX_total_vars) {
        SUBAGENT_LOG(warning, "exceded MAX_total_vars: current_oid_for_init: %d, MAX_total_vars: %d\n",
                     current_oid_for_init + 1, MAX_total_vars);
        return 1;
    }
    variable_entry& entry = vars[current_oid_for_init];
    entry.col_id = static_cast<uint8_t>(col_id);
    entry.flags = 0;
    entry.uint = kUnsetNumber;
    entry.str.clear();
    clear_cached(current_oid_for_init);
    ++current_oid_for_init;
    return 0;
}

int init_tbl_col(uint32_t maxNumOfParents, uint32_t maxNumOfRows, uint32_t minNumOfRows, int col_id,
                 int oid_len, uint32_t data_type, const oid* oid_ptr, get_fn_type get_fn, set_fn_type set_fn,
                 uint32_t col_flags) {
    column_record& column = cols[col_id];
    column.first_var = current_oid_for_init;
    column.head_var = current_head_var;
    column.oid_ptr = oid_ptr;
    column.oid_len = static_cast<uint8_t>(oid_len);
    column.trapRow = 1;
    column.trapOuterRow = 0;
    column.data_type = data_type;
    column.maxNumOfParents = maxNumOfParents;
    column.maxNumOfRows = maxNumOfRows;
    column.minNumOfRows = minNumOfRows;
    column.col_flags = col_flags | COL_FLAG_is_table;
    column.last_fetch_time_us = 0;
    column.last_fetch_duration_us = 0;
    column.last_good_refresh_us = 0;
    column.failed_refreshes = 0;
    column.get_fn = get_fn;
    column.set_fn = set_fn;

    for (int64_t i = 0; i < column.capacity(); ++i) {
        const int result = init_a_var(col_id);
        if (result != 0) {
            SUBAGENT_LOG(warning, "error while initializing oid: col_id: %d\n", col_id);
            return result;
        }
    }
    return 0;
}

int init_a_single_oid(int col_id, int oid_len, uint32_t data_type, const oid* oid_ptr, get_fn_type get_fn,
                      set_fn_type set_fn) {
    if (oid_len > MAX_LUMIVANT_OIDLEN) {
        SUBAGENT_LOG(warning, "exceded MAX_LUMIVANT_OIDLEN\n");
        return 1;
    }
    column_record& column = cols[col_id];
    column.first_var = current_oid_for_init;
    column.head_var = current_oid_for_init;
    column.oid_ptr = oid_ptr;
    column.oid_len = static_cast<uint8_t>(oid_len);
    column.data_type = data_type;
    column.maxNumOfParents = 0;
    column.maxNumOfRows = 0;
    column.minNumOfRows = 1;
    column.col_flags = 0;
    column.last_fetch_time_us = 0;
    column.last_fetch_duration_us = 0;
    column.last_good_refresh_us = 0;
    column.failed_refreshes = 0;
    column.get_fn = get_fn;
    column.set_fn = set_fn;
    return init_a_var(col_id);
}

int init_all_oids() {
    current_oid_for_init = 0;
    current_head_var = 0;
    if (vars != nullptr)
        free_vars();
    vars = new variable_entry[MAX_total_vars]();
    cached_bits.fill(0);
    for (int col_id = 0; col_id < NUMBER_OF_COLUMNS; ++col_id) {
        if (init_a_column(col_id) != 0)
            return 1;
    }
    total_vars = current_oid_for_init;
    return 0;
}

int32_t get_row_seq(int32_t var_index) {
    const column_record& column = cols[vars[var_index].col_id];
    if (!column.is_table())
        return -1;
    const int32_t offset = var_index - column.first_var;
    return (column.has_parent() ? offset % static_cast<int32_t>(column.maxNumOfRows) : offset) + 1;
}

int32_t get_parent_seq(int32_t var_index) {
    const column_record& column = cols[vars[var_index].col_id];
    if (!column.is_table() || !column.has_parent())
        return -1;
    return (var_index - column.first_var) / static_cast<int32_t>(column.maxNumOfRows) + 1;
}

void append_seq_nums(oid* name, size_t* name_length, int32_t var_index) {
    const int32_t parent = get_parent_seq(var_index);
    if (parent >= 0)
        name[(*name_length)++] = static_cast<oid>(parent);
    const int32_t row = get_row_seq(var_index);
    name[(*name_length)++] = row >= 0 ? static_cast<oid>(row) : 0;
}

int32_t find_row_by_value(int32_t first, int32_t count, uint32_t value) {
    for (int32_t offset = 0; offset < count; ++offset) {
        if (!is_cached(first + offset))
            return -1;
        if (vars[first + offset].uint == value)
            return offset;
    }
    return -1;
}

int force_get_table_info(int col_id, bool background) {
    column_record& column = cols[col_id];
    if (column.get_fn == nullptr)
        return 0;
    const int64_t start_us = ClockNowUs();
    column.last_fetch_time_us = start_us;
    const int result = column.get_fn(column.head_var, background);
    if (result != 0) {
        SUBAGENT_LOG(debug, "UNsuccessful in get-handler for col-id: %d, retVal: %d\n", col_id, result);
        return 1;
    }
    column.last_fetch_duration_us = ClockNowUs() - start_us;
    return 0;
}

int force_get_table_info_all() {
    for (int col_id = 0; col_id < NUMBER_OF_COLUMNS; ++col_id) {
        if (!cols[col_id].is_head())
            continue;
        const int result = force_get_table_info(col_id, false);
        if (result == 0)
            continue;
        if (col_id != COLID_tsDiskConfigNbr) {
            SUBAGENT_LOG(warning, "could not get table info for col_id: %d\n", col_id);
            return result;
        }
        SUBAGENT_LOG(warning, "could not get table info for tsDiskConfig: perhaps there are no pagepools\n");
    }
    return 0;
}

bool is_cached(int32_t var_index) {
    return (cached_bits[var_index / kBitsPerWord] & bit_of(var_index)) != 0;
}

void set_cached(int32_t var_index) {
    cached_bits[var_index / kBitsPerWord] |= bit_of(var_index);
}

void clear_cached(int32_t var_index) {
    cached_bits[var_index / kBitsPerWord] &= ~bit_of(var_index);
}

void clear_cached_range(int32_t first, int32_t last) {
    while (first < last && first % kBitsPerWord != 0)
        clear_cached(first++);
    for (; last - first >= kBitsPerWord; first += kBitsPerWord)
        cached_bits[first / kBitsPerWord] = 0;
    while (first < last)
        clear_cached(first++);
}

int32_t first_cached_from(int64_t var_index) {
    if (var_index < 0 || var_index >= total_vars)
        return -1;
    size_t word = static_cast<size_t>(var_index) / kBitsPerWord;
    uint64_t bits = cached_bits[word] & ~(bit_of(static_cast<int32_t>(var_index)) - 1);
    while (bits == 0) {
        if (++word == cached_bits.size())
            return -1;
        bits = cached_bits[word];
    }
    return static_cast<int32_t>(word * kBitsPerWord) + std::countr_zero(bits);
}

uint32_t as_number_column(uint64_t number) {
    return static_cast<uint32_t>(std::min<uint64_t>(number, std::numeric_limits<uint32_t>::max()));
}

uint32_t number_from_text(std::string_view text, uint32_t data_type) {
    if (data_type == SMI_BASETYPE_UNSIGNED32)
        return as_number_column(ParseUnsigned(text));
    return static_cast<uint32_t>(ParseInt(text));
}

int store_text(int32_t var_index, const std::string& text) {
    if (vars[var_index].str != text)
        vars[var_index].str = text;
    set_cached(var_index);
    return 0;
}

int store_number(int32_t var_index, int64_t number) {
    vars[var_index].uint = static_cast<uint32_t>(number);
    set_cached(var_index);
    return 0;
}

namespace {

// Prevents repeated reads of a long string from filling the log. Main thread only.
std::unordered_map<int32_t, size_t> reported_truncations;  // by variable: identity of its string

void report_truncation(int32_t var_index, const std::string& text, std::string_view served) {
    const size_t identity = std::hash<std::string_view>()(served) ^ text.size();
    const auto [entry, is_new] = reported_truncations.try_emplace(var_index, identity);
    if (!is_new && entry->second == identity)
        return;
    entry->second = identity;
    SUBAGENT_LOG(warning, "col-id:%d, a string of %zu octets is truncated to %zu\n", vars[var_index].col_id,
                 text.size(), served.size());
}

}  // namespace

std::string_view served_text(int32_t var_index) {
    const std::string& text = vars[var_index].str;
    if (text.size() <= kLongestServedText) {
        reported_truncations.erase(var_index);
        return text;
    }
    size_t length = kLongestServedText;
    while (length > 0 &&
           (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)  // within a UTF-8 character
        --length;
    const std::string_view served = std::string_view(text).substr(0, length);
    report_truncation(var_index, text, served);
    return served;
}
