#pragma once

#include <cstdint>
#include <string>

/** Notifications onto the wire, from the store. Main thread only. */

/** Value of trapDest with which only the master agent sends notifications. */
inline constexpr const char* kNoTrapDest = "**none**";

/** Notifications since the start, by the result of Send_a_Trap. */
struct notification_counts {
    uint64_t sent;
    uint64_t failed;
};
extern notification_counts notification_count;

/**
 * Sends one notification to trapDest, in the configured version if trapVer is 0, and through the master agent
 * to the receivers in its own configuration. `msg` is the message of a plain notification. Returns 0 if
 * Net-SNMP has accepted it for trapDest. Otherwise returns 1; the notification is lost there, and the log
 * says why.
 */
int Send_a_Trap(int32_t trapVal, const std::string& msg, int trapVer, int trapType);

/** The same for a number of the catalogue: its text travels in the trap variables. */
int send_notification(int32_t number);

/** The name under which Net-SNMP reaches the configured receiver, from trapDest and trapPort: an address
   gives "udp:..." or "udp6:[...]", a host name without dots its name. 0, or 1 when it leads nowhere, which is
   logged. */
int build_trap_peer_name(std::string* peername);
