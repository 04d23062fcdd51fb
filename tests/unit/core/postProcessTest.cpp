#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/postProcess.h"

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

using std::string;

class PostProcess : public MibWorld {
  protected:
    PostProcess() { verbose = false; }
};

TEST_F(PostProcess, MakesNumbersOfTexts) {
    const std::pair<post_process_type, std::vector<std::pair<const char*, int32_t>>> tables[] = {
        // All words of the enumerations: mib_convention.
        {truth_value_post_process, {{"1", 1}, {"True", 1}, {"0", 2}, {"", 0}, {"2", 0}, {"true ", 0}}},
        {io_port_type_post_process, {{"fibrechanneloverethernet", 3}, {"SATA", 5}}},
        {size_post_process,
         {{"1953124", 0},
          {"1953125", 1},
          {"3907029168", 2000},
          {"no api object", 0},
          {"-1953125", 0},
          {"18446744073709551615", -1},
          {"99999999999999999999999", -1}}},
    };
    const int32_t variable = var_at(COLID_tsDiskStatus, 1);
    for (const auto& [post_process, rows] : tables) {
        for (const auto& [text, number] : rows) {
            vars[variable].str = text;
            vars[variable].uint = 777;
            post_process(variable);
            EXPECT_EQ(static_cast<int32_t>(vars[variable].uint), number) << text;
        }
    }
    vars[variable].str = "no api object";
    no_api_object_post_process(variable);
    EXPECT_EQ(vars[variable].uint, 0U);
    vars[variable].str = "other";
    vars[variable].uint = 777;
    no_api_object_post_process(variable);
    EXPECT_EQ(vars[variable].uint, 777U);
}

TEST_F(PostProcess, MakesTextsOfTexts) {
    const int32_t version = var_at(COLID_productVersion, 1);
    const std::pair<const char*, const char*> versions[] = {
        {"6.5.2.12", "6.5.2"}, {"6", "6"}, {"6.", "6"}, {".6", ""}, {"", ""}};
    for (const auto& [text, cut] : versions) {
        vars[version].str = text;
        version_post_process(version);
        EXPECT_EQ(vars[version].str, cut);
    }
    vars[var_at(COLID_tsDiskConfigVendor, 2000)].str = "Maker";
    vars[var_at(COLID_tsDiskConfigProduct, 2000)].str = "Disk";
    vendor_product_post_process(var_at(COLID_tsDiskConfigVendorProduct, 2000));
    EXPECT_EQ(vars[var_at(COLID_tsDiskConfigVendorProduct, 2000)].str, "Maker Disk");
}

TEST_F(PostProcess, FindsTheArraysAddress) {
    const char* const kNone = "https://www.vorn-lumivant.example/tessera";
    // The row of this controller; instances, with "#" before a number; the resulting URL.
    const std::tuple<int, std::vector<string>, const char*> rows[] = {
        {0, {"R.29.1.8.1=10.0.0.1", "R.13.1.5.1=10.0.0.2", "R.29.1.12.1#64"}, "https://10.0.0.1"},
        {0, {"R.29.1.8.1=0.0.0.0", "R.29.1.11.1=fd00::1", "R.29.1.12.1#64"}, "https://fd00::1"},
        {0, {"R.29.1.8.1=", "R.13.1.5.1=10.0.0.2", "R.29.1.12.1#0"}, "https://10.0.0.2"},
        {2, {"R.13.1.5.1=10.0.0.2", "R.13.1.5.2=10.0.0.3"}, "https://10.0.0.3"},
        {1, {"R.13.1.5.2=10.0.0.3", "R.13.1.10.1=fd00::2", "R.13.1.11.1#64"}, "https://fd00::2"},
        {2, {"R.13.1.10.2=fd00::3", "R.13.1.11.2#64"}, kNone},  // of the first row only
        {0, {"R.13.1.5.1=0.0.0.0"}, kNone},
        {0, {}, kNone},
    };
    for (const auto& [own_row, cells, url] : rows) {
        clear_cached_range(0, total_vars);
        conf_controllerIndexThis = own_row;
        for (const string& cell : cells) {
            const size_t place = cell.find_first_of("=#");
            if (cell[place] == '=')
                put(cell.substr(0, place), cell.substr(place + 1));
            else
                put(cell.substr(0, place), static_cast<uint32_t>(std::stoul(cell.substr(place + 1))));
        }
        management_url_post_process(var_at(COLID_managementUrl, 1));
        EXPECT_EQ(vars[COLID_managementUrl].str, url);
    }
}

// ---- disk folders ----

class FolderUsage : public MibWorld {
  protected:
    static constexpr const char* kUsage =
        "<tsDiskFolderStorageUsage><TotalSpace>19531250</TotalSpace><UsedSpace>5859375</UsedSpace>"
        "<AllocatedSpace>4194304</AllocatedSpace><FreeSpace>13671875</FreeSpace><SpareSpace>2097151</"
        "SpareSpace>"
        "</tsDiskFolderStorageUsage>";

