#pragma once

/**
 * Signs of life for a supervisor that asks for them (systemd's WatchdogSec=): datagrams to the socket that
 * NOTIFY_SOCKET names. Without that variable nothing happens. Main thread only.
 */

/** Takes NOTIFY_SOCKET out of the environment, so that no child process speaks for the daemon, and opens the
 * channel. Call after descriptors have been closed by going into the background. */
void open_supervisor_channel();

/** Says that the main thread serves, or waits as it should; at most once every 2 seconds. */
void feed_watchdog();

/** What the supervisor shows as the state of the service. */
void tell_supervisor(const char* status);
