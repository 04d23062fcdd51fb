#pragma once

#include <cstdint>

/**
 * The phases of a SET that do something: what may be written is settled in RESERVE1 and once more before the
 * value is stored in COMMIT. What a committed SET changes in the array is queued. Main thread only.
 */

/** Checks the SET of `current_requestvb`: the variable's index, or -1 after the error was set. */
int32_t process_reserve1();

/** Stores the new value and runs the column's set_fn. Result 0 or non-zero. */
int process_commitset(int32_t var_index);

/** The set_fn of three scalars: the change of the array is queued; a newer value of the same variable
   replaces one that is still queued. They take the index of the written variable. Result 0. */
int sysContact_set(int32_t var_index);
int sysName_set(int32_t var_index);
int sysLocation_set(int32_t var_index);

/** Hands the oldest queued change to the array. A failure is logged, and the change is dropped. */
void perform_queued_set();
