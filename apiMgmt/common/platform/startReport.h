#pragma once

#include "apiMgmt/common/platform/process.h"

/**
 * How the child of StartDetachedProgram tells its parent that it could not become the program: through a
 * pipe that exec closes. What the child calls is async-signal-safe: between fork and exec another thread
 * may hold any lock.
 */

/** In the child: sends the step and errno, and ends. */
[[noreturn]] void ReportAndExit(int report_fd, StartFailure::Step step);

/** In the child: the handlers and the mask that a program expects to start with. */
void RestoreSignals();

/** In the parent: blocks until exec or the child's end closes the writing end, or a report comes. */
StartFailure ReadReport(int report_fd);
