#pragma once

#include <cstdint>
#include <string>

/** Sends notifications, which are built from the store. Main thread only. */

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
 * Net-SNMP has accepted it for trapDest. Otherwise logs the reason and returns 1; trapDest does not receive
 * the notification.
 */
int Send_a_Trap(int32_t trapVal, const std::string& msg, int trapVer, int trapType);

/**
 * Sends a notification of the catalogue, whose strings are in the trap variables. Returns the result of
 * Send_a_Trap.
 */
int send_notification(int32_t number);

/**
 * Composes the receiver's name for Net-SNMP from trapDest and trapPort: "udp:..." or "udp6:[...]" for an
 * address, the name itself for a host name without dots. Returns 0, or 1 after logging that the receiver is
 * invalid.
 */
int build_trap_peer_name(std::string* peername);
