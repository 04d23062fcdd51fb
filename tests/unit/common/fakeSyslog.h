#pragma once

#include <string>
#include <vector>

/** What was sent to syslog so far, "priority|text" each. Nothing reaches the real one. */
std::vector<std::string> SyslogLines();

/** Waits until something was sent. */
void WaitForSyslogLine();
