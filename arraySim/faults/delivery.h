#pragma once

#include <cstddef>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "arraySim/control/simulator.h"

namespace arraysim {

/** What became of an answer on its way. */
struct Delivered {
    size_t bytes = 0;              ///< of the frame, as far as it was sent
    bool connection_good = false;  ///< whether the connection can carry another exchange
};

/** Sends an answer as its Delivery says. Blocks while it hangs or is delayed, until the peer closes or the
    connection is shut down. Throws WireLinkError when the sending fails. */
Delivered Deliver(WireLinkSocket& connection, const WireLinkEndpoint& endpoint, const Exchange& exchange);

}  // namespace arraysim
