#pragma once

#include <cstddef>
#include <cstdint>

/**
 * The daemon's calls of Net-SNMP's agent library, apart from those for registrations and requests. Tests link
 * a fake in its place. Main thread only.
 */

/** The name of this process in the agent library. */
inline constexpr const char* kAgentApplication = "lumivantSubagent";

/**
 * Maximum size, in octets, of a PDU that the master agent accepts from the daemon. It drops a larger one: the
 * manager gets no response, and after agentXTimeout the master agent disconnects the daemon.
 */
inline constexpr size_t kMaximumResponse = 65536;

/** Makes the library log to standard error. */
void agent_log_to_stderr();

/** Makes this process a subagent instead of a master agent. */
void agent_become_subagent();

/** Returns 0 if the agent library could be initialised. */
int agent_init();

/** Reads the library's configuration and attaches to the master agent if it is running. */
void agent_init_snmp();

/** Returns whether this process is attached to the master agent. */
bool agent_has_main_session();

/** Returns non-zero if the master agent responded to the ping. Requires a main session. */
int agent_send_ping();

/** Handles pending input without waiting. Returns a positive number if there was any. */
int agent_check();

/**
 * Waits up to `timeout_us` for input of the library or for poll(2) events on another descriptor (-1: none).
 * Returns whether those events have occurred. Returns early on a signal.
 */
bool agent_wait(int64_t timeout_us, int descriptor, short events);

/** Shuts the library down. */
void agent_shutdown();

/** Writes the OID of a column, without instance, in the library's format. */
void agent_oid_text(int col_id, char* text, unsigned long size);
