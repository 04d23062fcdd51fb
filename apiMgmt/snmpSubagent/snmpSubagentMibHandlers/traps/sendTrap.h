#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

/** Notifications onto the wire, from the store. Main thread only. */

/** Kinds of notification, as version 1 counts them. */
inline constexpr int kTrapTypeColdStart = 0;
inline constexpr int kTrapTypeEnterprise = 6;

inline constexpr int kMaxTrapColumns = 16;

/** The columns that each trap number carries, in their order on the wire; NUMBER_OF_COLUMNS ends a list that
   is not full. */
extern std::map<int32_t, std::array<int, kMaxTrapColumns>> varbindings;

/** Fills varbindings from the catalogue; once, at the start. */
void init_varbindings();

/**
 * Sends one notification to the configured receiver, in the configured version when trapVer is 0. `msg` is
 * the text of a plain notification. 0 when Net-SNMP has taken it; otherwise 1, the notification is gone, and
 * the log says why.
 */
int Send_a_Trap(int32_t trapVal, const std::string& msg, int trapVer, int trapType);

/** The same for a number of the catalogue: its text travels in the trap variables. */
int send_notification(int32_t number);