    FolderUsage() {
        verbose = false;
        conf_controllerIdThis = 7;
        build_api_request_prefix("KEY");
        fake_api_mgr::documents["Get TsDiskFolderStorageUsage 7.3"] = fake_api_mgr::object_answer(kUsage);
    }

    static void refresh(const string& objects) {
        fake_api_mgr::documents["GetList TsDiskFolder"] = fake_api_mgr::list_answer(objects);
        transcript::take();
        force_get_table_info(COLID_tsDiskFolderNbr, false);
    }
    static string folder(const string& index) {
        return "<tsDiskFolder><Status>Up</Status><Name>f</Name><Index>" + index + "</Index></tsDiskFolder>";
    }
    // Free percent and free GiB, then the row of the usage table.
    static string row(int32_t number) {
        string values = value_of(var_at(COLID_tsDiskFolderFreePercent, number)) + " " +
                        value_of(var_at(COLID_tsDiskFolderFreeGib, number)) + " |";
        for (int col_id = COLID_tsFolderUsageNbr; col_id <= COLID_tsFolderUsageSpareGib; ++col_id)
            values += " " + value_of(var_at(col_id, number));
        return values;
    }
};

TEST_F(FolderUsage, IsFetchedForEachFolder) {
    refresh(folder("1") + folder("3") + folder("69696969"));
    EXPECT_EQ(transcript::take(), "api GetList TsDiskFolder\napi Get TsDiskFolderStorageUsage 7.3\n");
    EXPECT_EQ(row(1), "0 0 | 1 0 0 0 0 0 0 0");
    EXPECT_EQ(row(2), "70 6 | 2 10 3 9 2 2 6 0");
    EXPECT_EQ(row(3), "0 0 | 3 0 0 0 0 0 0 0");
    EXPECT_EQ(value_of(var_at(COLID_tsDiskFolderAlertThreshold, 2)), "-");
    EXPECT_EQ(vars[var_at(COLID_tsDiskFolderAlertThreshold, 2)].uint, 0U);

    // Rows of removed folders lose their row number and free space, but no other usage value.
    refresh(folder("3"));
    EXPECT_EQ(row(1), "70 6 | 1 10 3 9 2 2 6 0");
    EXPECT_EQ(row(2), "- - | - 10 3 9 2 2 6 0");
    refresh(folder("1"));
    EXPECT_EQ(row(1), "0 0 | 1 0 0 0 0 0 0 0");
}

TEST_F(FolderUsage, ThatCannotBeFetchedKeepsItsNumbers) {
    refresh(folder("3"));
    fake_api_mgr::documents["Get TsDiskFolderStorageUsage 7.3"] = fake_api_mgr::failure_answer("Busy");
    refresh(folder("3"));
    EXPECT_EQ(transcript::take(),
              "api GetList TsDiskFolder\napi Get TsDiskFolderStorageUsage 7.3\n"
              "log 4 xml resp for [tsDiskFolderStorageUsage] is Not successful: ErrorCode: [Busy]$\n"
              "log 4 xml resp for tsDiskFolderStorageUsage has Error: it failed$\n");
    EXPECT_EQ(row(1), "70 6 | 1 10 3 9 2 2 6 0");

    // If an attribute is missing, no number of the response is used.
    string partly = kUsage;
    partly.replace(partly.find("<AllocatedSpace>"), 40, "");
    fake_api_mgr::documents["Get TsDiskFolderStorageUsage 7.4"] = fake_api_mgr::object_answer(partly);
    refresh(folder("3") + folder("4"));
    EXPECT_EQ(row(2), "- - | 2 - - - - - - -");
    fake_api_mgr::documents["Get TsDiskFolderStorageUsage 7.3"] = fake_api_mgr::object_answer(partly);
    refresh(folder("3") + folder("4"));
    EXPECT_EQ(row(1), "70 6 | 1 10 3 9 2 2 6 0");  // blocks are never served as gigabytes
}

TEST_F(FolderUsage, NeedsTheFoldersIndex) {
    verbose = true;
    refresh("<tsDiskFolder><Status>Up</Status></tsDiskFolder>");
    EXPECT_NE(transcript::take().find(
                  "log 7 disk-folder info is not cached, so we can't get associated storage-usage info$\n"),
              string::npos);
    EXPECT_EQ(row(1), "- - | - - - - - - - -");
}

// ---- the overall status ----

