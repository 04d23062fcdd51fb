#include <random>

#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/literalMerge.h"

namespace {

using fake_api_mgr::list_answer;
using std::string;

constexpr post_process_type kMark = literal_merge::mark_real_variable;

struct table_of_test {
    int col_id;
    const char* apiName;
    std::vector<attribute_map_entry> map;
};

// Maps of the test's own: attributes that feed two columns, scalars among the targets, the parent's tag as
// an attribute, an attribute that occurs nowhere.
const std::vector<table_of_test> kTables = {
    {COLID_tsCtlrNbr,
     "tsController",
     {{"A", COLID_tsCtlrStatus, kMark},
      {"B", COLID_productVersion, kMark},
      {"B", COLID_tsCtlrName, nullptr},
      {"C", COLID_tsSerialNumber, nullptr},
      {"C", COLID_tsCtlrIPv6Prefix, nullptr},
      {"Nowhere", COLID_tsCtlrModel, kMark},
      {"Index", COLID_tsCtlrLeader, nullptr}}},
    {COLID_tsEnclNbr,
     "tsEnclosure",
     {{"A", COLID_tsEnclStatus, nullptr},
      {"B", COLID_tsEnclName, kMark},
      {"Index", COLID_tsEnclApiIndex, nullptr},
      {"Nowhere", COLID_tsEnclType, nullptr}}},
    {COLID_tsCtlrFanNbr,
     "tsControllerFanSensor",
     {{"A", COLID_tsCtlrFanStatus, kMark},
      {"B", COLID_tsCtlrFanName, nullptr},
      {"A", COLID_tsCtlrFanCurrentRpm, nullptr},
      {"ControllerIndex", COLID_tsCtlrFanNormalMaxRpm, nullptr},
      {"C", COLID_tsCtlrFanWarnLower, kMark},
      {"B", COLID_tsCtlrFanForceTrap, kMark}}},
    {COLID_tsEnclFanNbr,
     "tsEnclosureCoolingFanSensor",
     {{"A", COLID_tsEnclFanStatus, nullptr},
      {"B", COLID_tsEnclFanLocation, kMark},
      {"EnclosureIndex", COLID_tsEnclFanSpeed, nullptr}}},
    {COLID_tsEnclAlarmNbr,
     "tsEnclosureAudibleAlarm",
     {{"C", COLID_tsEnclAlarmStatus, kMark}, {"B", COLID_tsEnclAlarmName, nullptr}}},
    {COLID_tsServerNbr,
     "tsServer",
     {{"A", COLID_tsServerStatus, kMark},
      {"B", COLID_tsServerName, nullptr},
      {"C", COLID_tsServerPathCount, nullptr},
      {"Index", COLID_tsServerApiIndex, nullptr}}},
    {COLID_tsTsNbr,
     "Tessera",
     {{"A", COLID_tsTsStatus, nullptr},
      {"B", COLID_tsTsName, nullptr},
      {"B", COLID_managementUrl, kMark},
      {"C", COLID_tsTsSerialNumber, nullptr}}},
    {COLID_tsAlertNbr, "tsAlert", {{"C", COLID_tsAlertType, nullptr}, {"B", COLID_tsAlertMessage, kMark}}},
};

class RefreshWalk : public MibWorld {
  protected:
    std::mt19937 random{19991231};
    literal_merge model;

