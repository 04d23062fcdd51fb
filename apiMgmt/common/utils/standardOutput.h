#pragma once

/**
 * The last step of a program that prints: flushes standard output, stdio and std::cout alike. The program's
 * status; or, when something that was printed is lost and the status would be 0, lost_status. A loss is told
 * on standard error under the program's name, whatever the status.
 */
int StatusAfterOutput(const char* program, int status, int lost_status);
