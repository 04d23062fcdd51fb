#pragma once

#include <sys/types.h>

#include <optional>

/** The user of the process at the other end of a connected local socket, as of when it connected or began to
   listen; nothing if the system does not know. */
std::optional<uid_t> PeerUser(int descriptor);
