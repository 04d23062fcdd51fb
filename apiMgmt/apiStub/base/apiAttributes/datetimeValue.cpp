#include "apiMgmt/apiStub/base/apiAttributes/datetimeValue.h"

#include <algorithm>
#include <exception>
#include <iostream>

#include "apiMgmt/common/platform/cLocale.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr int kFirstYear = 1900;  // origin of tm_year
constexpr const char* kTextFormat = "%m/%d/%Y %I:%M:%S %p";
constexpr const char* kOtherFormat = "%m/%d/%Y-%H:%M:%S";

// Reduces the platform's padding to one space.
std::string FormatTime(const std::string& format, const std::tm& parts) {
    const CLocaleScope c_locale;
    char buffer[256];
// The caller supplies the format.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const size_t length = strftime(buffer, sizeof buffer, format.c_str(), &parts);
#pragma GCC diagnostic pop
    std::string text(buffer, length);
    ReplaceAll(text, "  ", " ");
    return text;
}

}  // namespace

DATETIMEValue::DATETIMEValue(int64_t seconds)
    : seconds_(static_cast<uint64_t>(std::max<int64_t>(seconds, 0))) {}

// Returns false if the year exceeds an int.
bool DATETIMEValue::ToLocalTime(std::tm& parts) const {
    const auto time = static_cast<time_t>(seconds_);
    return localtime_r(&time, &parts) != nullptr;
}

std::tm DATETIMEValue::Parts() const {
    std::tm parts{};
    if (seconds_ != 0 && ToLocalTime(parts)) {
        return parts;
    }
    std::tm none{};
    none.tm_mon = -1;  // the callers' offsets make both 0
    none.tm_year = -kFirstYear;
    return none;
}

std::string DATETIMEValue::ToText() const {
    return seconds_ == 0 ? std::string() : Format(kTextFormat);
}

DATETIMEValue DATETIMEValue::FromText(const std::string& text) {
    const DATETIMEValue value = Parse(text, kTextFormat);
    return value.seconds_ != 0 ? value : Parse(text, kOtherFormat);
}

std::string DATETIMEValue::Format(const std::string& format) const {
    std::tm parts{};
    if (format.empty() || !ToLocalTime(parts)) {
        return {};
    }
    try {
        return FormatTime(format, parts);
    } catch (const std::exception& error) {
        std::cout << "Exception formatting datetime: " << error.what() << '\n';
        return {};
    }
}

DATETIMEValue DATETIMEValue::Parse(const std::string& text, const std::string& format) {
    const CLocaleScope c_locale;
    std::tm parts{};
    const char* end = strptime(text.c_str(), format.empty() ? kTextFormat : format.c_str(), &parts);
    if (text.empty() || end == nullptr) {
        return {};
    }
    parts.tm_isdst = -1;
    return DATETIMEValue(mktime(&parts));
}

int DATETIMEValue::GetSecond() const {
    return Parts().tm_sec;
}

int DATETIMEValue::GetMinute() const {
    return Parts().tm_min;
}

int DATETIMEValue::GetHour() const {
    return Parts().tm_hour;
}

int DATETIMEValue::GetDayOfMonth() const {
    return Parts().tm_mday;
}

int DATETIMEValue::GetMonth() const {
    return Parts().tm_mon + 1;
}

int DATETIMEValue::GetYear() const {
    return Parts().tm_year + kFirstYear;
}

int DATETIMEValue::GetMinutesSinceMidnight() const {
    const std::tm parts = Parts();
    return parts.tm_hour * 60 + parts.tm_min;
}
