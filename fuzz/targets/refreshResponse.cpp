// Passes responses of the API manager to the daemon's refresh, including the post-processes. Because these
// read other tables, an input may refresh several tables. Each of its parts, separated by the byte 0x1e, is a
// letter that selects the table ('a' is the first of columns.def) and a document. If the document begins with
// the byte 1, its other bytes select the strings of a well-formed response.

#include <algorithm>
#include <string>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

constexpr char kSeparator = 0x1e;
constexpr char kGenerated = 1;

template <size_t count>
std::string any_of(FuzzInput& input, const char* const (&words)[count]) {
    return words[input.Below(count)];
}

std::string element(const std::string& tag, const std::string& text) {
    return "<" + tag + ">" + text + "</" + tag + ">";
}

std::string any_object(FuzzInput& input, const std::string& tag, const refresh_operation& operation) {
    static constexpr const char* kIndexes[] = {"1", "2", "2", "7", " 7", "-5", "3000000000", "x"};
    static constexpr const char* kValues[] = {"",       "Up",      "Down",       "1",  " 17 ",
                                              "-5",     "+6x",     "4294967296", "x3", "no api object",
                                              "a&lt;b", "69696969"};
    std::string content;
    for (int32_t i = 0; i < operation.map_size; ++i) {
        for (size_t count = input.OnceIn(8) ? input.Below(3) : 1; count > 0; --count)
            content += element(operation.map[i].attribute, any_of(input, kValues));
    }
    for (const char* attribute : {"Index", "ControllerIndex", "EnclosureIndex"}) {
        if (!input.OnceIn(12))
            content.insert(input.OnceIn(2) ? 0 : content.size(), element(attribute, any_of(input, kIndexes)));
    }
    return element(tag, content);
}

std::string any_response(FuzzInput& input, const refresh_operation& operation) {
    static constexpr const char* kServers[] = {"tsPhysicalServer", "TsRemoteTessera", "tsServerCluster",
                                               "TsVirtualServer", "tsSomethingElse"};
    const auto capacity = static_cast<size_t>(cols[operation.col_id].capacity());
    const bool is_full = capacity <= 700 && input.OnceIn(6);
    std::string objects;
    for (size_t count = is_full ? capacity - 1 + input.Below(3) : input.Below(40); count > 0; --count) {
        const std::string name = operation.apiName;
        objects += any_object(input, name == "tsServer" ? any_of(input, kServers) : name, operation);
    }
    return fake_api_mgr::list_answer(objects);
}

// The rows of a table are those of its first column: numbered from 1 without a gap, and no more than the
// response has objects.
void check_rows(const refresh_operation& operation, const std::string& document) {
    const column_record& first = cols[operation.col_id];
    const auto parents = static_cast<int32_t>(std::max(first.maxNumOfParents, 1U));
    const auto rows = static_cast<int32_t>(first.maxNumOfRows);
    size_t cached = 0;
    for (int32_t parent = 0; parent < parents; ++parent) {
        for (int32_t row = 0; row < rows; ++row) {
            const int32_t i = first.first_var + parent * rows + row;
            if (!is_cached(i))
                continue;
            if (vars[i].uint != static_cast<uint32_t>(row) + 1)
                FuzzFail("wrong row number: " + name_of(i));
            if (row > 0 && !is_cached(i - 1))
                FuzzFail("a row follows a missing row: " + name_of(i));
            ++cached;
        }
    }
    if (!first.is_table() || first.has_parent())  // several parents may have the same index
        return;
    parser::XMLParser parser;
    parser.ParseXMLString(document);
    size_t objects = 0;
    for (auto each = parser.GetDocumentElement().GetFirstChildByTagName("ReturnObjectArray").GetFirstChild();
         each; each = each.GetNextSibling())
        ++objects;
    FuzzCheck(cached <= objects, "more rows than objects");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    verbose = false;
    clear_cached_range(0, total_vars);
    const std::string parts(reinterpret_cast<const char*>(data), size);
    for (size_t begin = 0; begin < parts.size();) {
        const size_t end = std::min(parts.find(kSeparator, begin), parts.size());
        const refresh_operation& operation =
            refresh_operations[static_cast<uint8_t>(parts[begin] - 'a') % NUMBER_OF_REFRESHES];
        std::string document = parts.substr(begin + 1, end - begin - 1);
        if (document.starts_with(kGenerated)) {
            FuzzInput words(reinterpret_cast<const uint8_t*>(document.data()) + 1, document.size() - 1);
            document = any_response(words, operation);
        }
        if (process_table_info(operation.col_id, operation.apiName, operation.map_size, operation.map,
                               document) == 0)
            check_rows(operation, document);
        begin = end + 1;
    }
    transcript::take();
    return 0;
}
