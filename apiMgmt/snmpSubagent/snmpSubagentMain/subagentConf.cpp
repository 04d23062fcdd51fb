#include "apiMgmt/snmpSubagent/snmpSubagentMain/subagentConf.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <string_view>

#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

std::string conf_rwcommunity;
std::string conf_rocommunity;
bool conf_trapsEnabled = false;
std::string conf_trapDest;
int conf_trapPort = 0;
std::string conf_trapCommun;
int conf_trapVer = 1;
int conf_controllerIdLeader = 0;
int conf_controllerIdThis = 0;
int conf_controllerIndexThis = 0;
bool sendTestTrap = false;

namespace {

constexpr size_t kBufferSize = 500;

// The text of the file as far as it counts; nothing when there is none.
std::optional<std::string> read_conf_text() {
    const int descriptor = open(kSnmpSubagentConfigFile, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        SUBAGENT_LOG(4, "Unable to open file: %s\n", kSnmpSubagentConfigFile);
        return std::nullopt;
    }
    char buffer[kBufferSize] = {};
    const ssize_t count = read(descriptor, buffer, sizeof buffer);
    close(descriptor);
    if (count < 0) {
        SUBAGENT_LOG(4, "Unable to read file: %s\n", kSnmpSubagentConfigFile);
        return std::nullopt;
    }
    if (count == 0) {
        SUBAGENT_LOG(4, "conf file is empty\n");
        return std::nullopt;
    }
    buffer[sizeof buffer - 1] = '\0';
    return buffer;
}

std::optional<std::string> find_value(const std::string& text, std::string_view key) {
    const size_t place = text.find(key);
    if (place == std::string::npos)
        return std::nullopt;
    const size_t start = text.find_first_not_of(" \t", place + key.size());
    const size_t end = start == std::string::npos ? start : text.find('\n', start);
    if (end == std::string::npos)
        return std::nullopt;
    return text.substr(start, end - start);
}

void read_text(const std::string& text, const char* key, const char* missing, std::string* value) {
    *value = find_value(text, key).value_or(missing);
}

void read_community(const std::string& text, const char* key, std::string* value) {
    read_text(text, key, "", value);
    if (*value == "**none**")
        value->clear();
}

bool read_flag(const std::string& text, const char* key) {
    return find_value(text, key).value_or("") == "yes";
}

int read_number(const std::string& text, const char* key, int missing) {
    const std::optional<std::string> value = find_value(text, key);
    return value ? ParseInt(*value) : missing;
}

int read_controller_index(const std::string& text) {
    const std::optional<std::string> value = find_value(text, "controllerIndexThis");
    if (!value)
        return 0;
    const int index = ParseInt(*value);
    if (index == 1 || index == 2)
        return index;
    SUBAGENT_LOG(4, "conf_controllerIndexThis is not 1 or 2: %d\n", index);
    return 0;
}

}  // namespace

int read_snmpSubagent_conf() {
    const std::optional<std::string> text = read_conf_text();
    if (!text)
        return 1;
    read_community(*text, "rwcommunity", &conf_rwcommunity);
    read_community(*text, "rocommunity", &conf_rocommunity);
    conf_trapsEnabled = read_flag(*text, "trapsEnabled");
    read_text(*text, "trapDest", "172.255.255.255", &conf_trapDest);
    conf_trapPort = read_number(*text, "trapPort", 666);
    read_text(*text, "trapCommun", "nevermind", &conf_trapCommun);
    conf_trapVer = read_number(*text, "trapVer", 1);
    conf_controllerIdLeader = read_number(*text, "controllerIdLeader", 666);
    conf_controllerIdThis = read_number(*text, "controllerIdThis", 666);
    conf_controllerIndexThis = read_controller_index(*text);
    verbose = read_flag(*text, "verbose");
    sendTestTrap = read_flag(*text, "sendTestTrap");
    return 0;
}
