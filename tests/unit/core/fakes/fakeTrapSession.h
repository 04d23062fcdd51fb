#pragma once

#include <map>
#include <string>

/**
 * The receiver of notifications, without a network. A notification that is sent becomes lines of the
 * transcript: "notify VERSION KIND PEER COMMUNITY", with the header fields of version 1 behind it, then one
 * line "  NAME TYPE VALUE" for each variable. Main thread only.
 */
namespace fake_traps {

/** Address families of hosts: AF_INET, AF_INET6, or another; a host that is missing is not found. Numbers of
    `numeric` are found in lookups of addresses as well. */
extern std::map<std::string, int> numeric;
extern std::map<std::string, int> names;

/** What fails. */
enum class failure { none, transport, session, send };
extern failure failing;

/** Whether notifications go to the master agent, too: "notify master agent". False when a test begins. */
extern bool has_master_agent;

}  // namespace fake_traps
