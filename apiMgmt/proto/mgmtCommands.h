#pragma once

#include <cstdint>

/** MGMTMsg::cmdType, the only value in use: cmdSpecific is a command of the receiver. */
inline constexpr uint32_t MGMTCommand_SPECIFIC = 0;

/** MGMTMsg::cmdSpecific: the daemon's commands. */
enum mgmt_specific : uint32_t {
    MGMT_SPECIFIC_SEND_TRAP = 1, /**< addlArg is a trap command */
    MGMT_SPECIFIC_TEMP_TEST = 2, /**< turns requests for reduced objects on or off */
    MGMT_SPECIFIC_DISPLAY_TRAPS = 3,
    MGMT_SPECIFIC_VERBOSE_ON = 4,
    MGMT_SPECIFIC_VERBOSE_OFF = 5,
};
