#pragma once

/**
 * Proof of life for a watcher: a 4-byte echo on a TCP port of the loopback address, served by a separate
 * thread that knows nothing of the daemon's state. Connections are served concurrently: one that is silent
 * for 5 seconds is closed, and of more than 64 the oldest.
 */

/** Port of the heartbeat monitor. Constant after start. */
extern int gPingListenPort;

/** Starts the thread. 0, or the error number of the thread's creation. */
int StartHeartbeatMonitor(int port);

/** The thread: argument is the address of the port. While the port is taken it tries again each second.
 * Returns only without a port. */
void* HeartbeatThreadRoutine(void* argument);