TEST_F(PostProcess, GlobalStatusIsTheWorstOfTheAlerts) {
    struct alert {
        int32_t parent;
        int32_t row;
        const char* status;
        const char* active;
        const char* acknowledged;
    };
    struct row {
        std::vector<alert> alerts;
        const char* status;
        const char* worst;  // the row number of the worst alert; "-": unchanged
    };
    const row rows[] = {
        {{}, "3", "-"},
        {{{1, 1, "Critical", "0", "0"}}, "3", "-"},
        {{{1, 1, "Complete", "1", "0"}, {1, 2, "Deleting", "1", "0"}, {1, 3, "Okay", "1", "0"}}, "3", "-"},
        {{{1, 1, "Okay", "1", "0"}, {1, 2, "Degraded", "1", "0"}}, "4", "2"},
        {{{1, 1, "Anything", "1", "0"}}, "4", "1"},
        {{{1, 1, "Degraded", "1", "0"}, {1, 2, "Critical", "1", "0"}, {1, 3, "Down", "1", "0"}}, "5", "2"},
        {{{1, 1, "Emergency", "true", "false"}}, "5", "1"},
        {{{1, 2, "Critical", "1", "0"}}, "3", "-"},  // the walk ends at the first gap
        {{{1, 1, "Okay", "1", "0"}, {2, 1, "Critical", "1", "0"}}, "3", "-"},
    };
    const int32_t global = var_at(COLID_globalStatus, 1);
    const auto store = [](int col_id, const alert& from, const char* text, post_process_type post_process) {
        const int32_t variable = var_at(col_id, from.row, from.parent);
        store_text(variable, text);
        post_process(variable);
    };
    for (const row& each : rows) {
        clear_cached_range(0, total_vars);
        worstAlertNbr = 99;
        for (const alert& from : each.alerts) {
            store_number(var_at(COLID_tsAlertNbr, from.row, from.parent), from.row);
            store(COLID_tsAlertStatus, from, from.status, alert_status_post_process);
            store(COLID_tsAlertActive, from, from.active, truth_value_post_process);
            store(COLID_tsAlertAcknowledged, from, from.acknowledged, truth_value_post_process);
        }
        EXPECT_EQ(compute_global_status(global, false), 0);
        const string what = each.alerts.empty() ? "no alert" : each.alerts[0].status;
        EXPECT_EQ(value_of(global), each.status) << what;
        EXPECT_EQ(value_of(var_at(COLID_worstAlertNbr, 1)), each.worst) << what;
        EXPECT_EQ(std::to_string(worstAlertNbr), string(each.worst) == "-" ? "99" : each.worst) << what;
    }
    // The first controller has the maximum number of alerts, and the last is not the worst. Also, an unknown
    // number.
    for (int32_t i = 0; i < 9001; ++i) {
        store_number(cols[COLID_tsAlertStatus].first_var + i, i == 9000 ? 1 : 7);
        store_number(cols[COLID_tsAlertActive].first_var + i, 1);
        store_number(cols[COLID_tsAlertAcknowledged].first_var + i, 2);
        store_number(cols[COLID_tsAlertNbr].first_var + i, i % 9000 + 1);
    }
    compute_global_status(global, false);
    EXPECT_EQ(value_of(global), "5");
    EXPECT_EQ(worstAlertNbr, 1U);
    store_number(cols[COLID_tsAlertStatus].first_var + 500, 10);
    compute_global_status(global, false);
    EXPECT_EQ(value_of(global), "2");
}

// ---- numbers in strings ----

TEST(NumericText, SaturatesAtTheRangeOfItsColumn) {
    const std::tuple<const char*, uint32_t, int32_t> rows[] = {
        {"", 0, 0},
        {" \f\n\r\t\v17", 17, 17},
        {"+17abc", 17, 17},
        {"--5", 0, 0},
        {"- 5", 0, 0},
        {"-5", 0, -5},
        {"2147483647", 2147483647, INT32_MAX},
        {"-2147483649", 0, INT32_MIN},
        {"4294967295", 4294967295, INT32_MAX},
        {"4294967297", 4294967295, INT32_MAX},  // 1 if truncated to 32 bits
        {"-18446744073709551617", 0, INT32_MIN},
        {"9999999999999999999999999999999999", 4294967295, INT32_MAX},
        {"0x10", 0, 0},
    };
    for (const auto& [text, as_unsigned, as_signed] : rows) {
        EXPECT_EQ(number_from_text(text, SMI_BASETYPE_UNSIGNED32), as_unsigned) << text;
        for (const uint32_t type : {SMI_BASETYPE_INTEGER32, SMI_BASETYPE_ENUM})
            EXPECT_EQ(static_cast<int32_t>(number_from_text(text, type)), as_signed) << text;
        EXPECT_EQ(ParseInt(text), as_signed) << text;
    }
    EXPECT_EQ(ParseUnsigned("18446744073709551615"), UINT64_MAX);
    EXPECT_EQ(ParseUnsigned("18446744073709551616"), UINT64_MAX);
}

}  // namespace
