#pragma once

#include <sys/socket.h>
#include <sys/types.h>

#include <cstddef>

#include "apiMgmt/common/wirelink/wireLinkEndpoint.h"

namespace google::protobuf {
class Message;
}

/**
 * Messages over a local stream socket. A frame consists of the length of its body (4 bytes, unsigned,
 * big-endian) and the body, which is a serialised protobuf message. All failures are thrown as WireLinkError,
 * whose message begins with the path of the socket. SIGPIPE is never raised. Not thread-safe.
 */

/** The default wait function: poll(2). */
bool PollDescriptor(int descriptor, short events, int timeout_ms);

/** A connected socket, closed by the destructor. */
class WireLinkSocket {
  public:
    WireLinkSocket(const WireLinkSocket&) = delete;
    WireLinkSocket& operator=(const WireLinkSocket&) = delete;

    /**
     * Blocks until a message has been received. Returns the size of its frame (4 + body), or 0 if the peer
     * has closed between frames. Throws if the frame is incomplete, if the body is too long or invalid, or if
     * the whole call takes longer than the timeout. After that the connection is unusable, because the start
     * of the next frame is unknown.
     */
    size_t RecvGPBMsg(google::protobuf::Message& message);

    /** Sends a message. Throws if it cannot be serialised or is too long, or if the timeout expires. */
    void SendGPBMsg(const google::protobuf::Message& message);

    int descriptor() const { return descriptor_; }

  protected:
    WireLinkSocket(const WireLinkEndpoint& endpoint, int descriptor, WireLinkWait wait);
    virtual ~WireLinkSocket();

    const WireLinkEndpoint& endpoint() const { return endpoint_; }

  private:
    WireLinkEndpoint endpoint_;
    int descriptor_;
    WireLinkWait wait_;
};

/**
 * The client. The constructor connects; it throws if nobody listens or if the listener is neither root nor
 * the effective user. All waits, including that for a full backlog, use `wait`.
 */
class WireLinkClient : public WireLinkSocket {
  public:
    explicit WireLinkClient(const WireLinkEndpoint& endpoint, WireLinkWait wait = PollDescriptor);

    /** Sends the request and blocks until the response arrives. Throws if the peer closes instead. */
    void SendReceiveMessage(const google::protobuf::Message& request, google::protobuf::Message& response);
};

/**
 * The server. The constructor replaces a stale socket file, but throws if any other file is at the path. The
 * socket file has mode 0600. The destructor closes and removes it.
 */
class WireLinkServer {
  public:
    explicit WireLinkServer(const WireLinkEndpoint& endpoint);
    ~WireLinkServer();
    WireLinkServer(const WireLinkServer&) = delete;
    WireLinkServer& operator=(const WireLinkServer&) = delete;

    /**
     * Blocks, without a timeout, until a peer connects. Returns its descriptor, owned by the caller. The
     * arguments are those of accept4(2). Throws on failure.
     */
    int Accept(sockaddr* address, unsigned* address_length, int flags);

    int descriptor() const { return descriptor_; }

  private:
    WireLinkEndpoint endpoint_;
    int descriptor_;
    /** Identify this server's file at the path. */
    dev_t device_;
    ino_t inode_;
};

/** An accepted connection. Takes ownership of the descriptor. */
class WireLinkServerConnection : public WireLinkSocket {
  public:
    WireLinkServerConnection(const WireLinkEndpoint& endpoint, int descriptor);
    ~WireLinkServerConnection() override = default;
};
