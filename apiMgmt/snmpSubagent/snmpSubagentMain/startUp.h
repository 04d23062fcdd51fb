#pragma once

/** The daemon's life: start-up, main_loop, shutdown. Result: the exit status of the process. */
int run_subagent(int argc, char* argv[]);
