#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"

std::string trapEventId = "empty";
std::string trapMiscAlertText = "empty";
int32_t trapSIDeviceType = 0;
int32_t trapSIDeviceStatus = 0;
int32_t trapCompStatus = 0;
std::string trapCompName = "empty";
std::string trapCompLocation = "empty";
int32_t trapCompNum = 0;
std::string trapCompStatusText = "empty";
std::string trapActionText = "empty";
std::string trapAlertText = "empty";
std::string forceTrapCommand = "empty";
int32_t trapAlertState = 0;
uint32_t worstAlertNbr = 0;
