#pragma once

#include <functional>
#include <string>

/**
 * Fakes of the agent library, the shell and child processes. Calls are lines of the transcript:
 * "agent ...", "open COMMAND", "run COMMAND", "start PROGRAM ARGUMENTS". Main thread only.
 */
namespace fake_agent {

extern int init_result;
extern bool has_main_session;
extern int ping_result; /**< non-zero: the master agent responds */

/** Called by agent_check, which returns its result; null: no input. */
extern std::function<int()> on_check;

/** Returns the output of a command; no value if it cannot be started. Null: empty output. */
extern std::function<const char*(const std::string& command)> output_of;

/** The result of StartDetachedProgram: the failed step and its errno. */
extern std::function<void()> on_start;
extern int fork_error;
extern int exec_error;

}  // namespace fake_agent
