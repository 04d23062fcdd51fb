#include <optional>
#include <string>
#include <utility>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

namespace {

constexpr int32_t kDeviceStatusChange = 213;

// Lets the notification show an unknown object: row 1 with the number 0 and the name "Unknown". The two cells
// get their values back when it is destroyed, because they belong to another object, which is known by them.
class unknown_object {
  public:
    unknown_object(int number_column, int name_column)
        : number_(vars[cols[number_column].first_var].uint),
          name_(vars[cols[name_column].first_var].str),
          kept_number_(std::exchange(number_, 0)),
          kept_name_(std::exchange(name_, "Unknown")) {
        set_trap_row(number_column, 1);
        set_trap_row(name_column, 1);
    }
    ~unknown_object() {
        number_ = kept_number_;
        name_ = std::move(kept_name_);
    }
    unknown_object(const unknown_object&) = delete;
    unknown_object& operator=(const unknown_object&) = delete;

  private:
    uint32_t& number_;
    std::string& name_;
    uint32_t kept_number_;
    std::string kept_name_;
};

// What a notification shows for want of a disk or an enclosure; empty if there is one.
struct unknown_objects {
    std::optional<unknown_object> disk;
    std::optional<unknown_object> enclosure;

    void add_disk() { disk.emplace(COLID_tsDiskNbr, COLID_tsDiskName); }
    void add_enclosure() { enclosure.emplace(COLID_tsEnclNbr, COLID_tsEnclName); }
};

// Shows the disk in a row and its enclosure. 0, or 1 after a logged refusal.
int show_disk(int32_t row, unknown_objects& unknown) {
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
        unknown.add_enclosure();
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
    unknown_objects unknown;
    if (trap.trapArgA == 0) {
        unknown.add_disk();
        unknown.add_enclosure();
    } else if (show_disk(trap.trapArgA, unknown) != 0) {
        return 1;
    }
    return send_notification(kDeviceStatusChange);
}
