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
    text << file.rdbuf();  // a file without a byte is an error for the stream, and a folder looks like one
    if (!text && errno != 0) {
        return std::nullopt;
    }
    return text.str();
}
