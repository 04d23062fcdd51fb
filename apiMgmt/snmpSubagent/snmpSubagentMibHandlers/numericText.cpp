#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/numericText.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

namespace {

struct number_text {
    bool is_negative = false;
    std::string_view digits;
};

number_text find_number(std::string_view text) {
    const size_t start = std::min(text.find_first_not_of(" \f\n\r\t\v"), text.size());
    text.remove_prefix(start);
    number_text number;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        number.is_negative = text[0] == '-';
        text.remove_prefix(1);
    }
    number.digits = text.substr(0, std::min(text.find_first_not_of("0123456789"), text.size()));
    return number;
}

uint64_t magnitude(std::string_view digits) {
    uint64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc::result_out_of_range ? std::numeric_limits<uint64_t>::max() : value;
}

}  // namespace

int64_t signed_from_text(std::string_view text, int64_t least, int64_t greatest) {
    const number_text number = find_number(text);
    constexpr uint64_t kGreatest = std::numeric_limits<int64_t>::max();
    const auto value = static_cast<int64_t>(std::min(magnitude(number.digits), kGreatest));
    return std::clamp(number.is_negative ? -value : value, least, greatest);
}

uint64_t unsigned_from_text(std::string_view text) {
    const number_text number = find_number(text);
    return number.is_negative ? 0 : magnitude(number.digits);
}

int32_t index_from_text(std::string_view text) {
    return static_cast<int32_t>(
        signed_from_text(text, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

uint32_t number_from_text(std::string_view text, uint32_t data_type) {
    if (data_type == SMI_BASETYPE_UNSIGNED32)
        return static_cast<uint32_t>(
            std::min<uint64_t>(unsigned_from_text(text), std::numeric_limits<uint32_t>::max()));
    return static_cast<uint32_t>(index_from_text(text));
}
