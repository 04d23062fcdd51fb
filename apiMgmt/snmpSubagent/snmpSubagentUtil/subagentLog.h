#pragma once

#include <atomic>
#include <string>

/**
 * The subagent log, which all units of the daemon write to. Levels are those of syslog. A raw line has no
 * header.
 */
namespace log_level {
inline constexpr int raw = 0;
inline constexpr int error = 3;
inline constexpr int warning = 4;
inline constexpr int debug = 7;
}  // namespace log_level

/** Debug lines are written only while this is set. Any thread. */
inline std::atomic<bool> verbose{false};

/**
 * Log lines begin with local time and offset as ISO 8601 and the severity, instead of month/day/year and
 * time. Any thread.
 */
inline std::atomic<bool> iso_log_lines{false};

/**
 * Writes one message on its own line, preceded by time, file, function and line number unless it is raw.
 * Truncates a message of 4000 characters or more to 3999, the last of them a newline. Passes it on to the
 * application log without its final newline. If the log file cannot be opened, the message is lost in both
 * logs. Any thread. Throws GENERALError if a lock of the logs fails. Use the macro below instead.
 */
void subagent_log(int level, const char* file, const char* operation, int line, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

/**
 * Logs a message, as in SUBAGENT_LOG(warning, "message\n"). The arguments of a debug message are not
 * evaluated while `verbose` is off.
 */
#define SUBAGENT_LOG(level, ...)                                                             \
    do {                                                                                     \
        if (log_level::level != log_level::debug || verbose.load(std::memory_order_relaxed)) \
            subagent_log(log_level::level, __FILE_NAME__, __func__, __LINE__, __VA_ARGS__);  \
    } while (false)

/** For debug mode: redirects standard output to the log file and writes log lines through it. */
void redirect_stdout_to_log();

/** Reopens the log file if standard output is redirected to it, in case it was moved or truncated. */
void reopen_redirected_log();

void close_redirected_log();

/** Truncates a log of more than 3000000 bytes to its first 2000000, so the oldest lines remain. */
void truncate_subagent_log();
