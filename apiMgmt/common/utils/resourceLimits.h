#pragma once

/** Writes all resource limits of the process to syslog, for troubleshooting. */
void LogResourceLimits();
