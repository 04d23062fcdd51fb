#pragma once

/**
 * Watchdog and status messages for a supervisor that requests them (systemd's WatchdogSec=): datagrams to the
 * socket that NOTIFY_SOCKET names. Without that variable the functions do nothing. Main thread only.
 */

/**
 * Removes NOTIFY_SOCKET from the environment, so that no child process can use it, and opens the channel.
 * Call after daemonising, which closes descriptors.
 */
void open_supervisor_channel();

/** Reports that the main thread is alive, at most once every 2 seconds. */
void feed_watchdog();

/** Sets the status that the supervisor shows for the service. */
void set_supervisor_status(const char* status);
