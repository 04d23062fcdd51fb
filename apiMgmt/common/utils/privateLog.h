#pragma once

/**
 * Opens a log for appending, with mode 0600, because debug lines contain the session key. Also changes the
 * mode of an existing regular file. Adds `more_flags` to the flags of open(2). Returns the descriptor,
 * close-on-exec and owned by the caller, or a negative number.
 */
int OpenPrivateLog(const char* path, int more_flags = 0);
