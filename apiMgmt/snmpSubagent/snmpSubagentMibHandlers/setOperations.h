#pragma once

#include <cstdint>

/**
 * What a committed SET does. The set_fn of the scalars in columns.def take the index of the written variable; 0 on
 * success. Main thread only.
 */

/** The change of the array is queued; a newer value of the same variable replaces one that is still queued. Result 0. */
int sysContact_set(int32_t var_index);
int sysName_set(int32_t var_index);
int sysLocation_set(int32_t var_index);

/** Executes the command in the written variable. */
int forceTrapCommand_set(int32_t var_index);

/** Hands the oldest queued change to the array. A failure is logged, and the change is dropped. */
void perform_queued_set();
