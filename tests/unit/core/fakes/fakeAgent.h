#pragma once

#include <functional>
#include <string>

/**
 * The agent library, the shell and the starting of programs. Calls are lines of the transcript:
 * "agent ...", "open COMMAND", "run COMMAND", "start PROGRAM ARGUMENTS". Main thread only.
 */
namespace fake_agent {

extern int init_result;
extern bool has_main_session;
extern int ping_result; /**< non-zero: the master agent answers */

/** What one agent_check does and returns; null: nothing came. */
extern std::function<int()> on_check;

/** The output of a command; no value: it cannot be started. Null: empty output. */
extern std::function<const char*(const std::string& command)> output_of;

/** What StartDetachedProgram does; its step and error number. */
extern std::function<void()> on_start;
extern int fork_error;
extern int exec_error;

}  // namespace fake_agent
