#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"

std::atomic<bool> snmpSubagent_is_active{false};
std::atomic<bool> abort_snmpSubagent{false};
int64_t last_mem_check_time_us = 0;
std::string restart_command;
