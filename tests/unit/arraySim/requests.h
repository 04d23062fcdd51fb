#pragma once

#include <string>
#include <utility>
#include <vector>

#include "apiMgmt/proto/apiMgrMsg.pb.h"

/** Requests as the daemon writes them, and a place for sockets. */

inline constexpr const char* kTestKey = "test+key";

using RequestAttributes = std::vector<std::pair<std::string, std::string>>;

std::string RequestDocument(const std::string& object, const std::string& command,
                            const RequestAttributes& attributes = {}, const std::string& key = kTestKey);

protoIPCMsg::GPBIPCMsg CommandMessage(const std::string& document, unsigned sequence = 7);
protoIPCMsg::GPBIPCMsg PingMessage(unsigned sequence = 7);

/** A folder that goes with its contents at the end of the test. */
class TestFolder {
  public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};
