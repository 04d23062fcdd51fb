#pragma once

/**
 * The heartbeat: a 4-byte echo on a TCP port of the loopback address, served by a separate thread that does
 * not use the daemon's state. Connections are served concurrently. One that is silent for 5 seconds is
 * closed; if there are more than 64, the oldest is closed.
 */

/** Port of the heartbeat monitor. Constant after start-up. */
extern int gPingListenPort;

/** Starts the thread. Returns 0, or the error number of pthread_create. */
int StartHeartbeatMonitor(int port);

/**
 * Thread function. `argument` points to the port number. If the port is in use, retries every second.
 * Returns only if the argument is null.
 */
void* HeartbeatThreadRoutine(void* argument);
