#pragma once

#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"
#include "tests/unit/core/fakes/mibWorld.h"

/**
 * An array whose notifications go to 192.0.2.9 as version 2c traps: controllers 11 and 12, enclosures 5 and
 * 7, disks 40 and 43 (the second in enclosure 7), one folder, volume, server, cache card and UPS, components
 * in row 2 of controller 2 and of enclosure 2. Everything is Up. A refresh of a table is a line
 * "refresh OBJECT" of the transcript, and only calls `on_refresh`.
 */
class TrapWorld : public MibWorld {
  protected:
    TrapWorld();

    /** Runs a trap command. Returns "RESULT\n" and the transcript, without debug lines. */
    static std::string run(const std::string& command, bool recheck = false);

    /** Returns only the lines of the notification. */
    static std::string notification_of(const std::string& command);

    /** Sets the number and the string of a status, as a refresh does. */
    static void set_status(int32_t var_index, uint32_t status);

    /** Sets the status of an object in responses of the API manager. */
    static void answer_status(const std::string& object, int index, const std::string& status);
};

/** Called by each refresh with the object's name; null: not called. */
extern void (*on_refresh)(const std::string& object);
