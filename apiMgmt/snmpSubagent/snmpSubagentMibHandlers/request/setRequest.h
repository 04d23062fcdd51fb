#pragma once

#include <cstdint>

/**
 * The two effective phases of a SET: RESERVE1 checks it; COMMIT checks it again, stores the value and queues
 * the change of the array, if any. Main thread only.
 */

/** Checks the SET of `current_requestvb`. Returns the variable's index, or -1 after setting the error. */
int32_t process_reserve1();

/** Stores the new value and runs the column's set_fn. Returns 0, or non-zero on failure. */
int process_commitset(int32_t var_index);

/**
 * The set_fn of three scalars: queue the change of the array. A newer value of the same variable replaces a
 * queued one. Return 0.
 */
int sysContact_set(int32_t var_index);
int sysName_set(int32_t var_index);
int sysLocation_set(int32_t var_index);

/** Sends the oldest queued change to the array. If that fails, logs the error and drops the change. */
void perform_queued_set();
