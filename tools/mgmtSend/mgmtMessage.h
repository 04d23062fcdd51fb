#pragma once

#include <string>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/proto/mgmtCommands.h"

/** The message as it goes over the daemon's local socket. */
protoIPCMsg::GPBIPCMsg MgmtEnvelope(mgmt_specific command, const std::string& text = {});
