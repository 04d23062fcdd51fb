#pragma once

#include "apiMgmt/common/platform/process.h"

/**
 * Failure reports of StartDetachedProgram's child to its parent, through a pipe that exec closes. The
 * functions for the child are async-signal-safe, because another thread may hold any lock between fork and
 * exec.
 */

/** In the child: sends the step and errno, and exits. */
[[noreturn]] void ReportAndExit(int report_fd, StartFailure::Step step);

/**
 * In the child: executes the program, with /dev/null as 0, 1 and 2, no other descriptors and default signal
 * handling. A failure is reported to pipe_fd.
 */
[[noreturn]] void RunProgram(int pipe_fd, const char* path, char* const argv[], char* const environment[]);

/** In the parent: blocks until a report arrives or the pipe is closed by exec or the child's exit. */
StartFailure ReadReport(int report_fd);
