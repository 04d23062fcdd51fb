#pragma once

/** Starting and ending other programs, where systems differ: one file for each system. */

/** Which step of StartDetachedProgram failed; error_number is its errno. */
struct StartFailure {
    enum class Step { none, fork, exec } step = Step::none;
    int error_number = 0;
};

/**
 * Starts a program that the caller does not have to wait for: it leaves no zombie, inherits none of the
 * caller's descriptors and has /dev/null as 0, 1 and 2. argv and environment end with a null pointer.
 * Returns once the program runs or could not be started.
 */
StartFailure StartDetachedProgram(const char* path, char* const argv[], char* const environment[]);

/** Marks all descriptors but 0, 1 and 2 to be closed by exec. The agent library opens its sockets without
 * this mark. */
void KeepDescriptorsFromPrograms();

/** The greatest process number that this system gives out. */
int GreatestProcessNumber();

/** Redirection that makes the output of killall -v readable through a pipe on this system ("" or " 2>&1"). */
extern const char* const kKillallOutput;

/** Gives the calling thread a name that the system shows, cut to what the system keeps. */
void NameThisThread(const char* name);
