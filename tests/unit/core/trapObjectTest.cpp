#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

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
    const string disk = run(command(202, 43));
    EXPECT_EQ(disk.find("0\napi Get TsDisk 64702.43\nnotify"), 0) << disk;
    expect_shown(disk, {"R.14.1.2.2 gauge 2", "R.14.1.3.2 gauge 1", "R.14.1.4.2 \"07-03\"",
                        "R.15.1.4.2 \"Enclosure 7\"", "R.45.1.2.2 gauge 2"});
    expect_shown(run(command(211, 2)),
                 {"R.9.0 \"1,2,3\"", "R.29.1.7.1 integer 1", "R.40.0 \"no action needed\""});
    EXPECT_TRUE(outstandingTraps.empty());
    set_status(var_at(COLID_tsUPSStatus, 1), 2);
    expect_shown(
        run(command(212, 61, 0, 0, 5)),
        {"R.41.0 \"Alert Cleared - alert\"",
         "R.40.0 \"A UPS is Down: Check UPS status and connectivity or contact Vorn Support Services.\"",
         "R.43.0 integer 2"});  // it is not Up, so it is not cleared
}

TEST_F(Objects, AreRefusedWithAReason) {
    const int32_t none = -1;
    const std::tuple<string, const char*, int32_t> rows[] = {
        {command(202, 0), "no disk index passed", none},
        {command(202, 2001), "disk index too large: 2001", none},
        {command(202, 41), "could not find disk index: trapArgA 41", none},
        {command(203, 2), "unrecognized controller index passed from lumivant-app: 2", none},
        {command(208, -5), "could not find volume index: trapArgA -5", none},
        {command(210, 3), "cache index too large: 3", none},
        {command(211, 0), "controller index passed is not 1 or 2: 0", none},
        {command(213, 1, 0, 1), "no scsi initiator device type passed", none},
        {command(213, 1, 1, 0), "no scsi initiator device status passed", none},
        {command(213, 3, 1, 1), "disk does not exist: 3", none},
        {command(213, -1, 1, 1), "disk does not exist: -1", none},
        {command(204, 2, 2, 0), "component index is zero", none},
        {command(204, 2, 5, 1), "unknown H/W Comp Num passed fron lumivant-app: 5", none},
        {command(204, 2, 1, 0), "could not find fan component index: trapArgC 0", none},
        {command(204, 1, 1, 7), "could not find fan component index: trapArgC 7", none},
        {command(204, 2, 2, 5),
         "power component index too large: trapArgC: 5, cols[COLID_tsCtlrPowerStatus].maxNumOfRows: 4", none},
        {command(204, 2, 2, -1),
         "power component index too large: trapArgC: -1, cols[COLID_tsCtlrPowerStatus].maxNumOfRows: 4",
         none},
        {command(206, 5, 6, 1), "audiblealarm component does not exist: trapArgC: 1", none},
        // These are gone after the refresh.
        {command(204, 2, 1, 7), "fan component does not exist: translated_trapArgC: 2",
         var_at(COLID_tsCtlrFanStatus, 2, 2)},
        {command(202, 40), "disk does not exist: 40", var_at(COLID_tsDiskStatus, 1)},
        {command(204, 2, 2, 2), "ctlr does not exist: 2", var_at(COLID_tsCtlrStatus, 2)},
        {command(211, 2), "tsTsPortsBal is not cachedt: 2", var_at(COLID_tsTsPortsBal, 1)},
    };
    vars[var_at(COLID_tsVolumeApiIndex, 2)].uint = static_cast<uint32_t>(-5);
    for (const auto& [each_command, log, gone] : rows) {
        if (gone != none)
            clear_cached(gone);
        const string course = run(each_command);
        EXPECT_EQ(course[0], '1');
        EXPECT_EQ(course.substr(course.find("log ")), "log 4 " + string(log) + "$\n") << each_command;
    }
    EXPECT_EQ(run(command(212, 1)), "1\nrefresh tsUps\nlog 4 could not find ups index: trapArgA 1$\n");
    set_status(var_at(COLID_tsEnclStatus, 2), 2);
    EXPECT_EQ(run(command(206, 7, 1, 2)), "1\nrefresh tsEnclosure\nlog 4 encl is not up: 7$\n");
    EXPECT_TRUE(outstandingTraps.empty());
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

TEST_F(Objects, ComponentsShowThemselvesWithAdvice) {
    const string fan = "Controller Fan is ";
    const string replacement = "Schedule fan replacement.";
    const string support = ": Contact Vorn Support Services.";
    const string voltage = "Controller Voltage is ";
    const string none = "no action needed";
    const std::tuple<int, int, uint32_t, int, string, string> rows[] = {
        {1, COLID_tsCtlrFanStatus, 1, COLID_tsCtlrFanCurrentRpm, "500", none},
        {1, COLID_tsCtlrFanStatus, 2, COLID_tsCtlrFanCurrentRpm, "500", fan + "Down: " + replacement},
        {1, COLID_tsCtlrFanStatus, 3, COLID_tsCtlrFanCurrentRpm, "1000",
         fan + "Degraded: Fan is too Slow:  " + replacement},
        {1, COLID_tsCtlrFanStatus, 3, COLID_tsCtlrFanCurrentRpm, "1001", fan + "Degraded:  " + replacement},
        {1, COLID_tsCtlrFanStatus, 3, COLID_tsCtlrFanCurrentRpm, "5000",
         fan + "Degraded: Fan is too Fast:  " + replacement},
        {1, COLID_tsCtlrFanStatus, 4, COLID_tsCtlrFanCurrentRpm, "500", none},
        {2, COLID_tsCtlrPowerStatus, 0, COLID_tsCtlrFanCurrentRpm, "0",
         "Controller Power Supply is Down: Schedule power supply replacement."},
        {3, COLID_tsCtlrTempStatus, 3, COLID_tsCtlrTempCurrent, "60",
         "Controller Temperature is Degraded: Temp is too High" + support},
        {4, COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageCurrent, "12.6",
         voltage + "Degraded: Voltage is too High" + support},
        {4, COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageCurrent, "12", voltage + "Degraded" + support},
        {4, COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageCurrent, " 11.4V",
         voltage + "Degraded: Voltage is too Low" + support},
        // If one threshold is not readable, the other is not used either.
        {4, COLID_tsCtlrVoltageStatus, 3, COLID_tsCtlrVoltageWarnUpper, "", voltage + "Degraded" + support},
        {6, COLID_tsEnclAlarmStatus, 2, COLID_tsEnclFanSpeed, "",
         "Enclosure Audible Alarm is Down" + support},
    };
    for (const auto& [component, status_column, status, reading_column, each_reading, advice] : rows) {
        const bool is_alarm = component == 6;
        const int32_t component_row = is_alarm ? 1 : 2;
        set_status(var_at(status_column, component_row, 2), status);
        variable_entry& reading = vars[var_at(reading_column, 2, 2)];
        reading.str = each_reading;
        reading.uint = static_cast<uint32_t>(atoi(each_reading.c_str()));
        outstandingTraps.clear();
        const string course = run(is_alarm         ? command(206, 7, component, 1)
                                  : component == 1 ? command(204, 2, component, 7)  // API index 8
                                                   : command(204, 2, component, 2));
        const string name = is_alarm ? "\"alarm\"" : "\"part two\"";
        const char* const refreshes = is_alarm ? "0\nrefresh tsEnclosure\nrefresh tsEnclosureAudibleAlarm\n"
                                               : "0\nrefresh tsController\nrefresh tsController";
        EXPECT_EQ(course.find(refreshes), 0) << course;
        expect_shown(course, {is_alarm ? "R.15.1.4.2 \"Enclosure 7\"" : "R.13.1.4.2 \"Controller 2\"",
                              "R.38.0 integer " + std::to_string(component), "R.36.0 " + name,
                              "R.35.0 integer " + std::to_string(status), "R.37.0 " + name,
                              "R.39.0 \"" + vars[var_at(status_column, component_row, 2)].str + "\"",
                              "R.40.0 \"" + advice + "\""});
        if (status == 1) {
            EXPECT_TRUE(outstandingTraps.empty());
            continue;
        }
        ASSERT_EQ(outstandingTraps.size(), 1U);
        const OutstandingTrap& record = *outstandingTraps.back();
        EXPECT_EQ(record.statusVar, var_at(status_column, component_row, 2));
        EXPECT_EQ(record.ownerVar, var_at(status_column + 1, component_row, 2));
        EXPECT_EQ(record.verifyVar, var_at(status_column - 1, component_row, 2));
    }
}

}  // namespace
