#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

/**
 * The MIB store: the cache of the array's state and the layout of the MIB. `vars` has one entry for each
 * instance that the MIB can ever hold, in the order of their OIDs; `cols` has one record for each scalar
 * and each table column. Main thread only, apart from the two fetch times of a column.
 */

/** Bits of variable_entry::flags. Whether an entry is cached stands in a bitmap beside `vars`, see is_cached.
 */
enum variable_flag : uint8_t {
    VAR_FLAG_delivered = 2, /**< a GET or GETNEXT has delivered it since the bit was last cleared */
};

struct variable_entry {
    uint8_t col_id;  /**< the column that owns this entry; written once at build time */
    uint8_t flags;   /**< variable_flag */
    uint32_t uint;   /**< number: unsigned for SMI_BASETYPE_UNSIGNED32, else signed */
    std::string str; /**< a string column's value; for others the last text received from the API */
};

struct column_record {
    int32_t first_var;  /**< index of the column's first variable */
    int32_t head_var;   /**< index of the first variable of its table; first_var for a scalar */
    const oid* oid_ptr; /**< OID without instance part */
    uint8_t oid_len;
    int32_t trapRow;          /**< row that a notification shows of this column */
    int32_t trapOuterRow;     /**< parent row that a notification shows */
    uint32_t data_type;       /**< smi_basetype */
    uint32_t maxNumOfParents; /**< 0 without a parent */
    uint32_t maxNumOfRows;    /**< rows per parent; 0 for a scalar */
    uint32_t minNumOfRows;    /**< fewest objects that a refresh may return; read of a table's first column */
    uint32_t col_flags;       /**< column_flag */
    std::atomic<int64_t> last_fetch_time_us; /**< start of the latest refresh; main thread, GetList task */
    std::atomic<int64_t> last_fetch_duration_us; /**< of the latest good refresh; likewise */
    int64_t last_good_refresh_us; /**< when the store was last updated; 0: never; main thread */
    uint32_t failed_refreshes;    /**< main thread */
    get_fn_type get_fn;           /**< null: nothing refreshes the column by itself */
    set_fn_type set_fn;           /**< null: read-only */

    bool is_table() const { return (col_flags & COL_FLAG_is_table) != 0; }
    bool has_parent() const {
        return (col_flags & (COL_FLAG_controller_parent | COL_FLAG_enclosure_parent)) != 0;
    }

    /** Rows below all parents: the variables of a table's column, and the most objects it can show. */
    int64_t capacity() const {
        return int64_t{maxNumOfParents == 0 ? 1 : maxNumOfParents} * int64_t{maxNumOfRows};
    }

    /** True for a scalar and for the first column of a table. */
    bool stands_for_itself() const { return first_var == head_var; }
};

/** Greatest length of a column's OID. */
inline constexpr int MAX_LUMIVANT_OIDLEN = 17;

/** Longest OID handled, instance part included. */
inline constexpr size_t MAX_handled_oidlen = 19;

extern variable_entry* vars;
extern column_record cols[NUMBER_OF_COLUMNS];

/** Entries of `vars` in use once init_all_oids has finished; 0 before. */
extern int32_t total_vars;

extern int32_t current_oid_for_init;
extern int32_t current_head_var;

/** Builds or rebuilds the store: every entry exists and none is cached. 0 on success, 1 on failure. */
int init_all_oids();

/** Adds a table column and its variables behind those that exist. 0 on success. */
int init_tbl_col(uint32_t maxNumOfParents, uint32_t maxNumOfRows, uint32_t minNumOfRows, int col_id,
                 int oid_len, uint32_t data_type, const oid* oid_ptr, get_fn_type get_fn, set_fn_type set_fn,
                 uint32_t col_flags);

/** Adds a scalar and its one variable. 0 on success. */
int init_a_single_oid(int col_id, int oid_len, uint32_t data_type, const oid* oid_ptr, get_fn_type get_fn,
                      set_fn_type set_fn);

/** Appends one variable entry. 0 on success, 1 when all are in use. */
int init_a_var(int col_id);

/** 1-based row of a variable; -1 for a scalar. */
int32_t get_row_seq(int32_t var_index);

/** 1-based parent of a variable; -1 for a scalar and in a table without parent. */
int32_t get_parent_seq(int32_t var_index);

/** Appends the instance part of a variable's OID: parent and row, the row, or 0. The buffer has room. */
void append_seq_nums(oid* name, size_t* name_length, int32_t var_index);

/** Offset from `first` of the first of `count` entries with that number. -1 when there is none before an
    entry that is not cached. */
int32_t find_row_by_value(int32_t first, int32_t count, uint32_t value);

/** Runs the column's get_fn and takes its times. 0 on success or without a get_fn, otherwise 1. */
int force_get_table_info(int col_id, bool background);

/** Refreshes every scalar and every table in the foreground. 0, or the failing refresh's result. */
int force_get_table_info_all();

/** Whether the entry's value is valid and may be served. */
bool is_cached(int32_t var_index);
void set_cached(int32_t var_index);
void clear_cached(int32_t var_index);

/** Clears the bit of the entries from `first` up to, and without, `last`. */
void clear_cached_range(int32_t first, int32_t last);

/** The first cached entry at or above an index; -1 when there is none. */
int32_t first_cached_from(int64_t var_index);

/** What an Unsigned32 column can hold of a number: the greatest value stands for all beyond it. */
uint32_t as_number_column(uint64_t number);

/**
 * The 32 bits that a column of this smi_basetype holds of a text of the API: unsigned for
 * SMI_BASETYPE_UNSIGNED32, signed otherwise. Leading white space, a sign and digits count; no digits give 0;
 * a number out of range gives the nearest end of the range.
 */
uint32_t number_from_text(std::string_view text, uint32_t data_type);

/** get_fn bodies of scalars: store the value and set `cached`. Result 0. */
int store_text(int32_t var_index, const std::string& text);
int store_number(int32_t var_index, int64_t number);

/** So many octets of a text leave the daemon at most, be it in an answer or in a notification. Of an answer
    that is longer than a datagram snmpd sends nothing. The shipped snmpd.conf lets a GETBULK have 20 values,
    and 20 texts of this length fit in a datagram. */
inline constexpr size_t kLongestServedText = 3072;

/** The text of a string variable as it leaves the daemon: cut before the character that would pass the limit.
   Logs a line once for each value that is cut. Main thread only. */
std::string_view served_text(int32_t var_index);
