#pragma once

#include <string>

/** The daemons that use this code. */
enum DaemonId {
    DAEMON_ID_API_SERVICE_MANAGER = 2,
    DAEMON_ID_SNMP_SUBAGENT = 4,
};

/** Identity of this daemon. Main thread only. */
class RESOURCEmgmt {
  public:
    /** Name of this daemon and of its pid file; empty before DaemonizeSelf. */
    static std::string service_name;
    /** Process ID after daemonising. */
    static int my_pid;
};

/**
 * Turns the process into a daemon with its own session, /dev/null as 0, 1 and 2 (unless it stays in the
 * foreground), the daemon's working directory and a pid file. A process that was started below a directory
 * whose path begins with /dep stays there, writes no pid file and leaves own_pid unset. Call once, before any
 * thread is started. The pointers must not be null. Returns 0 or 1.
 */
int DaemonizeSelf(int daemon_id, int* own_pid, int* parent_pid, bool stay_in_foreground);

/** Waits up to 5 seconds until no other copy of the daemon is running. Returns false if one still is. */
bool WaitForOtherCopy(int daemon_id);

/**
 * Writes the process ID to the pid file of service_name and locks it until the process exits. Returns 0, or 1
 * on failure or if another copy holds the lock.
 */
int WritePidFile();

/** Removes the daemon's pid file unless another copy holds it. Returns 0. */
int ShutdownSelf(int daemon_id);
