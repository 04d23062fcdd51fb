#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/common/socketUtils/socketWrapper.h"
#include "apiMgmt/common/utils/generalError.h"

/** A listening socket that could not be made. */
class APISocketError : public GENERALError {
  public:
    APISocketError(const std::string& file, uint32_t line, const std::string& message)
        : GENERALError(file, line, message) {}
};

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
