#pragma once

#include <cstdint>
#include <string>

/**
 * Process-wide values that are scalars of the MIB: those of the latest notification, and the worst alert.
 * Each is copied into its variable by the column's get_fn. Main thread only.
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
