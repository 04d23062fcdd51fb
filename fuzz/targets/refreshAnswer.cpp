// Passes responses of the API manager to the daemon's refresh, including the post-processes. Because these
// read other tables, an input may refresh several tables. Each of its parts, separated by the byte 0x1e, is a
// letter that selects the table ('a' is the first of columns.def) and a document.

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

constexpr char kBetweenDocuments = 0x1e;

// A table's rows are those of its first column.
void check_rows(const refresh_operation& operation) {
    const column_record& first = cols[operation.col_id];
    const auto parents = static_cast<int32_t>(std::max(first.maxNumOfParents, 1U));
    const auto rows = static_cast<int32_t>(first.maxNumOfRows);
    for (int32_t parent = 0; parent < parents; ++parent) {
        for (int32_t row = 0; row < rows; ++row) {
            const int32_t i = first.first_var + parent * rows + row;
            if (!is_cached(i))
                break;
            if (vars[i].uint != static_cast<uint32_t>(row) + 1)
                FuzzFail("a row has another's number: " + name_of(i));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    verbose = false;
    clear_cached_range(0, total_vars);
    const std::string pieces(reinterpret_cast<const char*>(data), size);
    for (size_t begin = 0; begin < pieces.size();) {
        const size_t end = std::min(pieces.find(kBetweenDocuments, begin), pieces.size());
        const refresh_operation& operation =
            refresh_operations[static_cast<uint8_t>(pieces[begin] - 'a') % NUMBER_OF_REFRESHES];
        const std::string document = pieces.substr(begin + 1, end - begin - 1);
        if (process_table_info(operation.col_id, operation.apiName, operation.map_size, operation.map,
                               document) == 0)
            check_rows(operation);
        begin = end + 1;
    }
    transcript::take();
    return 0;
}
