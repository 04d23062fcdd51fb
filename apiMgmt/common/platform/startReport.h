#pragma once

#include "apiMgmt/common/platform/process.h"

/**
 * How the child of StartDetachedProgram tells its parent that it could not become the program: through a
 * pipe that exec closes. What the child calls is async-signal-safe: between fork and exec another thread
 * may hold any lock.
 */

/** In the child: sends the step and errno, and ends. */
[[noreturn]] void ReportAndExit(int report_fd, StartFailure::Step step);

/**
 * In the child: becomes the program, with /dev/null as 0, 1 and 2 and no other descriptor, and with default
 * signals. pipe_fd is where a failure is reported.
 */
[[noreturn]] void RunProgram(int pipe_fd, const char* path, char* const argv[], char* const environment[]);

/** In the parent: blocks until exec or the child's end closes the writing end, or a report comes. */
StartFailure ReadReport(int report_fd);
