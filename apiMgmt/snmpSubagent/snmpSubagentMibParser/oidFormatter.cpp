#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"

#include <algorithm>
#include <cstdio>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

void copy_oid(oid* destination, const oid* source, size_t length) {
    if (length > MAX_handled_oidlen) {
        SUBAGENT_LOG(warning, "iOidLen is too large: %d\n", static_cast<int>(length));
        return;
    }
    std::copy_n(source, length, destination);
}

int get_oid_str(const oid* name, size_t name_length, char* output, size_t output_size) {
    constexpr size_t kPlacesForOne = 10;
    if (output == nullptr) {
        SUBAGENT_LOG(warning, "no ptr to output string\n");
        return 0;
    }
    output[0] = '\0';
    if (name_length > MAX_handled_oidlen) {
        SUBAGENT_LOG(warning, "oidlen too long: %d\n", static_cast<int>(name_length));
        return 0;
    }
    size_t used = 0;
    for (size_t i = 0; i < name_length; ++i) {
        if (output_size - used < kPlacesForOne) {
            SUBAGENT_LOG(warning, "ran out of room in output_str: %s\n", output);
            break;
        }
        const int printed = snprintf(output + used, kPlacesForOne, "%lu.", name[i]);
        used += std::min(static_cast<size_t>(printed), kPlacesForOne - 1);
    }
    return static_cast<int>(used);
}

void oid_to_string(std::string& output, const oid* name, size_t name_length) {
    for (size_t i = 0; i < name_length; ++i)
        output.append(std::to_string(name[i])).push_back('.');
}

std::string oid_text(const oid* name, size_t name_length) {
    std::string text;
    oid_to_string(text, name, name_length);
    return text;
}
