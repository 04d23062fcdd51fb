#pragma once

#include <netinet/in.h>
#include <sys/time.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/**
 * An IPv4 TCP socket, owned: the destructor closes it. Belongs to one thread. Nothing is thrown.
 *
 * A message on the wire is a code (2 bytes), 2 reserved bytes, the length of the body (4 bytes) and the
 * body; numbers are big-endian.
 */
class SocketWrapper {
  public:
    /** Results of the operations that read and write. */
    static constexpr int kSuccess = 0;
    static constexpr int kError = 1;    // also: the peer's end, a bad argument, a closed socket
    static constexpr int kNoData = 28;  // nothing within the time limit or on a non-blocking socket

    SocketWrapper() = default;
    /** Takes ownership of an open descriptor; -1 for none. */
    explicit SocketWrapper(int descriptor) : descriptor_(descriptor) {}
    virtual ~SocketWrapper();
    SocketWrapper(const SocketWrapper&) = delete;
    SocketWrapper& operator=(const SocketWrapper&) = delete;

    /** Opens a socket with a receive time limit of 900 s, and with its address free for reuse unless
        noReuse is set. False when that fails; no socket is open then. */
    bool Create(bool noReuse);

    bool IsOpen() const { return descriptor_ != -1; }
    int descriptor() const { return descriptor_; }

    /** Results of fcntl and setsockopt: negative on failure. */
    int SetNonBlocking(bool nonBlocking);
    int SetReceiveTimeLimit(const timeval& limit);

    /** Takes what has come, at least a byte and at most size. */
    int Read(void* buffer, size_t size, size_t& received);

    /** Waits for size bytes. A stream that ends before gives kError. */
    int ReadExact(void* buffer, size_t size);

    /** One send. A peer that has gone is not noticed here and raises no signal. */
    int Write(const void* buffer, size_t size);

    int SendMessage(const void* buffer, uint32_t size, uint16_t code);

    /** Waits for one message. body gets a block of size + 1 bytes that ends with a zero; it stays unset,
        and size 0, for a message without a body and on failure. */
    int ReceiveMessage(std::unique_ptr<char[]>& body, uint32_t& size);

    /** The address in dotted form. */
    std::string GetAddressText() const;
    const sockaddr_in& address() const { return address_; }

  protected:
    int32_t descriptor_ = -1;
    sockaddr_in address_{};

  private:
    void Close();
    int Receive(char* buffer, size_t size, size_t& received);
};
