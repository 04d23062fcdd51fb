#pragma once

#include <net-snmp/net-snmp-config.h>
// oid.h requires net-snmp-config.h.
#include <net-snmp/library/oid.h>

#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibColumns.h"

/** Types of the constant tables that are generated from columns.def. */

/** SMI base types. Columns have four of them; the others occur only where they are rejected. */
enum smi_basetype : uint32_t {
    SMI_BASETYPE_UNKNOWN = 0,
    SMI_BASETYPE_INTEGER32 = 1,
    SMI_BASETYPE_OCTET_STRING = 2,
    SMI_BASETYPE_OBJECT_IDENTIFIER = 3,
    SMI_BASETYPE_UNSIGNED32 = 4,
    SMI_BASETYPE_INTEGER64 = 5,
    SMI_BASETYPE_UNSIGNED64 = 6,
    SMI_BASETYPE_ENUM = 10,
    SMI_BASETYPE_BITS = 11,
    SMI_BASETYPE_POINTER = 12,
};

/** Bits of column_record::col_flags. */
enum column_flag : uint32_t {
    COL_FLAG_is_table = 1,
    COL_FLAG_controller_parent = 2,
    COL_FLAG_enclosure_parent = 4,
};

/**
 * Refresh operation. `var_index` is the column's head_var. If `background` is set, it only fetches. Returns 0
 * on success.
 */
using get_fn_type = int (*)(int32_t var_index, bool background);

/**
 * Commit operation of a SET. `var_index` is the variable, which contains the new string. Returns 0 on
 * success.
 */
using set_fn_type = int (*)(int32_t var_index);

/** Post-process. `var_index` is the variable that was just written. */
using post_process_type = void (*)(int32_t var_index);

/** A column as described by columns.def, from which the store is built. */
struct column_definition {
    const char* name; /**< without COLID_ */
    const oid* oid_ptr;
    int oid_len;
    uint32_t data_type;
    bool is_table;
    bool is_first_of_table;
    uint32_t maxNumOfParents;
    uint32_t maxNumOfRows;
    uint32_t minNumOfRows;
    uint32_t col_flags; /**< only the parent flags */
    get_fn_type get_fn;
    set_fn_type set_fn;
};

/** An attribute of an API object and the column that it fills. Maps are processed in order. */
struct attribute_map_entry {
    const char* attribute;
    uint32_t col_id;
    post_process_type post_process; /**< null: none */
};

/** The refresh of a table, as described by columns.def. */
struct refresh_operation {
    int col_id; /**< the table's first column */
    const char* apiName;
    int map_size;
    const attribute_map_entry* map;
};

extern const refresh_operation refresh_operations[NUMBER_OF_REFRESHES];

/** In the order of column IDs. */
extern const column_definition column_definitions[NUMBER_OF_COLUMNS];
