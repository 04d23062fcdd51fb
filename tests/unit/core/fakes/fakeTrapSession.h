#pragma once

#include <map>
#include <string>

/**
 * A receiver of notifications without a network. A notification becomes lines of the transcript: "notify
 * VERSION KIND PEER COMMUNITY", followed by the header fields of version 1, then one line
 * "  NAME TYPE VALUE" for each variable. Main thread only.
 */
namespace fake_traps {

/** Address families of hosts: AF_INET, AF_INET6, or another; a host that is missing is not found. Numbers of
    `numeric` are found in lookups of addresses as well. */
extern std::map<std::string, int> numeric;
extern std::map<std::string, int> names;

/** The step that fails. */
enum class failure { none, transport, session, send };
extern failure failing;

/** Whether notifications also go to the master agent ("notify master agent"). Initially false. */
extern bool has_master_agent;

}  // namespace fake_traps