    size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); }
    bool once_in(size_t count) { return below(count) == 0; }

    string any_value() {
        static const char* kValues[] = {"",           "Up",          "Down", "1",
                                        " 17 ",       "-5",          "+6x",  "4294967295",
                                        "4294967296", "-2147483649", "x3",   "no api object",
                                        "a&lt;b",     "666",         "Up+"};
        return once_in(4) ? std::to_string(below(100000)) : kValues[below(std::size(kValues))];
    }

    // Few, so that parents are often equal, and often nobody's.
    string any_index() {
        static const char* kIndexes[] = {"1", "2", "2", "7", " 7", "-5", "3000000000", "x"};
        return kIndexes[below(std::size(kIndexes))];
    }

    string child(const string& tag, const string& text) { return "<" + tag + ">" + text + "</" + tag + ">"; }

    string any_object(const string& tag, bool is_complete) {
        std::vector<string> children;
        for (const char* attribute : {"A", "B", "C", "Other"}) {
            for (size_t count = once_in(8) ? below(3) : 1; count > 0; --count)
                children.push_back(child(attribute, any_value()));
        }
        for (const char* attribute : {"Index", "ControllerIndex", "EnclosureIndex"}) {
            for (size_t count = !is_complete && once_in(12) ? 0 : 1 + below(5) / 4; count > 0; --count)
                children.push_back(child(attribute, any_index()));
        }
        std::shuffle(children.begin(), children.end(), random);
        string content;
        for (const string& each : children)
            content += each;
        return child(tag, content);
    }

    string any_tag(const string& apiName) {
        static const char* kServers[] = {"tsPhysicalServer", "tsRemoteTessera", "tsServerCluster",
                                         "tsVirtualServer", "tsServer"};
        string tag = apiName == "tsServer" ? kServers[below(5)] : apiName;
        if (once_in(20))
            return "tsSomethingElse";
        if (tag[0] == 't' && once_in(2))
            tag[0] = 'T';
        return tag;
    }

    size_t any_count(const column_record& column) {
        const size_t capacity = std::max(column.maxNumOfParents, 1U) * column.maxNumOfRows;
        if (capacity <= 700 && once_in(6))
            return capacity - 1 + below(3);
        return below(once_in(3) ? 40 : 5);
    }

    string any_answer(const table_of_test& table) {
        if (once_in(30))
            return fake_api_mgr::failure_answer("SomeError");
        if (once_in(30))
            return "<lumapi><ApiMethodReturn><Successful>True</Successful></ApiMethodReturn></lumapi>";
        const bool is_complete = once_in(2);
        string objects;
        for (size_t count = any_count(cols[table.col_id]); count > 0; --count)
            objects += any_object(any_tag(table.apiName), is_complete);
        string answer = list_answer(objects);
        if (once_in(20))
            answer.insert(answer.rfind("</lumapi>"), "<ReturnObjectArray><tsDisk/></ReturnObjectArray>");
        if (once_in(30))
            answer.resize(answer.size() / 2);
        return answer;
    }

    string first_difference() const {
        for (int32_t i = 0; i < total_vars; ++i) {
            const literal_merge::variable& want = model.vars[static_cast<size_t>(i)];
            if (want.cached != is_cached(i) || want.uint != vars[i].uint || want.str != vars[i].str)
                return name_of(i) + ": \"" + vars[i].str + "\" " + std::to_string(vars[i].uint) +
                       (is_cached(i) ? " cached" : " not cached") + ", wanted \"" + want.str + "\" " +
                       std::to_string(want.uint) + (want.cached ? " cached" : " not cached");
        }
        return "";
    }
};

TEST_F(RefreshWalk, LeavesWhatTheWalkColumnByColumnLeaves) {
    verbose = false;
    int merged = 0;
    for (int i = 0; i < 1200; ++i) {
        const table_of_test& table = kTables[below(kTables.size())];
        const string answer = any_answer(table);
        const int want = model.process_table_info(table.col_id, table.apiName, table.map, answer);
        const int result = process_table_info(table.col_id, table.apiName, static_cast<int>(table.map.size()),
                                              table.map.data(), answer);
        ASSERT_EQ(result, want) << answer;
        ASSERT_EQ(ctlrIndexFirst, model.index_first) << answer;
        ASSERT_EQ(ctlrIndexSecond, model.index_second) << answer;
        ASSERT_EQ(first_difference(), "") << table.apiName << " in refresh " << i << ":\n" << answer;
        merged += result == 0 ? 1 : 0;
    }
    EXPECT_GT(merged, 600);
}

// ---- whole refreshes, by the real maps ----

class Refresh : public MibWorld {
  protected:
    Refresh() { verbose = false; }

    // Refreshes the table of a column from these objects; the result and what was logged.
    static string refresh(int col_id, const string& request, const string& objects) {
        return refresh_from(col_id, request, list_answer(objects));
    }
    static string refresh_from(int col_id, const string& request, const string& answer) {
        fake_api_mgr::documents["GetList " + request] = answer;
        transcript::take();
        const int result = force_get_table_info(col_id, false);
        return std::to_string(result) + "\n" + transcript::take();
    }

    static string repeat(const string& text, int count) {
        string all;
        for (; count > 0; --count)
            all += text;
        return all;
    }

    static string row_of_values(const std::vector<int>& columns, int32_t row, int32_t parent = 1) {
        string values;
        for (const int col_id : columns)
            values += (values.empty() ? "" : " ") + value_of(var_at(col_id, row, parent));
        return values;
    }
};

