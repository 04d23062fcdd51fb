#pragma once

/** Process operations that differ between systems; one source file per system. */

/** The step of StartDetachedProgram that failed, and its errno. */
struct StartFailure {
    enum class Step { none, fork, exec } step = Step::none;
    int error_number = 0;
};

/**
 * Starts a program that the caller need not wait for: it leaves no zombie, inherits no descriptors and has
 * /dev/null as 0, 1 and 2. argv and environment end with a null pointer. Returns when the program runs or has
 * failed to start.
 */
StartFailure StartDetachedProgram(const char* path, char* const argv[], char* const environment[]);

/**
 * Marks all descriptors except 0, 1 and 2 as close-on-exec. The agent library opens its sockets without that
 * mark.
 */
void KeepDescriptorsFromPrograms();

/** Returns the system's maximum process ID. */
int MaximumProcessId();

/** Shell redirection that makes the output of killall -v readable through a pipe ("" or " 2>&1"). */
extern const char* const kKillallOutput;

/** Sets the calling thread's name, truncated to the system's limit. */
void NameThisThread(const char* name);
