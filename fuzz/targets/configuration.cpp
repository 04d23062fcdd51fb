// Uses bytes as each of the files that are read at start-up: settings, start settings, session key. The
// settings must be those that simple C string functions find.

#include <stdlib.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "apiMgmt/common/utils/configFile.h"
#include "apiMgmt/common/wirelink/accessKey.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "fuzz/lib/fuzzCheck.h"

namespace {

constexpr size_t kCountingBytes = 499;

// A file of this process, without a name in any folder.
class ScratchFile {
  public:
    ScratchFile() {
        char path[] = "/tmp/fuzz_configuration_XXXXXX";
        descriptor_ = mkstemp(path);
        FuzzCheck(descriptor_ >= 0, "no temporary file");
        unlink(path);
        path_ = "/proc/self/fd/" + std::to_string(descriptor_);
    }

    const char* Holding(const uint8_t* data, size_t size) const {
        FuzzCheck(ftruncate(descriptor_, 0) == 0 &&
                      pwrite(descriptor_, data, size, 0) == static_cast<ssize_t>(size),
                  "the temporary file cannot be written");
        return path_.c_str();
    }

  private:
    int descriptor_;
    std::string path_;
};

std::string plain_value(const char* text, const char* key, const char* missing) {
    const char* place = strstr(text, key);
    if (place == nullptr)
        return missing;
    place += strlen(key);
    place += strspn(place, " \t");
    const char* end = strchr(place, '\n');
    return end == nullptr ? missing : std::string(place, end);
}

void check_settings(const char* path, const uint8_t* data, size_t size) {
    if (read_conf_file(path) != 0) {
        FuzzCheck(size == 0, "a file with text was not read");
        return;
    }
    char text[kCountingBytes + 1] = {};
    memcpy(text, data, std::min(size, kCountingBytes));
    if (conf_trapDest != plain_value(text, "trapDest", "172.255.255.255"))
        FuzzFail("trapDest " + conf_trapDest);
    if (conf_trapCommun != plain_value(text, "trapCommun", "nevermind"))
        FuzzFail("trapCommun " + conf_trapCommun);
    FuzzCheck(conf_trapsEnabled == (plain_value(text, "trapsEnabled", "") == "yes"), "trapsEnabled");
    const std::string community = plain_value(text, "rocommunity", "");
    if (conf_rocommunity != (community == "**none**" ? "" : community))
        FuzzFail("rocommunity " + conf_rocommunity);
    FuzzCheck(conf_controllerIndexThis >= 0 && conf_controllerIndexThis <= 2, "controllerIndexThis");
}

void check_start_settings(const char* path) {
    for (const auto& [key, value] : ReadConfigFile(path))
        if (key.empty() || key[0] == '#' || key.find('=') != std::string::npos)
            FuzzFail("key '" + key + "'");
}

void check_key(const char* path) {
    for (const char c : ReadAccessKey(path))
        FuzzCheck(isalnum(static_cast<unsigned char>(c)) || strchr("._~+/=-", c) != nullptr,
                  "a key with other signs");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const ScratchFile file;
    const char* path = file.Holding(data, size);
    check_settings(path, data, size);
    check_start_settings(path);
    check_key(path);
    return 0;
}