const std::vector<int> kDisk = {27, 28, 29, 30, 31, 32, 33, 34, 35, 36};
const char* const kDiskObject =
    "<tsDisk><Index>17</Index><Name>Disk 01-17</Name><Status>Up</Status><Healthy>true</Healthy>"
    "<StatusMessage>fine</StatusMessage><Size>3907029168</Size><IoPortType>SAS</IoPortType>"
    "<EnclosureIndex>3</EnclosureIndex></tsDisk>";

TEST_F(Refresh, FillsARowAndLetsRowsLeave) {
    EXPECT_EQ(refresh(27, "TsDisk", repeat(kDiskObject, 5)), "0\napi GetList TsDisk\n");
    EXPECT_EQ(row_of_values(kDisk, 5), "5 1 \"Disk 01-17\" 1 \"fine\" 17 \"Empty\" 2000 4 3");
    EXPECT_EQ(refresh(27, "TsDisk", repeat(kDiskObject, 3)), "0\napi GetList TsDisk\n");
    EXPECT_EQ(row_of_values(kDisk, 3), "3 1 \"Disk 01-17\" 1 \"fine\" 17 \"Empty\" 2000 4 3");
    EXPECT_EQ(row_of_values(kDisk, 4), "- - - - - - - - - -");
    EXPECT_EQ(vars[var_at(COLID_tsDiskName, 4)].str, "Disk 01-17");  // the value is kept
    refresh(27, "TsDisk", "<tsDisk/><tsDisk/><tsDisk/><tsDisk/><tsDisk/><tsDisk><Index/></tsDisk>");
    EXPECT_EQ(value_of(var_at(32, 6)), "0");  // never filled before, and no digits
}

TEST_F(Refresh, KeepsTheOldRowsWhenAnAnswerIsRefused) {
    refresh(27, "TsDisk", repeat(kDiskObject, 2));
    const string failed = "1\napi GetList TsDisk\n";
    EXPECT_EQ(refresh(27, "TsDisk", ""), failed);
    EXPECT_EQ(refresh(27, "TsDisk", repeat("<tsDisk/>", 2001)), failed);
    EXPECT_EQ(refresh_from(27, "TsDisk", "<lumapi>"),
              failed + "log 4 error found while trying to parse ipXmlString: <lumapi>$\n");
    EXPECT_EQ(refresh_from(27, "TsDisk", fake_api_mgr::failure_answer("Busy")),
              failed +
                  "log 4 xml resp for [tsDisk] is Not successful: ErrorCode: [Busy]$\n"
                  "log 4 xml resp for tsDisk has Error: it failed$\n");
    fake_api_mgr::refuse_connections(true);
    EXPECT_EQ(refresh(27, "TsDisk", ""),
              "1\napi refused\n"
              "log 4 Caught std::exception processing request: /tmp/apimgr.sock: nobody listens$\n"
              "log 4 failed to SendRequestToAPIManager: tsDisk$\n"
              "log 4 failed to get xml response for apiName: tsDisk, retVal: 1$\n");
    EXPECT_EQ(row_of_values(kDisk, 2), "2 1 \"Disk 01-17\" 1 \"fine\" 17 \"Empty\" 2000 4 3");
    fake_api_mgr::refuse_connections(false);

    EXPECT_EQ(refresh(27, "TsDisk", repeat(kDiskObject, 2000)), "0\napi GetList TsDisk\n");
    EXPECT_EQ(row_of_values({27, 33}, 2000), "2000 \"Empty\"");
    EXPECT_EQ(refresh(115, "TsVolume", "<tsVolume><Name>v</Name></tsVolume>"),
              "0\napi GetList TsVolume\nlog 4 unknown status string: 'no api object' for col_id: 116, "
              "index_of_var: " +
                  std::to_string(var_at(116, 1)) + "$\n");
    EXPECT_EQ(row_of_values({115, 116, 117, 118, 119}, 1), "1 - \"v\" - \"Empty\"");
    EXPECT_EQ(vars[var_at(COLID_tsVolumeApiIndex, 1)].uint, 666U);
    EXPECT_EQ(refresh(115, "TsVolume", ""), "0\napi GetList TsVolume\n");  // none at all is legal here
    EXPECT_EQ(row_of_values({115, 117, 119}, 1), "- - -");
}

