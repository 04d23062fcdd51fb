#pragma once

#include <cstdint>

/** The re-check of outstanding objects. Main thread only. */

/** The record to check next, and the time of the latest re-check in microseconds. */
extern uint32_t outstandingTrapCursor;
extern int64_t lastTrapCheckTime_us;

/**
 * Re-checks at most one outstanding object, at most one per second and each once a minute. Reports a change
 * of its status.
 */
void check_outstanding_traps();
