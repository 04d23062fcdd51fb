#pragma once

#include <netinet/in.h>
#include <sys/time.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/**
 * An IPv4 TCP socket, which the destructor closes. Not thread-safe. Nothing throws.
 *
 * A message consists of a code (2 bytes), 2 reserved bytes, the length of the body (4 bytes) and the body.
 * Numbers are big-endian.
 */
class SocketWrapper {
  public:
    /** Results of the read and write operations. */
    static constexpr int kSuccess = 0;
    static constexpr int kError = 1;    // also: the peer has closed, invalid argument, socket not open
    static constexpr int kNoData = 28;  // no data within the timeout, or without blocking

    SocketWrapper() = default;
    /** Takes ownership of an open descriptor; -1 for none. */
    explicit SocketWrapper(int descriptor) : descriptor_(descriptor) {}
    virtual ~SocketWrapper();
    SocketWrapper(const SocketWrapper&) = delete;
    SocketWrapper& operator=(const SocketWrapper&) = delete;

    /**
     * Opens a socket with a receive timeout of 900 s and, unless noReuse is set, a reusable address. Returns
     * false, with no socket open, on failure.
     */
    bool Create(bool noReuse);

    bool IsOpen() const { return descriptor_ != -1; }
    int descriptor() const { return descriptor_; }

    /** Return the results of fcntl and setsockopt: negative on failure. */
    int SetNonBlocking(bool nonBlocking);
    int SetReceiveTimeLimit(const timeval& limit);

    /** Receives at least one byte and at most `size`. */
    int Read(void* buffer, size_t size, size_t& received);

    /** Waits for `size` bytes. Returns kError if the stream ends before. */
    int ReadExact(void* buffer, size_t size);

    /** Calls send once. Does not detect a closed connection and raises no signal. */
    int Write(const void* buffer, size_t size);

    int SendMessage(const void* buffer, uint32_t size, uint16_t code);

    /**
     * Waits for one message. `body` gets size + 1 bytes, the last of them zero. It is null, with size 0, for
     * a message without a body and on failure.
     */
    int ReceiveMessage(std::unique_ptr<char[]>& body, uint32_t& size);

    /** Returns the address in dotted notation. */
    std::string GetAddressText() const;
    const sockaddr_in& address() const { return address_; }

  protected:
    int32_t descriptor_ = -1;
    sockaddr_in address_{};

  private:
    void Close();
    int Receive(char* buffer, size_t size, size_t& received);
};
