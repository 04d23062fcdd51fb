#include "apiMgmt/common/utils/apiMethodError.h"

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr int32_t kTesseraError = 10;

bool HasErrorMessage(const TSResponseStatus& status) {
    return status.errorCode >= 1 && !status.errorMsgs.empty();
}

const std::string& MessageOf(const TSResponseStatus& status) {
    return HasErrorMessage(status) ? status.errorMsgs.front() : status.errorSummaryMsg;
}

const std::string& SummaryOf(const TSResponseStatus& status) {
    return status.errorSummaryMsg.empty() ? MessageOf(status) : status.errorSummaryMsg;
}

}  // namespace

APIMethodError::APIMethodError(const std::string& summary, int32_t state, const std::string& file,
                               uint32_t line, int32_t code, const char* descriptor, ...)
    : GENERALError(file, line, "", summary), errorState(state) {
    va_list values;
    va_start(values, descriptor);
    SetCode(code, descriptor, values);
    va_end(values);
}

APIMethodError::APIMethodError(int32_t state, const std::string& file, uint32_t line,
                               const std::string& message)
    : GENERALError(file, line, message), errorState(state) {}

APIMethodError::APIMethodError(int32_t state, const std::string& file, uint32_t line,
                               const std::string& message, const std::string& summary)
    : GENERALError(file, line, message, summary), errorState(state) {}

APIMethodError::APIMethodError(const TSResponseStatus& status, const std::string& file, uint32_t line)
    : GENERALError(file, line, MessageOf(status), SummaryOf(status)),
      errorState(kTesseraError),
      responseCode(status.errorCode),
      extendedCode(status.extErrorCode),
      subsystem(status.subsystemId),
      causeText(status.errorCauseMsg) {}

APIMethodError::~APIMethodError() = default;

std::string APIMethodError::ToText() const {
    if (responseCode >= 1) {
        return FormatString("Error code[%d], extErrorCode[%u:%d], Summary[%s]", responseCode, subsystem,
                            extendedCode, GetSummary().c_str());
    }
    return FormatString("Error state[%d], Summary[%s]", errorState, GetSummary().c_str());
}
