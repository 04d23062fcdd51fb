#pragma once

#include <net-snmp/net-snmp-config.h>
// oid.h needs the configuration above it.
#include <net-snmp/library/oid.h>

#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibColumns.h"

/** What a column is, and the constant tables that the generator makes of the data. */

/** SMI base types. The columns have four of them; the others occur only where they are rejected. */
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

/** Refresh operation: the index of the column's head_var, and whether only to fetch. 0 on success. */
using get_fn_type = int (*)(int32_t var_index, bool background);

/** Commit operation of a SET: the index of the variable, which holds the new text. 0 on success. */
using set_fn_type = int (*)(int32_t var_index);

/** Called with the index of a variable that was just written. */
using post_process_type = void (*)(int32_t var_index);

/** One column as columns.def describes it: what the build of the store works through. */
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
    uint32_t col_flags; /**< the parent flags alone */
    get_fn_type get_fn;
    set_fn_type set_fn;
};

/** One attribute of an API object and the column that it fills. A map is walked in order. */
struct attribute_map_entry {
    const char* attribute;
    uint32_t col_id;
    post_process_type post_process; /**< null: none */
};

/** How one table is refreshed, as columns.def describes it. */
struct refresh_operation {
    int col_id; /**< the table's first column */
    const char* apiName;
    int map_size;
    const attribute_map_entry* map;
};

extern const refresh_operation refresh_operations[NUMBER_OF_REFRESHES];

/** In the order of column ids. */
extern const column_definition column_definitions[NUMBER_OF_COLUMNS];
