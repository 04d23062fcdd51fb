#pragma once

#include <cstdint>
#include <string>

/**
 * Values of the process that are columns of the MIB: what the latest notification said, and the worst
 * alert. Main thread only. Each is copied into its variable by the column's get_fn.
 */

inline std::string trapEventId = "empty";
inline std::string trapMiscAlertText = "empty";
inline int32_t trapSIDeviceType = 0;
inline int32_t trapSIDeviceStatus = 0;
inline int32_t trapCompStatus = 0;
inline std::string trapCompName = "empty";
inline std::string trapCompLocation = "empty";
inline int32_t trapCompNum = 0;
inline std::string trapCompStatusText = "empty";
inline std::string trapActionText = "empty";
inline std::string trapAlertText = "empty";
inline std::string forceTrapCommand = "empty";
inline int32_t trapAlertState = 0;
inline uint32_t worstAlertNbr = 0;
