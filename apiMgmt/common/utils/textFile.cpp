#include "apiMgmt/common/utils/textFile.h"

#include <cerrno>
#include <fstream>
#include <sstream>

std::optional<std::string> ReadTextFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    errno = 0;
    std::ostringstream text;
    text << file.rdbuf();  // for the stream, an empty file is an error, and a directory looks like one
    if (!text && errno != 0) {
        return std::nullopt;
    }
    return text.str();
}
