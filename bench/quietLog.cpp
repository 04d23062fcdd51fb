#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// A log that writes nothing, in place of the daemon's file.

std::atomic<bool> verbose{false};

void subagent_log(int, const char*, const char*, int, const char*, ...) {}
void redirect_stdout_to_log() {}
void reopen_redirected_log() {}
void close_redirected_log() {}
void truncate_subagent_log() {}
