#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgentState.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <sstream>

#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

extern char** environ;

namespace {

constexpr const char* kSearchPath = "SNMPCONFPATH";
constexpr const char* kStateFolder = "SNMP_PERSISTENT_DIR";
constexpr const char* kEngineIdPrefix =
    "0x80001f8880";  // Net-SNMP's format: enterprise number and method, then random octets
constexpr size_t kMaximumEngineId = 2 + 2 * 32;

struct snmp_engine {
    std::string id; /**< as snmpd writes it: 0x and hexadecimal digits; empty if there is none yet */
    int starts = 0;
};

bool is_engine_id(const std::string& word) {
    return word.starts_with("0x") && word.size() > 2 && word.size() <= kMaximumEngineId &&
           word.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string::npos;
}

snmp_engine read_engine(const std::string& path) {
    snmp_engine engine;
    std::istringstream text(ReadTextFile(path).value_or(""));
    for (std::string line; std::getline(text, line);) {
        std::istringstream words(line);
        std::string key;
        std::string value;
        words >> key >> value;
        if (key == "oldEngineID" && is_engine_id(value))
            engine.id = value;
        if (key == "engineBoots")
            engine.starts = std::clamp(ParseInt(value), 0, INT_MAX - 1);
    }
    return engine;
}

std::string new_engine_id() {
    unsigned char octets[8];
    if (getentropy(octets, sizeof octets) != 0)
        return "";
    std::string id = kEngineIdPrefix;
    for (const unsigned char octet : octets)
        id += FormatString("%02x", octet);
    return id;
}

bool is_private_folder(const std::string& folder) {
    struct stat status {};
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

}  // namespace

bool keep_snmp_engine(const std::string& folder) {
    const std::string path = folder + "/snmpd.conf";
    if (!is_private_folder(folder)) {
        SUBAGENT_LOG(warning, "not a directory that only this user may write to: %s\n", folder.c_str());
        return false;
    }
    snmp_engine engine = read_engine(path);
    if (engine.id.empty())
        engine = {.id = new_engine_id(), .starts = 0};
    else
        ++engine.starts;
    const std::string text =
        FormatString("oldEngineID %s\nengineBoots %d\n", engine.id.c_str(), engine.starts);
    // The count must never fall back, so the file is on the disk before snmpd starts.
    if (engine.id.empty() || !ReplaceTextFile(path, text, true)) {
        SUBAGENT_LOG(warning, "could not write the SNMPv3 engine to %s: %s\n", path.c_str(), strerror(errno));
        return false;
    }
    return true;
}

std::vector<std::string> snmpd_environment(const std::string& folder) {
    std::vector<std::string> environment;
    for (char** each = environ; *each != nullptr; ++each) {
        const std::string_view entry = *each;
        if (!entry.starts_with(std::string(kSearchPath) + "=") &&
            !entry.starts_with(std::string(kStateFolder) + "="))
            environment.emplace_back(entry);
    }
    environment.push_back(std::string(kSearchPath) + "=" + kNoConfigurationFiles +
                          (folder.empty() ? "" : ":" + folder));
    // snmpd changes the owner of this directory to the user that it runs as, so nothing must read from it.
    environment.push_back(std::string(kStateFolder) + "=" + kSnmpdStateFolder);
    return environment;
}
