#pragma once

/** Writes all resource limits of the process to syslog, for a person who looks for a cause. */
void LogResourceLimits();
