#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

/**
 * The store: a copy of the array's state in the layout of the MIB. `vars` has one entry for each instance
 * that the MIB can ever contain, in OID order; `cols` has one record for each scalar and each table column.
 * Main thread only, apart from the two fetch times of a column.
 */

/**
 * Bits of variable_entry::flags. Whether an entry is cached is stored in a separate bitmap, see is_cached.
 */
enum variable_flag : uint8_t {
    VAR_FLAG_delivered = 2, /**< a GET or GETNEXT has delivered it since this bit was last cleared */
};

struct variable_entry {
    uint8_t col_id;  /**< the entry's column; constant */
    uint8_t flags;   /**< variable_flag */
    uint32_t uint;   /**< number: unsigned for SMI_BASETYPE_UNSIGNED32, else signed */
    std::string str; /**< value of a string column; else the last string received from the API */
};

struct column_record {
    int32_t first_var;  /**< index of the column's first variable */
    int32_t head_var;   /**< index of the first variable of its table; first_var for a scalar */
    const oid* oid_ptr; /**< OID without instance */
    uint8_t oid_len;
    int32_t trapRow;          /**< row that a notification shows */
    int32_t trapOuterRow;     /**< parent row that a notification shows */
    uint32_t data_type;       /**< smi_basetype */
    uint32_t maxNumOfParents; /**< 0 without a parent */
    uint32_t maxNumOfRows;    /**< rows per parent; 0 for a scalar */
    uint32_t minNumOfRows;    /**< minimum number of objects in a response; used for a table's first column */
    uint32_t col_flags;       /**< column_flag */
    std::atomic<int64_t> last_fetch_time_us; /**< start of the latest refresh; main thread, GetList task */
    std::atomic<int64_t> last_fetch_duration_us; /**< of the latest successful refresh; likewise */
    int64_t last_good_refresh_us; /**< when the store was last updated; 0: never; main thread */
    uint32_t failed_refreshes;    /**< main thread */
    get_fn_type get_fn;           /**< null: not refreshed separately */
    set_fn_type set_fn;           /**< null: read-only */

    bool is_table() const { return (col_flags & COL_FLAG_is_table) != 0; }
    bool has_parent() const {
        return (col_flags & (COL_FLAG_controller_parent | COL_FLAG_enclosure_parent)) != 0;
    }

    /**
     * Returns the number of rows of all parents: the number of a table column's variables, and the maximum
     * number of objects.
     */
    int64_t capacity() const {
        return int64_t{maxNumOfParents == 0 ? 1 : maxNumOfParents} * int64_t{maxNumOfRows};
    }

    /** Returns true for a scalar and for the first column of a table. */
    bool is_head() const { return first_var == head_var; }
};

/** Maximum length of a column's OID. */
inline constexpr int MAX_LUMIVANT_OIDLEN = 17;

/** Maximum length of an OID, including the instance. */
inline constexpr size_t MAX_handled_oidlen = 19;

extern variable_entry* vars;
extern column_record cols[NUMBER_OF_COLUMNS];

/** Number of entries of `vars` in use; 0 before init_all_oids has finished. */
extern int32_t total_vars;

extern int32_t current_oid_for_init;
extern int32_t current_head_var;

/** Builds or rebuilds the store. No entry is cached then. Returns 0 on success, 1 on failure. */
int init_all_oids();

/** Appends a table column and its variables. Returns 0 on success. */
int init_tbl_col(uint32_t maxNumOfParents, uint32_t maxNumOfRows, uint32_t minNumOfRows, int col_id,
                 int oid_len, uint32_t data_type, const oid* oid_ptr, get_fn_type get_fn, set_fn_type set_fn,
                 uint32_t col_flags);

/** Appends a scalar and its variable. Returns 0 on success. */
int init_a_single_oid(int col_id, int oid_len, uint32_t data_type, const oid* oid_ptr, get_fn_type get_fn,
                      set_fn_type set_fn);

/** Appends a variable. Returns 0, or 1 if all entries are in use. */
int init_a_var(int col_id);

/** Returns the row (from 1) of a variable; -1 for a scalar. */
int32_t get_row_seq(int32_t var_index);

/** Returns the parent (from 1) of a variable; -1 for a scalar and in a table without parents. */
int32_t get_parent_seq(int32_t var_index);

/** Appends the instance of a variable's OID: parent and row, the row, or 0. The buffer must have room. */
void append_seq_nums(oid* name, size_t* name_length, int32_t var_index);

/**
 * Returns the offset from `first` of the first of `count` entries with that number; -1 if there is none
 * before an entry that is not cached.
 */
int32_t find_row_by_value(int32_t first, int32_t count, uint32_t value);

/** Runs the column's get_fn and records its times. Returns 0 on success or without a get_fn, else 1. */
int force_get_table_info(int col_id, bool background);

/**
 * Refreshes all scalars and tables in the foreground. Returns 0, or the result of the refresh that failed.
 */
int force_get_table_info_all();

/** Whether the entry's value is valid and may be served. */
bool is_cached(int32_t var_index);
void set_cached(int32_t var_index);
void clear_cached(int32_t var_index);

/** Clears the bits of the entries from `first` up to, but not including, `last`. */
void clear_cached_range(int32_t first, int32_t last);

/** Returns the first cached entry at or after an index; -1 if there is none. */
int32_t first_cached_from(int64_t var_index);

/** Returns the number, capped at the maximum of an Unsigned32 column. */
uint32_t as_number_column(uint64_t number);

/**
 * Converts a string of the API to the 32-bit value of a column with this smi_basetype: unsigned for
 * SMI_BASETYPE_UNSIGNED32, else signed. Accepts leading whitespace, a sign and digits. Returns 0 without
 * digits and the nearest value for a number out of range.
 */
uint32_t number_from_text(std::string_view text, uint32_t data_type);

/** Bodies of the get_fn of scalars: store the value and mark it as cached. Return 0. */
int store_text(int32_t var_index, const std::string& text);
int store_number(int32_t var_index, int64_t number);

/**
 * Maximum length, in octets, of a string in a response or notification. snmpd sends nothing if a response is
 * longer than a datagram. The shipped snmpd.conf allows 20 values per GETBULK, and 20 strings of this length
 * fit in a datagram.
 */
inline constexpr size_t kLongestServedText = 3072;

/**
 * Returns the string of a variable, truncated at a character boundary to the maximum length. Logs a line once
 * for each truncated value. Main thread only.
 */
std::string_view served_text(int32_t var_index);
