#pragma once

/** The daemon's spine: runs on the main thread until a stop condition holds. The result says only that. */
int main_loop();
