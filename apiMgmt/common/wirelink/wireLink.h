#pragma once

#include <sys/socket.h>
#include <sys/types.h>

#include <cstddef>

#include "apiMgmt/common/wirelink/wireLinkEndpoint.h"

namespace google::protobuf {
class Message;
}

/**
 * Messages over a local stream socket. A frame is the length of its body in 4 bytes, unsigned and
 * big-endian, and then the body, one serialised protobuf message. Everything that goes wrong is
 * thrown as WireLinkError, whose text begins with the path of the socket; SIGPIPE is never raised. No object
 * here is shared between threads.
 */

/** The default way to wait: poll(2). */
bool PollDescriptor(int descriptor, short events, int timeout_ms);

/** One connected descriptor, owned: closed by the destructor. */
class WireLinkSocket {
  public:
    WireLinkSocket(const WireLinkSocket&) = delete;
    WireLinkSocket& operator=(const WireLinkSocket&) = delete;

    /** Blocks for one whole message. Returns the bytes of its frame (4 + body), 0 when the peer has
        closed between two frames. Throws on a torn frame, a body that is too long or does not parse,
        and at the time limit, which counts from the call to the frame's last byte. After a throw the
        connection is of no more use: where the next frame begins is not known. */
    size_t RecvGPBMsg(google::protobuf::Message& message);

    /** Sends one whole message. Throws when it cannot be serialised, is too long, or at the time limit. */
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

/** The calling side. The constructor connects; it throws if nobody listens, or if the listener is neither
   root nor the effective user. Every wait, including that for a full backlog, goes through `wait`. */
class WireLinkClient : public WireLinkSocket {
  public:
    explicit WireLinkClient(const WireLinkEndpoint& endpoint, WireLinkWait wait = PollDescriptor);

    /** Sends the request and blocks for the one answer. Throws also when the peer closes instead. */
    void SendReceiveMessage(const google::protobuf::Message& request, google::protobuf::Message& response);
};

/** The listening side. A stale socket file is replaced; a path that is no socket is left alone and the
    constructor throws. The socket file has mode 0600. The destructor closes and removes it. */
class WireLinkServer {
  public:
    explicit WireLinkServer(const WireLinkEndpoint& endpoint);
    ~WireLinkServer();
    WireLinkServer(const WireLinkServer&) = delete;
    WireLinkServer& operator=(const WireLinkServer&) = delete;

    /** Blocks, without a time limit, until a peer connects; returns its descriptor, owned by the caller.
        The arguments are those of accept4(2). Throws on failure. */
    int Accept(sockaddr* address, unsigned* address_length, int flags);

    int descriptor() const { return descriptor_; }

  private:
    WireLinkEndpoint endpoint_;
    int descriptor_;
    /** Which file at the path is this server's. */
    dev_t device_;
    ino_t inode_;
};

/** One accepted peer: takes ownership of the descriptor. */
class WireLinkServerConnection : public WireLinkSocket {
  public:
    WireLinkServerConnection(const WireLinkEndpoint& endpoint, int descriptor);
    ~WireLinkServerConnection() override = default;
};
