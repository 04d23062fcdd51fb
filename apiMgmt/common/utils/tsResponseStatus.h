#pragma once

#include <cstdint>
#include <string>
#include <vector>

/** Status of an array's response: plain data, named as in the message that carries it. */
class TSResponseStatus {
  public:
    virtual ~TSResponseStatus() = default;

    int32_t errorCode = 0;
    int32_t extErrorCode = 0;
    uint32_t mcErrorId = 0;
    uint32_t subsystemId = 0;
    std::vector<std::string> errorMsgs;
    std::string errorSummaryMsg;
    std::string errorCauseMsg;
    std::string errorResolveMsg;
};
