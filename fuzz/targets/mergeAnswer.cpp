// Answers of the API manager into the merge. The first byte chooses the table, 'a' the first of columns.def,
// the rest is one or more documents, separated by the byte 0x1e. The store must come out as that of the
// plainest merge, and whatever the document, the rows of a table must be packed.

#include <cstring>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/literalMerge.h"

namespace {

constexpr char kBetweenDocuments = 0x1e;

// The daemon's map without its post-processes, which the plain merge does not know.
std::vector<attribute_map_entry> plain_map(const refresh_operation& operation) {
    std::vector<attribute_map_entry> map(operation.map, operation.map + operation.map_size);
    for (attribute_map_entry& entry : map)
        entry.post_process = nullptr;
    return map;
}

int32_t end_of_column(int col_id) {
    return col_id + 1 < NUMBER_OF_COLUMNS ? cols[col_id + 1].first_var : total_vars;
}

// As both stores are when the process starts.
void forget_column(int col_id, literal_merge& model) {
    for (int32_t i = cols[col_id].first_var; i < end_of_column(col_id); ++i) {
        clear_cached(i);
        vars[i].uint = 0xFFFFFFFF;
        vars[i].str.clear();
        model.vars[static_cast<size_t>(i)] = {};
    }
}

void check_column(int col_id, const literal_merge& model) {
    const column_record& column = cols[col_id];
    for (int32_t i = column.first_var; i < end_of_column(col_id); ++i) {
        const literal_merge::variable& expected = model.vars[static_cast<size_t>(i)];
        if (is_cached(i) != expected.cached)
            FuzzFail("an entry is cached in one store alone: " + name_of(i));
        if (vars[i].uint != expected.uint || vars[i].str != expected.str)
            FuzzFail("the values differ: " + name_of(i));
        const bool begins_rows = !column.is_table() || get_row_seq(i) == 1;
        if (column.stands_for_itself() && !begins_rows && is_cached(i) && !is_cached(i - 1))
            FuzzFail("a row without the one before it: " + name_of(i));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    static literal_merge model;
    verbose = false;
    FuzzInput input(data, size);
    const refresh_operation& operation =
        refresh_operations[static_cast<uint8_t>(input.Byte() - 'a') % NUMBER_OF_REFRESHES];
    const std::vector<attribute_map_entry> map = plain_map(operation);
    forget_column(operation.col_id, model);
    for (const attribute_map_entry& entry : map)
        forget_column(static_cast<int>(entry.col_id), model);
    ctlrIndexFirst = ctlrIndexSecond = model.index_first = model.index_second = 0;

    std::string documents(input.Rest());
    for (size_t begin = 0; begin <= documents.size();) {
        const size_t end = std::min(documents.find(kBetweenDocuments, begin), documents.size());
        const std::string document = documents.substr(begin, end - begin);
        const int result =
            process_table_info(operation.col_id, operation.apiName, operation.map_size, map.data(), document);
        FuzzCheck((result != 0) ==
                      (model.process_table_info(operation.col_id, operation.apiName, map, document) != 0),
                  "the results differ");
        begin = end + 1;
    }
    check_column(operation.col_id, model);
    for (const attribute_map_entry& entry : map)
        check_column(static_cast<int>(entry.col_id), model);
    transcript::take();
    return 0;
}
