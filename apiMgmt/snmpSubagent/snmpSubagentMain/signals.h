#pragma once

/**
 * Signal handlers. A handler only sets flags and the main thread logs the signal later, so a handler never
 * needs the log's lock.
 */

void catch_sigterm(int signal_number);
void catch_sigint(int signal_number);
void catch_sigpipe(int signal_number);

void install_signal_handlers();

/** Logs the signals that were caught since the last call. Main thread only. */
void log_caught_signals();
