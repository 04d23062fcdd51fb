#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

const char* const kSupport = ": Contact Vorn Support Services.";

class Objects : public TrapWorld {
  protected:
    Objects() {
        answer_status("TsDisk", 40, "Up");
        answer_status("TsDisk", 43, "Up");
    }

    static string command(int trapNum, int32_t a, int32_t b = 0, int32_t c = 0, int32_t d = 0) {
        string text = "1 2 3 ";
        for (const int32_t number : {trapNum, a, b, c, d})
            text += std::to_string(number) + " ";
        return text + "@@@alert";
    }

    /** Returns whether the notification has these bindings in this order. */
    static void expect_shown(const string& notification, std::initializer_list<string> bindings) {
        size_t place = 0;
        for (const string& binding : bindings) {
            place = notification.find("  " + binding + "\n", place);
            ASSERT_NE(place, string::npos) << binding << " in\n" << notification;
        }
    }
};

TEST_F(Objects, ShowTheirRow) {
    const std::tuple<string, std::vector<string>, string> rows[] = {
        {command(202, 43),
         {"R.14.1.2.2 gauge 2", "R.14.1.3.2 gauge 1", "R.14.1.4.2 \"07-03\"", "R.15.1.4.2 \"Enclosure 7\"",
          "R.45.1.2.2 gauge 2"},
         "api Get TsDisk 64702.43\n"},
        {command(203, 12),
         {"R.13.1.2.2 gauge 2", "R.13.1.3.2 gauge 1", "R.13.1.4.2 \"Controller 2\""},
         "refresh tsController\n"},
        {command(205, 7),
         {"R.15.1.2.2 gauge 2", "R.15.1.4.2 \"Enclosure 7\"", "R.15.1.3.2 gauge 1", "R.15.1.5.2 \"\""},
         "refresh tsEnclosure\n"},
        {command(211, 2),
         {"R.9.0 \"1,2,3\"", "R.29.1.7.1 integer 1", "R.40.0 \"no action needed\""},
         "refresh Tessera\n"},
        {command(212, 61), {"R.30.1.2.1 gauge 1", "R.30.1.4.1 \"UPS\""}, "refresh tsUps\n"},
    };
    for (const auto& [each_command, bindings, api] : rows) {
        const string course = run(each_command);
        EXPECT_EQ(course.substr(0, 2 + api.size()), "0\n" + api);
        size_t place = 0;
        for (const string& binding : bindings) {
            place = course.find("  " + binding + "\n", place);
            ASSERT_NE(place, string::npos) << binding << " in\n" << course;
        }
    }
    EXPECT_TRUE(outstandingTraps.empty());
}

TEST_F(Objects, AreRefusedWithAReason) {
    const int32_t huge = 2147483647;
    const std::pair<string, const char*> rows[] = {
        {command(202, 0), "no disk index passed"},
        {command(202, 2001), "disk index too large: 2001"},
        {command(202, 41), "could not find disk index: trapArgA 41"},
        {command(203, 0), "no controller index passed"},
        {command(203, 2), "unrecognized controller index passed from lumivant-app: 2"},
        {command(205, huge), "could not find encl index: trapArgA 2147483647"},
        {command(210, 3), "cache index too large: 3"},
        {command(211, 0), "controller index passed is not 1 or 2: 0"},
        {command(212, 0), "no ups index passed"},
        {command(204, 3, 1, 1), "controller index too large: 3"},
        {command(204, 2, 2, 0), "component index is zero"},
        {command(213, 1, 0, 1), "no scsi initiator device type passed"},
        {command(213, 1, 1, 0), "no scsi initiator device status passed"},
        {command(213, 3, 1, 1), "disk does not exist: 3"},
        {command(213, -1, 1, 1), "disk does not exist: -1"},
    };
    // The value of a string above the maximum number is not the index of an object.
    for (const int col_id : {COLID_tsEnclApiIndex, COLID_tsVolumeApiIndex})
        vars[var_at(col_id, 3)].uint = static_cast<uint32_t>(-5);
    for (const auto& [each_command, log] : rows)
        EXPECT_EQ(run(each_command), "1\nlog 4 " + string(log) + "$\n") << each_command;
    EXPECT_EQ(run(command(212, 1)), "1\nrefresh tsUps\nlog 4 could not find ups index: trapArgA 1$\n");
    EXPECT_TRUE(outstandingTraps.empty());
}

