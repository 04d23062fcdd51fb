#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"

namespace arraysim {

/** How the frame of a response is sent. */
struct Delivery {
    enum class Length { kCorrect, kLong, kHuge, kZero };

    uint32_t delay_ms = 0;
    bool hang = false;
    std::optional<uint32_t> tear_after;  ///< in bytes; 0: half of the frame
    Length length = Length::kCorrect;
    bool garbage = false;
};

/** The result of sending a response. */
struct Delivered {
    size_t bytes = 0;              ///< of the frame, as far as it was sent
    bool connection_good = false;  ///< whether the connection can carry another exchange
};

/** Sends a response. A hang or delay ends early if the peer closes or the connection is shut down. Throws
   WireLinkError if sending fails. */
Delivered Deliver(WireLinkSocket& connection, const WireLinkEndpoint& endpoint,
                  const protoIPCMsg::GPBIPCMsg& response, const Delivery& delivery);

}  // namespace arraysim
