#pragma once

/**
 * Runs the main loop on the main thread until the daemon must exit. Returns 1, or 0 if the loop's own
 * condition ended it. The reason is logged.
 */
int main_loop();
