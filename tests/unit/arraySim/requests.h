#pragma once

#include <string>
#include <utility>
#include <vector>

#include "apiMgmt/proto/apiMgrMsg.pb.h"

/** Requests in the format of the daemon. */

inline constexpr const char* kTestKey = "test+key";

using RequestAttributes = std::vector<std::pair<std::string, std::string>>;

std::string RequestDocument(const std::string& object, const std::string& command,
                            const RequestAttributes& attributes = {}, const std::string& key = kTestKey);

protoIPCMsg::GPBIPCMsg CommandMessage(const std::string& document, unsigned sequence = 7);
protoIPCMsg::GPBIPCMsg PingMessage(unsigned sequence = 7);
