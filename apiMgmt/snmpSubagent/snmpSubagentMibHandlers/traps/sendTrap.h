#pragma once

#include <cstdint>
#include <string>

/** Notifications onto the wire, from the store. Main thread only. */

/**
 * Sends one notification to the configured receiver, in the configured version when trapVer is 0. `msg` is
 * the text of a plain notification. 0 when Net-SNMP has taken it; otherwise 1, the notification is gone, and
 * the log says why.
 */
int Send_a_Trap(int32_t trapVal, const std::string& msg, int trapVer, int trapType);

/** The same for a number of the catalogue: its text travels in the trap variables. */
int send_notification(int32_t number);

/** The name under which Net-SNMP reaches the configured receiver, from trapDest and trapPort: an address
   gives "udp:..." or "udp6:[...]", a host name without dots its name. 0, or 1 when it leads nowhere, which is
   logged. */
int build_trap_peer_name(std::string* peername);
