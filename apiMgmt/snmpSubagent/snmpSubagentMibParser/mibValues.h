#pragma once

#include <cstdint>
#include <string>

/**
 * Values of the process that are columns of the MIB: what the latest notification said, and the worst
 * alert. Main thread only. Each is copied into its variable by the column's get_fn.
 */

extern std::string trapEventId;
extern std::string trapMiscAlertText;
extern int32_t trapSIDeviceType;
extern int32_t trapSIDeviceStatus;
extern int32_t trapCompStatus;
extern std::string trapCompName;
extern std::string trapCompLocation;
extern int32_t trapCompNum;
extern std::string trapCompStatusText;
extern std::string trapActionText;
extern std::string trapAlertText;
extern std::string forceTrapCommand;
extern int32_t trapAlertState;
extern uint32_t worstAlertNbr;
