#pragma once

#include <initializer_list>

/**
 * The ordered procedure that brings up snmpd, fills the store, attaches to the master agent and proves by a
 * real GET that all of it works. 0 or 1. Main thread only.
 */
int start_snmp_agent_and_subagent();

/** A step of the start that has the common shape: a debug line, the step, and a line when it failed. */
struct start_step {
    const char* progress;
    int (*run)(); /**< 0 is success */
    const char* failure;
};

/** Runs the steps in order, up to the first that fails. */
bool run_start_steps(std::initializer_list<start_step> steps);
