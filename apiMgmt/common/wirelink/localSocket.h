#pragma once

#include <sys/un.h>

#include <chrono>
#include <string>

#include "apiMgmt/common/wirelink/ownedDescriptor.h"
#include "apiMgmt/common/wirelink/wireLinkEndpoint.h"

/** Deadlines, addresses and errors of local sockets. */

/**
 * The deadline of one blocking step, on the monotonic clock. It is set once for the whole step, so a peer
 * cannot prolong the step by sending or receiving single bytes.
 */
class StepDeadline {
  public:
    explicit StepDeadline(long limit_s);

    /** Returns 0 if the deadline has passed, else at least 1. */
    int RemainingMs() const;

    /** Waits for poll(2) events. Returns false if the deadline passes first. */
    bool WaitFor(int descriptor, short events, const WireLinkWait& wait) const;

  private:
    std::chrono::steady_clock::time_point end_;
};

/** Throws if the path is empty or too long. */
sockaddr_un LocalAddress(const WireLinkEndpoint& endpoint);

/**
 * Creates a stream socket with close-on-exec; `flags` are added to the type for socket(2). Throws on failure.
 */
OwnedDescriptor NewLocalSocket(const WireLinkEndpoint& endpoint, int flags = 0);

/** Errors contain the path, because a process may use several. */
[[noreturn]] void ThrowWireLinkError(const WireLinkEndpoint& endpoint, const std::string& what);
/** Appends the message of an errno value. */
[[noreturn]] void ThrowWireLinkError(const WireLinkEndpoint& endpoint, const std::string& what, int error);
[[noreturn]] void ThrowTimeLimit(const WireLinkEndpoint& endpoint, const char* step);
