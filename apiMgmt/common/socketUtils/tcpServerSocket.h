#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/common/socketUtils/socketWrapper.h"
#include "apiMgmt/common/utils/generalError.h"

/** Thrown if a listening socket cannot be created. */
class APISocketError : public GENERALError {
  public:
    APISocketError(const std::string& file, uint32_t line, const std::string& message)
        : GENERALError(file, line, message) {}
};

/** A listening socket. */
class TCPServerSocket : public SocketWrapper {
  public:
    /** Listens on the port, on the loopback address only or on all addresses. Throws APISocketError. */
    TCPServerSocket(int port, bool loopbackOnly);

    /** Waits for a connection. Returns its descriptor, owned by the caller, or -1. */
    int Accept(sockaddr_in& peer);

  private:
    bool Bind(int port, bool loopbackOnly);
};
