#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

/** A failure of a link. The message begins with the path of its socket. */
class WireLinkError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * Waits up to `timeout_ms` for poll(2) events on a descriptor (-1: none). Returns whether one has occurred;
 * may return false early. If it throws, the step and its exchange fail.
 */
using WireLinkWait = std::function<bool(int descriptor, short events, int timeout_ms)>;

/** Address of a peer and limits of the communication with it. Copyable; does not connect. */
class WireLinkEndpoint {
  public:
    /**
     * `path`: the local socket. `timeout_s`: limit for each blocking step (connect, send, receive).
     * `size_bytes`: maximum memory allocated ahead of the bytes of a body that have arrived; the maximum body
     * is 16 times as large.
     */
    static WireLinkEndpoint CreateLocalEndpoint(const std::string& path, long timeout_s,
                                                unsigned long size_bytes);

    /**
     * Returns the session key with which this process authenticates to the API manager: the first line of
     * /etc/wirelink.key, without surrounding whitespace. Empty if the file is not a regular file, is not
     * owned by the effective user, is readable or writable by group or others, or if the key has a character
     * other than A-Z a-z 0-9 . _ ~ + / = -.
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

    static constexpr unsigned long kLongestMessage = INT32_MAX;  // limit of protobuf

    std::string path_;
    long timeout_s_;
    unsigned long size_bytes_;
};
