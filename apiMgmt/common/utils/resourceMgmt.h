#pragma once

#include <string>

/** The daemons that share this code. */
enum DaemonId {
    DAEMON_ID_API_SERVICE_MANAGER = 2,
    DAEMON_ID_SNMP_SUBAGENT = 4,
};

/** What a daemon knows of itself. Main thread only. */
class RESOURCEmgmt {
  public:
    /** Name of this daemon, and of its pid file; empty before DaemonizeSelf. */
    static std::string service_name;
    /** Process id after daemonising. */
    static int my_pid;
};

/**
 * Turns the process into a daemon of its own session with /dev/null as 0, 1 and 2 (unless it stays in
 * the foreground), working in the daemon's folder, with a pid file. A process that was started below a
 * folder whose path begins with /dep stays there, writes no pid file and leaves own_pid unset. To be
 * called once, before any thread is started; neither pointer may be null. 0 = good, 1 = failed.
 */
int DaemonizeSelf(int daemon_id, int* own_pid, int* parent_pid, bool stay_in_foreground);

/** Waits until no other copy of the daemon runs, for up to 5 seconds. False if one still does. */
bool WaitForOtherCopy(int daemon_id);

/** Writes the process id into the pid file of service_name and holds the file until the process ends. 0 =
 * good, 1 = failed, or another copy holds it. */
int WritePidFile();

/** Removes the pid file of the daemon, if there is one and no other copy holds it. Always 0. */
int ShutdownSelf(int daemon_id);
