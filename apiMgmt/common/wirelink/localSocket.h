#pragma once

#include <sys/un.h>

#include <chrono>
#include <string>

#include "apiMgmt/common/wirelink/ownedDescriptor.h"
#include "apiMgmt/common/wirelink/wireLinkEndpoint.h"

/** What the parts of the channel share: time limits, addresses, errors. */

/** The end of one blocking step. It is set once for the whole step, so that a peer cannot stretch the step
    by giving or taking a byte now and then. Goes by the monotonic clock. */
class StepDeadline {
  public:
    explicit StepDeadline(long limit_s);

    /** 0 when the end is reached, else at least 1. */
    int RemainingMs() const;

    /** Waits for poll(2) events. Returns false if the end was reached first. */
    bool WaitFor(int descriptor, short events, const WireLinkWait& wait) const;

  private:
    std::chrono::steady_clock::time_point end_;
};

/** Throws when the path is empty or does not fit. */
sockaddr_un LocalAddress(const WireLinkEndpoint& endpoint);

/** A stream socket that child processes do not inherit; flags as of socket(2). Throws. */
OwnedDescriptor NewLocalSocket(const WireLinkEndpoint& endpoint, int flags = 0);

/** Errors name the path, since a process talks over several. */
[[noreturn]] void ThrowWireLinkError(const WireLinkEndpoint& endpoint, const std::string& what);
/** Adds the text of an errno value. */
[[noreturn]] void ThrowWireLinkError(const WireLinkEndpoint& endpoint, const std::string& what, int error);
[[noreturn]] void ThrowTimeLimit(const WireLinkEndpoint& endpoint, const char* step);
