#pragma once

#include <sys/types.h>

#include <optional>

/**
 * Returns the user of the process at the other end of a connected local socket, at the time when that process
 * connected or started to listen; nothing if the system does not know.
 */
std::optional<uid_t> PeerUser(int descriptor);
