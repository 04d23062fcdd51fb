#pragma once

#include "apiMgmt/common/socketUtils/socketWrapper.h"

/** A listening socket. */
class TCPServerSocket : public SocketWrapper {
  public:
    /** Listens on the port, of the loopback address only or of every address. Throws APISocketError. */
    TCPServerSocket(int port, bool loopbackOnly);

    /** Waits for a peer. Returns its descriptor, owned by the caller, or -1. */
    int Accept(sockaddr_in& peer);

  private:
    bool Bind(int port, bool loopbackOnly);
};
