#pragma once

#include <string>

/**
 * Publishes the state of the service in a file of mode 0600, in the text format of Prometheus: links, age of
 * each table, notifications, unhealthy objects. `mgmtSend status` reads it, and node_exporter can. Main
 * thread only.
 */

/** Sets the path of the file. Without this call, the functions below do nothing. */
void open_status_file(const std::string& path);

/** Writes the file if the last version is 10 seconds old. A failure is logged once. */
void update_status_file();

/** Records in the file that the daemon is no longer running. */
void close_status_file();
