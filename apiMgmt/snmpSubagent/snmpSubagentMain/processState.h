#pragma once

#include <atomic>
#include <cstdint>
#include <string>

/** Process-wide state of the daemon's spine, by owner. */

// ---- flags between threads: single bytes, each with one meaning; a late reader acts one pass later ----

/** Set by main before main_loop, cleared by catch_sigterm alone. Main loop, GetList task. */
inline std::atomic<bool> snmpSubagent_is_active{false};

/** The listener for management messages could not be set up; ends main_loop. */
inline std::atomic<bool> abort_snmpSubagent{false};

// ---- main thread only ----

/** Microseconds since the epoch: the last memory check. */
inline int64_t last_mem_check_time_us = 0;

// ---- constant after start ----

/** Shell command that starts a fresh copy of the daemon with the same arguments, one second from now. */
inline std::string restart_command;
