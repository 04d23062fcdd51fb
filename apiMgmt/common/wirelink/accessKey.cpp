#include "apiMgmt/common/wirelink/accessKey.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "apiMgmt/common/wirelink/ownedDescriptor.h"

namespace {

constexpr size_t kLongestLine = 65'536;

/** Returns whether only this user can have written the key and can read it. */
bool IsPrivateFile(int descriptor) {
    struct stat status;
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
           (status.st_mode & (S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH)) == 0;
}

/** Reads the first line without its newline. Returns false if it cannot be read or is longer than any key. */
bool ReadFirstLine(int descriptor, std::string& line) {
    std::array<char, 4096> buffer;
    while (line.size() <= kLongestLine) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        line.append(buffer.data(), static_cast<size_t>(count));
        const size_t end = line.find('\n');
        if (end != std::string::npos)
            line.resize(end);
        if (end != std::string::npos || count == 0)
            return line.size() <= kLongestLine;
    }
    return false;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view white = " \f\n\r\t\v";
    const size_t first = text.find_first_not_of(white);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(white) - first + 1);
}

}  // namespace

std::string ReadAccessKey(const char* path) {
    // The opened file is checked, not the path, and opening must not block on a FIFO.
    const OwnedDescriptor file(open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    std::string line;
    if (!file.valid() || !IsPrivateFile(file.get()) || !ReadFirstLine(file.get(), line))
        return {};
    constexpr std::string_view allowed =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._~+/=-";
    const std::string_view key = Trimmed(line);
    return key.find_first_not_of(allowed) == std::string_view::npos ? std::string(key) : std::string();
}
