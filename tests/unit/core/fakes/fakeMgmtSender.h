#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apiMgmt/proto/apiMgrMsg.pb.h"

/**
 * The senders of management messages, in place of the listening side of the message channel. Set before the
 * listener runs; it takes one connection after the other, and waits without end when there are no more.
 */
namespace fake_mgmt_sender {

struct connection {
    std::vector<protoIPCMsg::GPBIPCMsg> messages;
    std::optional<std::string> failure; /**< how it ends; none: the sender closes */
};

extern std::vector<connection> connections;

/** Why the socket cannot be set up; empty: it can. */
extern std::string set_up_failure;

}  // namespace fake_mgmt_sender
