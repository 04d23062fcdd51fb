#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

using fake_api_mgr::list_answer;
using std::string;

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
