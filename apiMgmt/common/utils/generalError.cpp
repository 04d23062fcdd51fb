#include "apiMgmt/common/utils/generalError.h"

#include "apiMgmt/common/utils/stringUtil.h"

GENERALError::GENERALError(const std::string& file, uint32_t line, const std::string& message)
    : GENERALError(file, line, message, "") {}

GENERALError::GENERALError(const std::string& file, uint32_t line, const std::string& message,
                           const std::string& summary)
    : std::runtime_error(message),
      messageText(message),
      sourceFile(file),
      sourceLine(line),
      summaryText(summary) {}

GENERALError::GENERALError(const std::string& summary, const std::string& file, uint32_t line, int32_t code,
                           const char* descriptor, ...)
    : GENERALError(file, line, "", summary) {
    va_list values;
    va_start(values, descriptor);
    SetCode(code, descriptor, values);
    va_end(values);
}

GENERALError::~GENERALError() = default;

const char* GENERALError::what() const noexcept {
    return std::runtime_error::what();
}

std::string GENERALError::ToText() const {
    return GetSummary();
}

const std::string& GENERALError::GetSummary() const {
    return summaryText.empty() ? messageText : summaryText;
}

void GENERALError::SetCode(int32_t code, const char* descriptor, va_list values) {
    errorCode = code;
    if (descriptor == nullptr || *descriptor == '\0') {
        return;
    }
    // SplitChar, because a "|" at the very end ends the last parameter and does not begin another.
    SplitChar(FormatStringV(descriptor, values), '|', parameters);
}

std::ostream& operator<<(std::ostream& stream, const GENERALError& error) {
    return stream << error.ToText();
}
