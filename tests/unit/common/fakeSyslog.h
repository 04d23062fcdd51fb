#pragma once

#include <string>
#include <vector>

/** What was sent to syslog so far, "priority|text" each. Nothing reaches the real one. */
std::vector<std::string> SyslogLines();

/** "ident|options|facility" as last opened, with the ident's text as it is now, or "closed". */
std::string SyslogConnection();
