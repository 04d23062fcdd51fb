#pragma once

/** Runs the daemon: start-up, main_loop, shutdown. Returns the exit status of the process. */
int run_subagent(int argc, char* argv[]);
