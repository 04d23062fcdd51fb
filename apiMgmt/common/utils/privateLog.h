#pragma once

/**
 * Opens a log for appending, with close-on-exec, and creates it with mode 0600; a regular file that was
 * there before and is open to others is closed to them. Debug lines carry the session key.
 * more_flags: flags of open() besides. The descriptor, the caller's to close, or below 0.
 */
int OpenPrivateLog(const char* path, int more_flags = 0);
