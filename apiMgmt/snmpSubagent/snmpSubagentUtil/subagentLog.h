#pragma once

#include <atomic>
#include <string>

/**
 * The subagent log: one formatted call that every unit of the daemon writes through. Levels are the
 * numbers of syslog; a raw line has no header.
 */
namespace log_level {
inline constexpr int raw = 0;
inline constexpr int error = 3;
inline constexpr int warning = 4;
inline constexpr int debug = 7;
}  // namespace log_level

/** Debug logging: debug lines are written only while this is set. Any thread. */
extern std::atomic<bool> verbose;

/**
 * Writes one message, with time, file, operation and line in front of it unless it is raw, on a line of
 * its own. One of 4000 characters or more is cut to 3999, the last of them a newline. Passes it on to the
 * application log without its final newline. A log file that cannot be opened loses the message in both and
 * nothing else. Any thread; throws GENERALError when a lock of the logs fails. Callers use the macro below.
 */
void subagent_log(int level, const char* file, const char* operation, int line, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

/** A log line from here, as in SUBAGENT_LOG(warning, "text\n"). The arguments of a debug line are not
   evaluated while `verbose` is off. */
#define SUBAGENT_LOG(level, ...)                                                             \
    do {                                                                                     \
        if (log_level::level != log_level::debug || verbose.load(std::memory_order_relaxed)) \
            subagent_log(log_level::level, __FILE_NAME__, __func__, __LINE__, __VA_ARGS__);  \
    } while (false)

/** Debug mode: standard output goes to the log file from now on, and log lines go through it. */
void redirect_stdout_to_log();

/** Takes the log file up anew, so that one that was moved or cut is followed. Nothing without redirection. */
void reopen_redirected_log();

void close_redirected_log();

/** Cuts a log of 3000001 bytes or more to its first 2000000: the oldest lines stay. */
void truncate_subagent_log();