TEST_F(Refresh, TellsInTheDebugLogWhyItFailed) {
    verbose = true;
    EXPECT_EQ(refresh(27, "TsDisk", ""),
              "1\napi GetList TsDisk\n"
              "log 7 number_of_elems_of_interest (0) is less than 1, apiName: tsDisk$\n"
              "log 7 *ipXmlString: " +
                  list_answer("") +
                  "\n"
                  "log 7 UNsuccessful in get-handler for col-id: 27, retVal: 1$\n");
    EXPECT_EQ(refresh(133, "Tessera", "<Tessera/><Tessera/>"),
              "1\napi GetList Tessera\n"
              "log 7 too many elements received from api: col_id:133, index_to_soc:" +
                  std::to_string(cols[133].first_var) +
                  ", number_of_elems_of_interest:2, temp_maxNumOfParents:1, maxNumOfRows:1$\n"
                  "log 7 found error: index_to_sot: " +
                  std::to_string(cols[133].head_var) +
                  ", col-id: 133, index_of_var_of_argv: " + std::to_string(cols[133].first_var) +
                  ", argv-col-id: 133$\n"
                  "log 7 UNsuccessful in get-handler for col-id: 133, retVal: 1$\n");
}

string controller(const char* index, const char* version) {
    return string("<tsController><Index>") + index + "</Index><Status>Up</Status><Version>" + version +
           "</Version><Leader>1</Leader></tsController>";
}

TEST_F(Refresh, OfTheControllersSaysWhoseRowsTheirPartsAre) {
    const string fans =
        "<tsControllerFanSensor><ControllerIndex>9</ControllerIndex><Name>b</Name></tsControllerFanSensor>"
        "<tsControllerFanSensor><ControllerIndex>4</ControllerIndex><Name>a</Name></tsControllerFanSensor>"
        "<tsControllerFanSensor><ControllerIndex>5</ControllerIndex><Name>x</Name></tsControllerFanSensor>"
        "<tsControllerFanSensor><ControllerIndex>9</ControllerIndex><Name>c</Name></tsControllerFanSensor>";
    refresh(16, "TsController", controller("4", "6.5.2.12") + controller("9", "7"));
    EXPECT_EQ(row_of_values({7}, 1), "\"6.5.2\"");
    EXPECT_EQ(row_of_values({10}, 1), "\"6.5.2.12\"");
    refresh(47, "TsControllerFanSensor", fans);
    EXPECT_EQ(row_of_values({47, 49}, 1, 1), "1 \"a\"");
    EXPECT_EQ(row_of_values({47, 49}, 1, 2), "1 \"b\"");
    EXPECT_EQ(row_of_values({47, 49}, 2, 2), "2 \"c\"");
    EXPECT_EQ(row_of_values({47, 49}, 2, 1), "- -");

    // One controller is left: the second index keeps its value.
    refresh(16, "TsController", controller("5", "6"));
    EXPECT_EQ(ctlrIndexSecond, 9);
    refresh(47, "TsControllerFanSensor", fans);
    EXPECT_EQ(row_of_values({49}, 1, 1), "\"x\"");
    EXPECT_EQ(row_of_values({49}, 2, 2), "\"c\"");

    EXPECT_EQ(refresh(16, "TsController", "<tsController><Name>n</Name></tsController>"),
              "1\napi GetList TsController\nlog 4 tsController does not contain 'Index' for 1st ctlr: in "
              "contents of temp_elem: <Name>n</Name>, apiName: tsController$\n");
    EXPECT_EQ(
        refresh(16, "TsController", controller("8", "6") + "<tsController><Name>n</Name></tsController>"),
        "1\napi GetList TsController\nlog 4 tsController does not contain 'Index' for 2nd ctlr: in "
        "contents of temp_elem: <Name>n</Name>$\n");
    EXPECT_EQ(ctlrIndexFirst, 8);
    EXPECT_EQ(ctlrIndexSecond, 9);
}

TEST_F(Refresh, InTheBackgroundOnlyParksTheAnswer) {
    fake_api_mgr::documents["GetList TsDisk"] = list_answer(kDiskObject);
    EXPECT_EQ(force_get_table_info(COLID_tsDiskNbr, true), 0);
    EXPECT_EQ(row_of_values({27, 29}, 1), "- -");
    EXPECT_EQ(bgUpdateApiName, "tsDisk");
    EXPECT_EQ(bgUpdateMapSize, 9);
    EXPECT_STREQ(bgUpdateMap[8].attribute, "Name");
    EXPECT_EQ(bgUpdateResponse.xml, list_answer(kDiskObject));
}

}  // namespace
