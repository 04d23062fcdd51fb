#pragma once

#include "apiMgmt/common/wirelink/wireLink.h"

/** The local sockets through which the processes of the controller talk. */
enum EndpointIndex {
    ENDPOINT_APIMGR = 0,
    ENDPOINT_MCSHIM = 1,
    ENDPOINT_SNMPSUBAGENT = 2,
};

class GENERALUtils {
  public:
    /** An endpoint of the table above, valid until the process ends. Any thread. Throws
        std::invalid_argument for any other index. */
    static const WireLinkEndpoint& GetEndpoint(int index);
};
