#pragma once

/** Functions to call from a debugger. They write raw lines to the subagent log. */

/** Logs the caller's registers, segments and flags. */
void context_backtrace();

/** Logs `length` bytes in hexadecimal and as characters, 16 per line, below a heading with the title. */
void snmp_hexDump(const void* bytes, int length, const char* title);
