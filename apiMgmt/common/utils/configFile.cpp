#include "apiMgmt/common/utils/configFile.h"

#include <syslog.h>

#include <exception>
#include <fstream>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

void StoreLine(const std::string& line, std::map<std::string, std::string>& values) {
    if (line.empty() || line.front() == '#') {
        return;
    }
    const size_t equals = line.find('=');
    if (equals == std::string::npos) {
        return;
    }
    std::string key = line.substr(0, equals);
    std::string value = line.substr(equals + 1);
    Trim(key);
    Trim(value);
    if (!key.empty()) {
        values[key] = value;
    }
}

}  // namespace

std::map<std::string, std::string> ReadConfigFile(const std::string& path) {
    std::map<std::string, std::string> values;
    std::ifstream file(path);
    if (!file) {
        return values;
    }
    try {
        file.exceptions(std::ios::badbit);  // a read error must not pass for the end of the file
        std::string line;
        while (std::getline(file, line)) {
            StoreLine(line, values);
        }
    } catch (const std::exception& error) {
        syslog(LOG_WARNING, "Caught std::exception reading in config file %s: %s", path.c_str(),
               error.what());
    }
    return values;
}
