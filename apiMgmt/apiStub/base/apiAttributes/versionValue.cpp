#include "apiMgmt/apiStub/base/apiAttributes/versionValue.h"

#include <algorithm>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

int16_t Within(int64_t value, int64_t limit) {
    return static_cast<int16_t>(std::clamp<int64_t>(value, 0, limit));
}

}  // namespace

void VERSIONValue::SetMajor(int64_t value) {
    major_ = Within(value, 99);
}

void VERSIONValue::SetMinor(int64_t value) {
    minor_ = Within(value, 99);
}

void VERSIONValue::SetRevision(int64_t value) {
    revision_ = Within(value, 999);
}

void VERSIONValue::SetBuild(int64_t value) {
    build_ = Within(value, 9999);
}

void VERSIONValue::SetHotfix(int64_t value) {
    hotfix_ = Within(value, 99);
}

std::string VERSIONValue::ToText() const {
    return FormatString("%02u.%02u.%02u.%03u", unsigned(major_), unsigned(minor_), unsigned(revision_),
                        unsigned(build_));
}

std::string VERSIONValue::ToTextWithHotfix() const {
    return ToText() + FormatString(".%02u", unsigned(hotfix_));
}

VERSIONValue VERSIONValue::FromText(const std::string& text) {
    const size_t first_digit = text.find_first_of("0123456789");
    if (first_digit == std::string::npos) {
        return {};
    }
    std::vector<std::string> pieces;
    Split(text.substr(first_digit), ".", pieces);
    pieces.resize(5);
    VERSIONValue version;
    version.SetMajor(ParseInt(pieces[0]));
    version.SetMinor(ParseInt(pieces[1]));
    version.SetRevision(ParseInt(pieces[2]));
    version.SetBuild(ParseInt(pieces[3]));
    version.SetHotfix(ParseInt(pieces[4]));
    return version;
}

int64_t VERSIONValue::OrderNumber() const {
    return major_ * int64_t{10'000'000'000'000} + minor_ * int64_t{100'000'000'000} +
           revision_ * int64_t{1'000'000'000} + build_ * int64_t{1'000'000} + hotfix_;
}