TEST_F(Objects, ThatAreGoneAfterTheRefreshAreRefused) {
    const std::tuple<string, int32_t, const char*> rows[] = {
        {command(202, 40), var_at(COLID_tsDiskStatus, 1), "log 4 disk does not exist: 40$\n"},
        {command(203, 12), var_at(COLID_tsCtlrStatus, 2),
         "refresh tsController\nlog 4 ctlr does not exist: 12$\n"},
        {command(204, 2, 2, 2), var_at(COLID_tsCtlrStatus, 2),
         "refresh tsController\nlog 4 ctlr does not exist: 2$\n"},
        {command(205, 7), var_at(COLID_tsEnclStatus, 2),
         "refresh tsEnclosure\nlog 4 encl does not exist: 7$\n"},
        {command(208, 31), var_at(COLID_tsVolumeStatus, 1), "log 4 volume does not exist: 31$\n"},
        {command(210, 2), var_at(COLID_tsCacheStatus, 2),
         "refresh tsControllerCacheCard\nlog 4 cache does not exist: 2$\n"},
        {command(211, 2), var_at(COLID_tsTsPortsBal, 1),
         "refresh Tessera\nlog 4 tsTsPortsBal is not cachedt: 2$\n"},
        {command(212, 61), var_at(COLID_tsUPSStatus, 1), "refresh tsUps\nlog 4 ups does not exist: 61$\n"},
    };
    for (const auto& [each_command, status_var, each_course] : rows) {
        clear_cached(status_var);
        EXPECT_EQ(run(each_command), string("1\n") + each_course) << each_command;
    }
    // The object no longer exists in the array.
    const string course = run(command(202, 43));
    EXPECT_EQ(course[0], '0');
    answer_status("TsDisk", 43, "<x/>");
    EXPECT_EQ(run(command(202, 44)).substr(0, 2), "1\n");
}

TEST_F(Objects, UpsThatIsNotUpCannotBeCleared) {
    set_status(var_at(COLID_tsUPSStatus, 1), 2);
    expect_shown(
        run(command(212, 61, 0, 0, 5)),
        {"R.41.0 \"Alert Cleared - alert\"",
         "R.40.0 \"A UPS is Down: Check UPS status and connectivity or contact Vorn Support Services.\"",
         "R.43.0 integer 2"});
    set_status(var_at(COLID_tsUPSStatus, 1), 1);
    expect_shown(run(command(212, 61, 0, 0, 5)), {"R.41.0 \"Alert Cleared - alert\"", "R.43.0 integer 1"});
}

TEST_F(Objects, EnclosureOfADisk) {
    const int32_t name = var_at(COLID_tsDiskName, 1);
    const auto shown = [&](const string& disk_name) {
        vars[name].str = disk_name;
        return run(command(202, 40));
    };
    expect_shown(shown("5-"), {"R.15.1.4.1 \"Unknown\""});
    expect_shown(shown("lonely"), {"R.15.1.4.1 \"Unknown\""});
    expect_shown(shown("7-1-2"), {"R.15.1.4.2 \"Enclosure 7\""});
    expect_shown(shown(string(500, '7') + "-1"), {"R.15.1.4.1 \"Unknown\""});
    EXPECT_EQ(shown("-7-1"), "1\napi Get TsDisk 64702.40\nlog 4 could not find encl index: enclNum 0$\n");
    EXPECT_EQ(shown("9-1"), "1\napi Get TsDisk 64702.40\nlog 4 could not find encl index: enclNum 9$\n");
    answer_status("TsDisk", 40, "Down");
    EXPECT_EQ(shown("9-1")[0], '1');
    EXPECT_EQ(outstandingTraps.size(), 1U);  // it gets a record nevertheless
}

