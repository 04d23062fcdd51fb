#pragma once

#include <string>
#include <vector>

/** Returns everything sent to syslog so far, as "priority|message". Nothing reaches the real syslog. */
std::vector<std::string> SyslogLines();

/** Returns "ident|options|facility" of the last openlog, with the current string of ident, or "closed". */
std::string SyslogConnection();
