#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

namespace {

constexpr int32_t kDeviceStatusChange = 213;

// The number of a row that is not known reads as 0.
void show_unknown_row(int number_column) {
    set_trap_row(number_column, 1);
    vars[cols[number_column].first_var].uint = 0;
}

void show_no_disk() {
    show_unknown_row(COLID_tsDiskNbr);
    set_trap_row(COLID_tsDiskName, 1);
    vars[cols[COLID_tsDiskName].first_var].str = "Unknown";
}

void show_no_enclosure() {
    show_unknown_row(COLID_tsEnclNbr);
    show_unknown_enclosure();
}

// The disk in a row and its enclosure. 0, or 1 after a logged refusal.
int show_disk(int32_t row) {
    set_trap_row(COLID_tsDiskNbr, row);
    set_trap_row(COLID_tsDiskName, row);
    const column_record& names = cols[COLID_tsDiskName];
    const bool is_row = row > 0 && static_cast<uint32_t>(row) <= names.maxNumOfRows;
    if (!is_row || !is_cached(names.first_var + row - 1))
        return refuse_trap("disk does not exist: %d", {row});
    // A copy: the name is read before the refresh.
    const std::string name = vars[names.first_var + row - 1].str;
    refresh_table_of(COLID_tsEnclApiIndex);
    const disk_enclosure enclosure = find_enclosure_of_disk(name);
    if (!enclosure.is_named) {
        show_no_enclosure();
        return 0;
    }
    if (enclosure.row == 0)
        return 1;
    set_trap_row(COLID_tsEnclNbr, enclosure.row);
    set_trap_row(COLID_tsEnclName, enclosure.row);
    return 0;
}

}  // namespace

int send_device_trap(const TrapToSend& trap) {
    if (trap.trapArgB == 0)
        return refuse_trap("no scsi initiator device type passed");
    write_trap_number(trapSIDeviceType, COLID_trapSIDeviceType, trap.trapArgB);
    if (trap.trapArgC == 0)
        return refuse_trap("no scsi initiator device status passed");
    write_trap_number(trapSIDeviceStatus, COLID_trapSIDeviceStatus, trap.trapArgC);
    if (trap.trapArgA == 0) {
        show_no_disk();
        show_no_enclosure();
    } else if (show_disk(trap.trapArgA) != 0) {
        return 1;
    }
    return send_notification(kDeviceStatusChange);
}
