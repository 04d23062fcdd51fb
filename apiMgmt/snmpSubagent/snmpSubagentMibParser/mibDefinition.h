#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/postProcess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/setOperations.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/forceTrapHandlers.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"

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
