#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

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

using found_value = std::optional<std::string>;

// One function per type of setting. `missing` is the default.

std::string read_text(const found_value& value, const char* missing) {
    return value.value_or(missing);
}

std::string read_community(const found_value& value) {
    return value.value_or("") == "**none**" ? "" : value.value_or("");
}

bool read_flag(const found_value& value) {
    return value.value_or("") == "yes";
}

int read_number(const found_value& value, int missing) {
    return value ? ParseInt(*value) : missing;
}

int read_controller(const found_value& value) {
    const int index = read_number(value, 0);
    if (!value || index == 1 || index == 2)
        return index;
    SUBAGENT_LOG(warning, "conf_controllerIndexThis is not 1 or 2: %d\n", index);
    return 0;
}

const conf_setting settings[] = {
#include "apiMgmt/snmpSubagent/snmpSubagentMain/confSettings.inc"
};

}  // namespace

const std::span<const conf_setting> conf_settings(settings);

std::optional<std::string> read_conf_text(const char* path) {
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        SUBAGENT_LOG(warning, "Unable to open file: %s\n", path);
        return std::nullopt;
    }
    char buffer[kBufferSize] = {};
    const ssize_t count = read(descriptor, buffer, sizeof buffer);
    close(descriptor);
    if (count < 0) {
        SUBAGENT_LOG(warning, "Unable to read file: %s\n", path);
        return std::nullopt;
    }
    if (count == 0) {
        SUBAGENT_LOG(warning, "conf file is empty\n");
        return std::nullopt;
    }
    buffer[sizeof buffer - 1] = '\0';
    return buffer;
}

std::optional<conf_place> find_conf_place(std::string_view text, std::string_view key) {
    const size_t place = text.find(key);
    if (place == std::string::npos)
        return std::nullopt;
    const size_t value = std::min(text.find_first_not_of(" \t", place + key.size()), text.size());
    return conf_place{.key = place, .value = value, .end = text.find('\n', value)};
}

int read_conf_file(const char* path) {
    const std::optional<std::string> text = read_conf_text(path);
    if (!text)
        return 1;
    for (const conf_setting& setting : conf_settings) {
        const std::optional<conf_place> place = find_conf_place(*text, setting.key);
        const bool counts = place && place->has_end();
        setting.store(counts ? found_value(text->substr(place->value, place->end - place->value))
                             : std::nullopt);
    }
    return 0;
}

int read_snmpSubagent_conf() {
    return read_conf_file(kSnmpSubagentConfigFile);
}

const std::string& self_test_community() {
    static const std::string kPublic = "public";
    if (!conf_rocommunity.empty())
        return conf_rocommunity;
    return conf_rwcommunity.empty() ? kPublic : conf_rwcommunity;
}