TEST_F(Objects, DeviceOfAScsiInitiator) {
    expect_shown(run(command(213, 2, 3, 4)),
                 {"R.33.0 integer 3", "R.34.0 integer 4", "R.14.1.2.2 gauge 2", "R.14.1.4.2 \"07-03\"",
                  "R.15.1.2.2 gauge 2", "R.15.1.4.2 \"Enclosure 7\""});
    vars[var_at(COLID_tsDiskName, 2)].str = "9-03";
    EXPECT_EQ(run(command(213, 2, 3, 4)),
              "1\nrefresh tsEnclosure\nlog 4 could not find encl index: enclNum 9$\n");
    // Row 1 of a table shows an unknown object; afterwards it shows its own object again.
    vars[var_at(COLID_tsDiskName, 2)].str = "lonely";
    const std::pair<string, std::vector<string>> unknown[] = {
        {command(213, 2, 3, 4), {"R.14.1.2.2 gauge 2", "R.14.1.4.2 \"lonely\""}},
        {command(213, 0, 3, 4), {"R.14.1.2.1 gauge 0", "R.14.1.4.1 \"Unknown\""}},
    };
    for (const auto& [device, disk] : unknown) {
        expect_shown(run(device), {disk[0], disk[1], "R.15.1.2.1 gauge 0", "R.15.1.4.1 \"Unknown\""});
        conf_trapsEnabled = false;
        EXPECT_EQ(run(device)[0], '1');
        conf_trapsEnabled = true;
        EXPECT_EQ(value_of(var_at(COLID_tsDiskNbr, 1)) + value_of(var_at(COLID_tsDiskName, 1)), "1\"05-01\"");
        EXPECT_EQ(value_of(var_at(COLID_tsEnclNbr, 1)) + value_of(var_at(COLID_tsEnclName, 1)),
                  "1\"Enclosure 5\"");
    }
    EXPECT_TRUE(outstandingTraps.empty());
}

// ---- components ----

TEST_F(Objects, ComponentsShowThemselves) {
    const std::tuple<int, int32_t, int32_t, const char*, const char*> rows[] = {
        {204, 1, 7, "tsControllerFanSensor", "part two"},  // the fan whose API index is 8
        {204, 2, 2, "tsControllerPowerSupply", "part two"},
        {206, 1, 2, "tsEnclosureCoolingFanSensor", "part two"},
        {206, 6, 1, "tsEnclosureAudibleAlarm", "alarm"},
    };
    for (const auto& [trapNum, component, argument, refresh, each_name] : rows) {
        const bool of_controller = trapNum == 204;
        const string parent = of_controller ? "tsController" : "tsEnclosure";
        const string name = "\"" + string(each_name) + "\"";
        const string course = run(command(trapNum, of_controller ? 2 : 7, component, argument));
        EXPECT_EQ(course.find("0\nrefresh " + parent + "\nrefresh " + refresh + "\nnotify"), 0) << course;
        expect_shown(course,
                     {of_controller ? "R.13.1.4.2 \"Controller 2\"" : "R.15.1.4.2 \"Enclosure 7\"",
                      "R.38.0 integer " + std::to_string(component), "R.36.0 " + name, "R.35.0 integer 1",
                      "R.37.0 " + name, "R.39.0 \"Up\"", "R.40.0 \"no action needed\""});
    }
    EXPECT_TRUE(outstandingTraps.empty());
}

TEST_F(Objects, ComponentsAreRefusedWithAReason) {
    const std::pair<string, const char*> rows[] = {
        {command(204, 2, 5, 1), "unknown H/W Comp Num passed fron lumivant-app: 5"},
        {command(204, 2, 1, 0), "could not find fan component index: trapArgC 0"},
        {command(204, 1, 1, 7), "could not find fan component index: trapArgC 7"},
        {command(204, 2, 2, 5),
         "power component index too large: trapArgC: 5, cols[COLID_tsCtlrPowerStatus].maxNumOfRows: 4"},
        {command(204, 2, 2, -1),
         "power component index too large: trapArgC: -1, cols[COLID_tsCtlrPowerStatus].maxNumOfRows: 4"},
        {command(204, 2, 2, 1), "power component does not exist: trapArgC: 1"},
        {command(206, 7, 6, 2),
         "encl audiblealarm component index too large: trapArgC: 2, "
         "cols[COLID_tsEnclAlarmStatus].maxNumOfRows: 1"},
        {command(206, 5, 6, 1), "audiblealarm component does not exist: trapArgC: 1"},
        {command(204, 2, 3, 8),
         "tempsensor component index too large: trapArgC: 8, cols[COLID_tsCtlrTempStatus].maxNumOfRows: 7"},
        {command(204, 2, 3, 7), "tempsensor component does not exist: trapArgC: 7"},
        {command(204, 2, 4, 10), "voltagesensor component does not exist: trapArgC: 10"},
        {command(206, 7, 1, 7),
         "encl fan component index too large: trapArgC: 7, cols[COLID_tsCtlrFanStatus].maxNumOfRows: 6"},
        {command(206, 7, 2, 4), "encl power component does not exist: trapArgC: 4"},
        {command(206, 7, 3, 23),
         "encl temp-sensor component index too large: trapArgC: 23, "
         "cols[COLID_tsEnclTempStatus].maxNumOfRows: 22"},
        {command(206, 7, 5, 1), "iomodule component does not exist: trapArgC: 1"},
    };
    for (const auto& [each_command, log] : rows) {
        const string course = run(each_command);
        EXPECT_EQ(course[0], '1');
        EXPECT_EQ(course.substr(course.find("log ")), "log 4 " + string(log) + "$\n") << each_command;
    }
    clear_cached(var_at(COLID_tsCtlrFanStatus, 2, 2));
    EXPECT_NE(
        run(command(204, 2, 1, 7)).find("log 4 fan component does not exist: translated_trapArgC: 2$\n"),
        string::npos);
    set_status(var_at(COLID_tsCtlrStatus, 2), 3);
    set_status(var_at(COLID_tsEnclStatus, 2), 2);
    EXPECT_EQ(run(command(204, 2, 2, 2)), "1\nrefresh tsController\nlog 4 ctlr is not up: 2$\n");
    EXPECT_EQ(run(command(206, 7, 1, 2)), "1\nrefresh tsEnclosure\nlog 4 encl is not up: 7$\n");
}

