#pragma once

#include <cstddef>
#include <cstdint>

/**
 * The calls into Net-SNMP's agent library that the daemon's spine makes, in one unit; tests link another
 * in its place. Main thread only.
 */

/** The name under which the agent library knows this process. */
inline constexpr const char* kAgentApplication = "lumivantSubagent";

/** The greatest PDU from the daemon that the master agent takes, in octets. A greater one it drops: the
   manager gets no answer, and when agentXTimeout is over the master gives the daemon up. */
inline constexpr size_t kGreatestAnswer = 65536;

/** Log lines of the library go to standard error. */
void agent_log_to_stderr();

/** Declares this process a subagent, not a master. */
void agent_become_subagent();

/** 0 when the agent library came up. */
int agent_init();

/** Reads the library's own configuration and attaches to the master agent, when it is there. */
void agent_init_snmp();

/** Whether there is a link to the master agent. */
bool agent_has_main_session();

/** Non-zero when the master agent answered the ping. Needs a main session. */
int agent_send_ping();

/** Handles what has arrived, without waiting. Above 0 when something was handled. */
int agent_check();

/** Waits until something has arrived or poll(2) events occur on another descriptor (-1: none), at most this
   long. Returns whether the events have occurred; returns early on a signal. */
bool agent_wait(int64_t timeout_us, int descriptor, short events);

/** Ends the library. */
void agent_shutdown();

/** The OID of a column without instance, as the library writes it. */
void agent_oid_text(int col_id, char* text, unsigned long size);
