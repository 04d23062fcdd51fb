#pragma once

#include "apiMgmt/common/wirelink/wireLink.h"

/** The local sockets of the controller's programs. */
enum EndpointIndex {
    ENDPOINT_APIMGR = 0,
    ENDPOINT_MCSHIM = 1,
    ENDPOINT_SNMPSUBAGENT = 2,
};

class GENERALUtils {
  public:
    /**
     * Returns an endpoint, valid until the process exits. Any thread. Throws std::invalid_argument for an
     * unknown index.
     */
    static const WireLinkEndpoint& GetEndpoint(int index);
};
