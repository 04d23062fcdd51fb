#pragma once

#include <cstdint>
#include <string>

/** Sends notifications, which are built from the store. Main thread only. */

/**
 * Sends one notification to the configured receiver, in the configured version if trapVer is 0. `msg` is the
 * string of a plain notification. Returns 0 if Net-SNMP has accepted it; otherwise logs the error, drops the
 * notification and returns 1.
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
