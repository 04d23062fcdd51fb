#pragma once

/**
 * Flushes standard output, both stdio and std::cout, as the last step of a program that prints. Returns the
 * program's status, or lost_status if that is 0 and output was lost. Reports lost output on standard error
 * with the program's name.
 */
int StatusAfterOutput(const char* program, int status, int lost_status);
