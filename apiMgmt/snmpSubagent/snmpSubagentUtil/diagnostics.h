#pragma once

/** Diagnostics for a debugger's session; they write raw lines to the subagent log. */

/** Logs the machine context of the caller: registers, segments and flags. */
void context_backtrace();

/** Logs `length` bytes in hexadecimal and as characters, 16 a line, below a heading with the title. */
void snmp_hexDump(const void* bytes, int length, const char* title);
