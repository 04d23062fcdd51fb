#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apiMgmt/proto/apiMgrMsg.pb.h"

/**
 * Senders of management messages, which replace the server side of the message channel. Set before the
 * listener runs. It accepts one connection after the other, and waits forever after the last.
 */
namespace fake_mgmt_sender {

struct connection {
    std::vector<protoIPCMsg::GPBIPCMsg> messages;
    std::optional<std::string> failure; /**< the error that ends it; none: the sender closes */
};

extern std::vector<connection> connections;

/** Error when the socket is set up; empty: success. */
extern std::string set_up_failure;

}  // namespace fake_mgmt_sender
