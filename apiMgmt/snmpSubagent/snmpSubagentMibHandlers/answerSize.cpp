#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/answerSize.h"

namespace {

constexpr size_t kHeader = 28;  // that of every PDU, and what a response has in addition
constexpr size_t kWord = 4;     // everything is padded to words
constexpr oid kInternet[] = {1, 3, 6, 1};
constexpr size_t kShortened = 5;  // the four above and the next one, which the header of the name then holds
constexpr oid kGreatestShortened = 255;

size_t size_of_name(const netsnmp_variable_list& binding) {
    const bool is_shortened = binding.name_length >= kShortened &&
                              snmp_oid_compare(binding.name, 4, kInternet, 4) == 0 && binding.name[4] > 0 &&
                              binding.name[4] <= kGreatestShortened;
    return kWord + kWord * (binding.name_length - (is_shortened ? kShortened : 0));
}

/** Of the types that the store has, and of what stands for a value that is not there. */
size_t size_of_value(const netsnmp_variable_list& binding) {
    switch (binding.type) {
        case ASN_OCTET_STR:
            return kWord + (binding.val_len + kWord - 1) / kWord * kWord;
        case ASN_INTEGER:
        case ASN_UNSIGNED:
            return kWord;
        default:
            return 0;
    }
}

}  // namespace

size_t size_of_answer(const netsnmp_variable_list* bindings) {
    size_t size = kHeader;
    for (; bindings != nullptr; bindings = bindings->next_variable)
        size += kWord + size_of_name(*bindings) + size_of_value(*bindings);
    return size;
}
