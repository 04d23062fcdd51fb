#pragma once

#include <cstdio>
#include <memory>
#include <string>

/** Commands that the daemon runs through the shell. They inherit no descriptor but 0, 1 and 2. */

struct pipe_closer {
    void operator()(FILE* pipe) const { pclose(pipe); }
};

/** The output of a command; closing it waits for the command's end. Null when it could not be started. */
using command_output = std::unique_ptr<FILE, pipe_closer>;

command_output open_command(const std::string& command);

/** Hands a command to the shell and waits for its end, as system(3). Result of system. */
int run_command(const std::string& command);

/** A word for the shell: as it stands when it holds plain characters only, otherwise quoted, so that
    nothing in it means anything to the shell. */
std::string shell_word(const std::string& text);
