#pragma once

/**
 * Signal handlers. A handler only sets flags; the main thread writes the line at its next safe point, so a
 * handler never meets the log's lock.
 */

void catch_sigterm(int signal_number);
void catch_sigint(int signal_number);
void catch_sigpipe(int signal_number);

void install_signal_handlers();

/** Writes the lines of the signals that came since the last call. Main thread. */
void log_caught_signals();
