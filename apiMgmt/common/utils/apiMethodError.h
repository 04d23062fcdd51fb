#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apiMgmt/common/utils/generalError.h"

/** Status of an array's response, with the field names of the message that contains it. */
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

/** A failure of the API library or of the array. States are the values of gErrorStateEnumIdStrList. */
class APIMethodError : public GENERALError {
  public:
    /** For failures of the library. Summary, code and descriptor are as in the long form of GENERALError. */
    [[gnu::format(printf, 7, 8)]] APIMethodError(const std::string& summary, int32_t state,
                                                 const std::string& sourceFile, uint32_t sourceLine,
                                                 int32_t errorCode, const char* descriptor, ...);

    /** For failures at a place in the source, with and without a summary. */
    APIMethodError(int32_t state, const std::string& sourceFile, uint32_t sourceLine,
                   const std::string& message);
    APIMethodError(int32_t state, const std::string& sourceFile, uint32_t sourceLine,
                   const std::string& message, const std::string& summary);

    /** For failures of the array. Strings and codes are taken from its response. */
    APIMethodError(const TSResponseStatus& status, const std::string& sourceFile, uint32_t sourceLine);

    ~APIMethodError() override;
    std::string ToText() const override;

    int32_t GetErrorState() const { return errorState; }
    int32_t GetResponseCode() const { return responseCode; }
    int32_t GetExtendedCode() const { return extendedCode; }
    uint32_t GetSubsystem() const { return subsystem; }
    const std::string& GetCauseText() const { return causeText; }

  private:
    int32_t errorState;
    int32_t responseCode = 0;
    int32_t extendedCode = 0;
    uint32_t subsystem = 0;
    std::string causeText;
};
