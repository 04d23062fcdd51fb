#pragma once

#include <sys/types.h>

#include <optional>

/** The user as whom the process at the other end of a connected local socket runs, or ran when it connected or
    began to listen; nothing when the system does not tell. */
std::optional<uid_t> PeerUser(int descriptor);
