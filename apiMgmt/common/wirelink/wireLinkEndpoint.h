#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

/** Everything that goes wrong with a channel; the text begins with the path of its socket. */
class WireLinkError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * Waits for poll(2) events on a descriptor (-1: just lets the time pass) for at most this many milliseconds.
 * Returns whether one has occurred; may return false early. May throw, which ends the step and its exchange.
 */
using WireLinkWait = std::function<bool(int descriptor, short events, int timeout_ms)>;

/** Where a peer listens, and the limits of a conversation with it. Copies freely; connects nothing. */
class WireLinkEndpoint {
  public:
    /**
     * path: the local socket. timeout_s: limit in seconds for each blocking step (connect, send,
     * receive). size_bytes: memory for a body is taken as its bytes arrive, never more than this ahead
     * of them; the greatest body sent or accepted is 16 times this size.
     */
    static WireLinkEndpoint CreateLocalEndpoint(const std::string& path, long timeout_s,
                                                unsigned long size_bytes);

    /**
     * The trusted session key under which this process talks to the API manager: the first line of
     * /etc/wirelink.key, white space trimmed. Empty when there is no key that may be trusted: no
     * regular file, not owned by the effective user, readable or writable by group or others, or a
     * character outside A-Z a-z 0-9 . _ ~ + / = -.
     */
    static std::string GetAccessKey();

    const std::string& path() const { return path_; }
    long timeout_s() const { return timeout_s_; }
    unsigned long size_bytes() const { return size_bytes_; }
    unsigned long greatest_body() const {
        return size_bytes_ < kLongestMessage / 16 ? 16 * size_bytes_ : kLongestMessage;
    }

  private:
    WireLinkEndpoint(std::string path, long timeout_s, unsigned long size_bytes);

    static constexpr unsigned long kLongestMessage = INT32_MAX;  // what protobuf can serialise

    std::string path_;
    long timeout_s_;
    unsigned long size_bytes_;
};
