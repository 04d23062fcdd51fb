// Merges responses of the API manager. The first byte selects the table, 'a' the first of columns.def. The
// rest is one or more documents, separated by the byte 0x1e; if a document begins with the byte 1, its other
// bytes select the strings of a well-formed response. The store must equal that of the simplest possible
// merge, and the rows of a table must be packed, whatever the document.

#include <algorithm>
#include <string>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "fuzz/lib/literalMerge.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

constexpr char kBetweenDocuments = 0x1e;
constexpr char kOfWords = 1;

using attribute_map = std::vector<attribute_map_entry>;

std::string element(const std::string& tag, const std::string& text) {
    return "<" + tag + ">" + text + "</" + tag + ">";
}

std::string any_value(FuzzInput& input) {
    static constexpr const char* kValues[] = {"",           "Up",          "Down", "1",
                                              " 17 ",       "-5",          "+6x",  "4294967295",
                                              "4294967296", "-2147483649", "x3",   "no api object",
                                              "a&lt;b",     "666",         "Up+"};
    return input.OnceIn(4) ? std::to_string(input.Below(65536)) : kValues[input.Below(std::size(kValues))];
}

std::string any_object(FuzzInput& input, const std::string& tag, const attribute_map& map, bool is_complete) {
    static constexpr const char* kIndexes[] = {"1", "2", "2", "7", " 7", "-5", "3000000000", "x"};
    std::string content;
    for (const attribute_map_entry& entry : map) {
        for (size_t count = input.OnceIn(8) ? input.Below(3) : 1; count > 0; --count)
            content.insert(input.OnceIn(4) ? 0 : content.size(), element(entry.attribute, any_value(input)));
    }
    for (const char* attribute : {"Index", "ControllerIndex", "EnclosureIndex"}) {
        for (size_t count = !is_complete && input.OnceIn(12) ? 0 : 1 + input.Below(5) / 4; count > 0; --count)
            content.insert(input.OnceIn(2) ? 0 : content.size(),
                           element(attribute, kIndexes[input.Below(std::size(kIndexes))]));
    }
    return element(tag, content);
}

std::string any_tag(FuzzInput& input, const std::string& apiName) {
    static constexpr const char* kServers[] = {"tsPhysicalServer", "tsRemoteTessera", "tsServerCluster",
                                               "tsVirtualServer", "tsServer"};
    std::string tag = apiName == "tsServer" ? kServers[input.Below(5)] : apiName;
    if (input.OnceIn(20))
        return "tsSomethingElse";
    if (tag[0] == 't' && input.OnceIn(2))
        tag[0] = 'T';
    return tag;
}

size_t any_count(FuzzInput& input, const column_record& column) {
    const auto capacity = static_cast<size_t>(column.capacity());
    if (capacity <= 700 && input.OnceIn(6))
        return capacity - 1 + input.Below(3);
    return input.Below(input.OnceIn(3) ? 40 : 5);
}

std::string any_answer(FuzzInput& input, const refresh_operation& operation, const attribute_map& map) {
    const bool is_complete = input.OnceIn(2);
    std::string objects;
    for (size_t count = any_count(input, cols[operation.col_id]); count > 0; --count)
        objects += any_object(input, any_tag(input, operation.apiName), map, is_complete);
    std::string answer = fake_api_mgr::list_answer(objects);
    if (input.OnceIn(20))
        answer.insert(answer.rfind("</lumapi>"), "<ReturnObjectArray><tsDisk/></ReturnObjectArray>");
    return answer;
}

// The daemon's map, with the one post-process that the plain merge knows.
attribute_map plain_map(const refresh_operation& operation) {
    attribute_map map(operation.map, operation.map + operation.map_size);
    for (attribute_map_entry& entry : map) {
        if (entry.post_process != nullptr)
            entry.post_process = literal_merge::mark_real_variable;
    }
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
        if (column.is_head() && !begins_rows && is_cached(i) && !is_cached(i - 1))
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
    const attribute_map map = plain_map(operation);
    forget_column(operation.col_id, model);
    for (const attribute_map_entry& entry : map)
        forget_column(static_cast<int>(entry.col_id), model);
    ctlrIndexFirst = ctlrIndexSecond = model.index_first = model.index_second = 0;

    std::string documents(input.Rest());
    for (size_t begin = 0; begin <= documents.size();) {
        const size_t end = std::min(documents.find(kBetweenDocuments, begin), documents.size());
        std::string document = documents.substr(begin, end - begin);
        if (document.starts_with(kOfWords)) {
            FuzzInput words(reinterpret_cast<const uint8_t*>(document.data()) + 1, document.size() - 1);
            document = any_answer(words, operation, map);
        }
        const int result =
            process_table_info(operation.col_id, operation.apiName, operation.map_size, map.data(), document);
        FuzzCheck((result != 0) ==
                      (model.process_table_info(operation.col_id, operation.apiName, map, document) != 0),
                  "the results differ");
        begin = end + 1;
    }
    FuzzCheck(ctlrIndexFirst == model.index_first && ctlrIndexSecond == model.index_second,
              "another controller");
    check_column(operation.col_id, model);
    for (const attribute_map_entry& entry : map)
        check_column(static_cast<int>(entry.col_id), model);
    transcript::take();
    return 0;
}
