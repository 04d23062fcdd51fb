#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

using fake_api_mgr::list_answer;
using std::string;

class Refresh : public MibWorld {
  protected:
    Refresh() { verbose = false; }

    // Refreshes the table of a column from these objects. Returns the result and the log.
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
    EXPECT_EQ(value_of(var_at(32, 6)), "0");  // not filled before, and no digits
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
    EXPECT_EQ(refresh(115, "TsVolume", ""), "0\napi GetList TsVolume\n");  // this table may be empty
    EXPECT_EQ(row_of_values({115, 117, 119}, 1), "- - -");
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

    // If only one controller remains, the second index keeps its value.
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

// Objects belong to the first parent with their index, in the order of the response. An object without the
// index of a parent ends the list, and objects of unknown parents are omitted.
TEST_F(Refresh, OfTheEnclosuresSaysWhoseRowsTheirPartsAre) {
    const auto enclosures = [](std::initializer_list<const char*> indexes) {
        string objects;
        for (const string index : indexes)
            objects += "<tsEnclosure><Index>" + index + "</Index><Name>e" + index + "</Name></tsEnclosure>";
        return objects;
    };
    const auto alarms = [](std::initializer_list<std::pair<const char*, const char*>> parts) {
        string objects;
        for (const auto& [parent, name] : parts)
            objects += "<TsEnclosureAudibleAlarm>" + string(parent) + "<Name>" + name +
                       "</Name><Status>Up</Status></TsEnclosureAudibleAlarm>";
        return objects;
    };
    const auto names = [] {
        string all;
        for (int32_t parent = 1; parent <= 4; ++parent)
            all += row_of_values({COLID_tsEnclAlarmNbr, COLID_tsEnclAlarmName}, 1, parent) + " | ";
        return all;
    };
    refresh(37, "TsEnclosure", enclosures({"7", "3", " 7", "-5"}));
    EXPECT_EQ(row_of_values({COLID_tsEnclApiIndex}, 4), "0");
    refresh(103, "TsEnclosureAudibleAlarm",
            alarms({{"<EnclosureIndex>3</EnclosureIndex>", "of 3"},
                    {"<EnclosureIndex>9</EnclosureIndex>", "of nobody"},
                    {"<EnclosureIndex>+7x</EnclosureIndex>", "of 7"},
                    {"<EnclosureIndex>3</EnclosureIndex>", "one too many"}}));
    EXPECT_EQ(names(), R"(1 "of 7" | 1 "of 3" | 1 "of 7" | - - | )");
    refresh(103, "TsEnclosureAudibleAlarm",
            alarms({{"<EnclosureIndex>3</EnclosureIndex>", "again"},
                    {"", "without a tag"},
                    {"<EnclosureIndex>7</EnclosureIndex>", "behind it"}}));
    EXPECT_EQ(names(), R"(- - | 1 "again" | - - | - - | )");
}

// An attribute may fill several columns, scalars take the value of the first object, and a post-process gets
// each string again.
TEST_F(Refresh, FeedsEachColumnOfItsMap) {
    const post_process_type post_process = [](int32_t var_index) {
        vars[var_index].str += is_cached(var_index) ? "+" : "-";
    };
    const attribute_map_entry map[] = {{"A", COLID_tsServerName, post_process},
                                       {"A", COLID_tsServerPathCount, nullptr},
                                       {"Nowhere", COLID_tsServerStatus, post_process},
                                       {"A", COLID_productVersion, post_process},
                                       {"B", COLID_tsServerApiIndex, nullptr}};
    const auto merged = [&](const string& objects) {
        EXPECT_EQ(process_table_info(COLID_tsServerNbr, "tsServer", 5, map, list_answer(objects)), 0);
        string values = value_of(var_at(COLID_productVersion, 1)) + ":";
        for (int32_t row = 1; row <= 3; ++row)
            values += " " + row_of_values({COLID_tsServerNbr, COLID_tsServerName, COLID_tsServerPathCount,
                                           COLID_tsServerStatus, COLID_tsServerApiIndex},
                                          row);
        return values;
    };
    const string first = "<tsVirtualServer><A>12</A><A>2</A><B>7</B></tsVirtualServer>";
    const string second = "<TsServerCluster><B>-1</B><A/></TsServerCluster>";
    const string third = "<tsPhysicalServer><A>x</A><B>4294967296</B></tsPhysicalServer>";
    EXPECT_EQ(merged(first + second + third + "<tsOther/>"),
              R"("x+": 1 "x+" 0 - 4294967295 2 "+" 0 - 0 3 "12+" 12 - 7)");
    EXPECT_EQ(vars[var_at(COLID_tsServerStatus, 1)].str, "no api object-");
    EXPECT_EQ(merged(third), R"("x+": 1 "x+" 0 - 4294967295 - - - - - - - - - -)");
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
