#include "tests/unit/core/trapWorld.h"

#include <sys/socket.h>

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapPdu.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "tests/unit/core/fakes/fakeTrapSession.h"

using std::string;

void (*on_refresh)(const string& object) = nullptr;

namespace {

// The daemon's refresh of a table, by the position of the table.
template <size_t number>
int note_refresh(int32_t var_index, bool background) {
    const refresh_operation& operation = refresh_operations[number];
    EXPECT_EQ(var_index, cols[operation.col_id].first_var);
    EXPECT_FALSE(background);
    transcript::add(string("refresh ") + operation.apiName);
    if (on_refresh != nullptr)
        on_refresh(operation.apiName);
    return 0;
}

template <size_t... numbers>
void watch_refreshes(std::index_sequence<numbers...> /*of tables*/) {
    const get_fn_type notes[] = {note_refresh<numbers>...};
    for (size_t number = 0; number < NUMBER_OF_REFRESHES; ++number) {
        const int head = cols[refresh_operations[number].col_id].head_var;
        for (column_record& column : cols) {
            if (column.is_table() && column.head_var == head)
                column.get_fn = notes[number];
        }
    }
}

void put_at(int32_t var_index, const string& text) {
    store_text(var_index, text);
}

void put_at(int32_t var_index, uint32_t number) {
    store_number(var_index, number);
}

// Row number, status and name, the first columns of every table.
void put_object(int first_column, int32_t row, const string& name, int32_t parent = 1) {
    put_at(var_at(first_column, row, parent), static_cast<uint32_t>(row));
    put_at(var_at(first_column + 1, row, parent), 1U);
    vars[var_at(first_column + 1, row, parent)].str = "Up";
    put_at(var_at(first_column + 2, row, parent), name);
}

void put_component_readings() {
    for (const int col_id : {COLID_tsCtlrFanCurrentRpm, COLID_tsCtlrFanWarnLower, COLID_tsCtlrFanWarnUpper})
        put_at(var_at(col_id, 2, 2), col_id == COLID_tsCtlrFanWarnLower ? 1000U : 5000U);
    put_at(var_at(COLID_tsCtlrFanCurrentRpm, 2, 2), 3000U);
    // A lookup stops at the first missing row.
    put_at(var_at(COLID_tsCtlrFanApiIndex, 1, 2), 5U);
    put_at(var_at(COLID_tsCtlrFanApiIndex, 2, 2), 8U);
    put_at(var_at(COLID_tsCtlrTempCurrent, 2, 2), 30U);
    put_at(var_at(COLID_tsCtlrTempWarnUpper, 2, 2), 60U);
    put_at(var_at(COLID_tsCtlrVoltageCurrent, 2, 2), string("12.0 V"));
    put_at(var_at(COLID_tsCtlrVoltageWarnLower, 2, 2), string("11.4"));
    put_at(var_at(COLID_tsCtlrVoltageWarnUpper, 2, 2), string("12.6"));
}

void fill_array() {
    put_at(cols[COLID_tsSerialNumber].first_var, 64702U);
    put_at(cols[COLID_subsystemStatusText].first_var, string("SNMP server subsystem is accessible"));
    for (const int32_t row : {1, 2})
        put_object(COLID_tsCtlrNbr, row, "Controller " + std::to_string(row));
    ctlrIndexFirst = 11;
    ctlrIndexSecond = 12;
    put_object(COLID_tsEnclNbr, 1, "Enclosure 5");
    put_object(COLID_tsEnclNbr, 2, "Enclosure 7");
    put_at(var_at(COLID_tsEnclApiIndex, 1), 5U);
    put_at(var_at(COLID_tsEnclApiIndex, 2), 7U);
    put_object(COLID_tsDiskNbr, 1, "05-01");
    put_object(COLID_tsDiskNbr, 2, "07-03");
    put_at(var_at(COLID_tsDiskApiIndex, 1), 40U);
    put_at(var_at(COLID_tsDiskApiIndex, 2), 43U);
    put_at(var_at(COLID_tsDiskConfigNbr, 2), 2U);
    for (const int head :
         {COLID_tsCtlrFanNbr, COLID_tsCtlrPowerNbr, COLID_tsCtlrVoltageNbr, COLID_tsCtlrTempNbr,
          COLID_tsEnclFanNbr, COLID_tsEnclPowerNbr, COLID_tsEnclIoModNbr, COLID_tsEnclTempNbr})
        put_object(head, 2, "part two", 2);
    put_object(COLID_tsEnclAlarmNbr, 1, "alarm", 2);
    put_component_readings();
    put_object(COLID_tsDiskFolderNbr, 1, "Folder");
    put_at(var_at(COLID_tsDiskFolderApiIndex, 1), 21U);
    put_at(var_at(COLID_tsDiskFolderFreeGib, 1), 77U);
    put_object(COLID_tsVolumeNbr, 1, "Volume");
    put_at(var_at(COLID_tsVolumeApiIndex, 1), 31U);
    put_object(COLID_tsServerNbr, 1, "Server");
    put_at(var_at(COLID_tsServerApiIndex, 1), 51U);
    put_object(COLID_tsCacheNbr, 2, "Cache");
    put_object(COLID_tsUPSNbr, 1, "UPS");
    put_at(var_at(COLID_tsUPSApiIndex, 1), 61U);
    put_object(COLID_tsTsNbr, 1, "Array");
    put_at(var_at(COLID_tsTsPortsBal, 1), 1U);
    put_at(var_at(COLID_tsTsMgmtIp, 1), string("192.0.2.1"));
    put_at(var_at(COLID_tsTsIPv6MgmtIp, 1), string("2001:db8::1"));
    put_at(var_at(COLID_tsTsIPv6MgmtPrefix, 1), 64U);
}

}  // namespace

TrapWorld::TrapWorld() {
    conf_trapsEnabled = true;
    conf_trapDest = "192.0.2.9";
    conf_trapPort = 1162;
    conf_trapCommun = "secret";
    conf_trapVer = 2;
    conf_controllerIdThis = 64702;
    on_refresh = nullptr;
    fill_array();
    watch_refreshes(std::make_index_sequence<NUMBER_OF_REFRESHES>());
    init_varbindings();
    verbose = false;
    transcript::take();
}

string TrapWorld::run(const string& command, bool recheck) {
    char scratch[kTrapCommandBuffer];
    EXPECT_EQ(ParseTrapCommand(command.c_str(), scratch, sizeof scratch), 0);
    const std::unique_ptr<TrapToSend> trap = std::move(trapsToSend.back());
    trapsToSend.pop_back();
    const int result = processSendTrapCmd(*trap, recheck);
    return std::to_string(result) + "\n" + transcript::take();
}

string TrapWorld::notification_of(const string& command) {
    const string course = run(command);
    const size_t begin = course.find("notify ");
    const size_t end = course.rfind("close session\n");
    return begin == string::npos || end == string::npos ? course : course.substr(begin, end - begin);
}

void TrapWorld::set_status(int32_t var_index, uint32_t status) {
    static constexpr const char* kTexts[] = {"", "Up", "Down", "Degraded"};
    store_number(var_index, status);
    vars[var_index].str = status < std::size(kTexts) ? kTexts[status] : "Other";
}

void TrapWorld::answer_status(const string& object, int index, const string& status) {
    const string element = object == "TsServer" ? "tsPhysicalServer" : object;
    fake_api_mgr::documents["Get " + object + " 64702." + std::to_string(index)] =
        fake_api_mgr::object_answer("<" + element + "><Status>" + status + "</Status></" + element + ">");
}
