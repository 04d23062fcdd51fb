#pragma once

#include <cstdio>
#include <memory>
#include <string>

/** Commands that the daemon runs through the shell. They inherit only descriptors 0, 1 and 2. */

struct pipe_closer {
    void operator()(FILE* pipe) const { pclose(pipe); }
};

/** The output of a command. Closing it waits until the command exits. Null if it could not be started. */
using command_output = std::unique_ptr<FILE, pipe_closer>;

command_output open_command(const std::string& command);

/** Runs a command and waits until it exits. Returns the result of system(3). */
int run_command(const std::string& command);

/**
 * Returns the string as a single shell word: unchanged if it consists of harmless characters only, else
 * quoted.
 */
std::string shell_word(const std::string& text);
