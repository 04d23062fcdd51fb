#include "apiMgmt/common/utils/textFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
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

bool ReplaceTextFile(const std::string& path, const std::string& text, bool is_durable) {
    const std::string draft = path + ".new";
    unlink(draft.c_str());
    const int file =
        open(draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        return false;
    }
    const bool is_written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
                            (!is_durable || fsync(file) == 0);
    return close(file) == 0 && is_written && rename(draft.c_str(), path.c_str()) == 0;
}
