#pragma once

#include <string>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/proto/mgmtCommands.h"

namespace mgmtsend {

/** Builds a message to the daemon. text: the trap command, for MGMT_SPECIFIC_SEND_TRAP only. */
protoIPCMsg::GPBIPCMsg BuildMessage(mgmt_specific command, const std::string& text = {});

}  // namespace mgmtsend
