#pragma once

#include <atomic>
#include <cstdint>
#include <string>

/** Process-wide state of the daemon, by owner. */

// ---- flags shared between threads; a change takes effect within an iteration ----

/** Set before main_loop, cleared only by catch_sigterm. Read by the main thread and the GetList task. */
inline std::atomic<bool> snmpSubagent_is_active{false};

/** Set if the management listener could not be set up. Ends main_loop. */
inline std::atomic<bool> abort_snmpSubagent{false};

// ---- main thread only ----

/** Time of the last memory check, in microseconds since the epoch. */
inline int64_t last_mem_check_time_us = 0;

// ---- constant after start-up ----

/** Shell command that sleeps for a second, then starts a copy of the daemon with the same arguments. */
inline std::string restart_command;