TEST_F(Objects, AdviceForComponents) {
    const string fan = "Controller Fan is ";
    const string temperature = "Controller Temperature ";
    const string voltage = "Controller Voltage is ";
    const string none = "no action needed";
    const std::tuple<string, int, uint32_t, int, string, string> rows[] = {
        {command(204, 2, 1, 7), COLID_tsCtlrFanStatus, 2, COLID_tsCtlrFanCurrentRpm, "500",
         fan + "Down: Schedule fan replacement."},
        {command(204, 2, 1, 7), COLID_tsCtlrFanStatus, 3, COLID_tsCtlrFanCurrentRpm, "1000",
         fan + "Degraded: Fan is too Slow:  Schedule fan replacement."},
        {command(204, 2, 1, 7), COLID_tsCtlrFanStatus, 3, COLID_tsCtlrFanCurrentRpm, "1001",
         fan + "Degraded:  Schedule fan replacement."},
        {command(204, 2, 1, 7), COLID_tsCtlrFanStatus, 3, COLID_tsCtlrFanCurrentRpm, "5000",
         fan + "Degraded: Fan is too Fast:  Schedule fan replacement."},
        {command(204, 2, 1, 7), COLID_tsCtlrFanStatus, 4, COLID_tsCtlrFanCurrentRpm, "500", none},
        {command(204, 2, 2, 2), COLID_tsCtlrPowerStatus, 0, COLID_tsCtlrFanCurrentRpm, "0",
         "Controller Power Supply is Down: Schedule power supply replacement."},
        {command(204, 2, 3, 2), COLID_tsCtlrTempStatus, 3, COLID_tsCtlrTempCurrent, "60",
         temperature + "is Degraded: Temp is too High" + kSupport},
        {command(204, 2, 4, 2), COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageCurrent, "12.6",
         voltage + "Degraded: Voltage is too High" + kSupport},
        {command(204, 2, 4, 2), COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageCurrent, "12",
         voltage + "Degraded" + kSupport},
        {command(204, 2, 4, 2), COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageCurrent, " 11.4V",
         voltage + "Degraded: Voltage is too Low" + kSupport},
        // If one threshold is not readable, the other is not used either.
        {command(204, 2, 4, 2), COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageWarnUpper, "",
         voltage + "Degraded" + kSupport},
        {command(206, 7, 6, 1), COLID_tsEnclAlarmStatus, 2, COLID_tsEnclFanSpeed, "",
         string("Enclosure Audible Alarm is Down") + kSupport},
    };
    for (const auto& [each_command, status_column, status, reading_column, each_reading, advice] : rows) {
        const int32_t component_row = status_column == COLID_tsEnclAlarmStatus ? 1 : 2;
        set_status(var_at(status_column, component_row, 2), status);
        variable_entry& reading = vars[var_at(reading_column, 2, 2)];
        reading.str = each_reading;
        reading.uint = static_cast<uint32_t>(atoi(each_reading.c_str()));
        outstandingTraps.clear();
        const string course = run(each_command);
        expect_shown(course, {"R.35.0 integer " + std::to_string(status), "R.40.0 \"" + advice + "\""});
        ASSERT_EQ(outstandingTraps.size(), 1U);
        const OutstandingTrap& record = *outstandingTraps.back();
        EXPECT_EQ(record.statusVar, var_at(status_column, component_row, 2));
        EXPECT_EQ(record.ownerVar, var_at(status_column + 1, component_row, 2));
        EXPECT_EQ(record.verifyVar, var_at(status_column - 1, component_row, 2));
    }
}

}  // namespace
