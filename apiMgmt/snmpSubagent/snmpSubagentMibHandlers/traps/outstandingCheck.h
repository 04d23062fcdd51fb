#pragma once

#include <cstdint>

/** The re-check of the outstanding objects. Main thread only. */

/** The record that is looked at next; when the latest re-check was. */
extern uint32_t outstandingTrapCursor;
extern int64_t lastTrapCheckTime_us;

/** Reads at most one object of the memory anew, one a second and each once a minute, and notifies when its
   state has changed. */
void check_outstanding_traps();
