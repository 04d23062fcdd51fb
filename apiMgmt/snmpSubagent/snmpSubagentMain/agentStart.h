#pragma once

#include <initializer_list>

/**
 * Starts snmpd, fills the store, attaches to the master agent and tests the whole chain with a real GET.
 * Returns 0 or 1. Main thread only.
 */
int start_snmp_agent_and_subagent();

/** A start-up step of the common shape: logs `progress`, runs, and logs `failure` if it failed. */
struct start_step {
    const char* progress;
    int (*run)(); /**< 0: success */
    const char* failure;
};

/** Runs the steps in order and stops at the first failure. Returns whether all succeeded. */
bool run_start_steps(std::initializer_list<start_step> steps);
