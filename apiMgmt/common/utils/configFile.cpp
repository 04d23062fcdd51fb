#include "apiMgmt/common/utils/configFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <system_error>

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

constexpr size_t kMaximumSize = 65'536;

class OpenFile {
  public:
    // Neither follows a symlink nor waits for the other end of a FIFO.
    explicit OpenFile(const std::string& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)) {}
    ~OpenFile() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

// Needed because the file may be in a world-writable directory.
bool IsTrusted(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
           (status.st_uid == 0 || status.st_uid == geteuid());
}

std::optional<std::string> ReadTrustedText(const std::string& path) {
    const OpenFile file(path);
    if (file.descriptor() < 0 && errno != ELOOP) {
        return std::nullopt;
    }
    if (file.descriptor() < 0 || !IsTrusted(file.descriptor())) {
        throw std::runtime_error("not a regular file that belongs to root or to this user");
    }
    std::string text(kMaximumSize, '\0');
    size_t length = 0;
    while (length < text.size()) {
        const ssize_t count = read(file.descriptor(), text.data() + length, text.size() - length);
        if (count < 0) {
            throw std::system_error(errno, std::system_category());
        }
        if (count == 0) {
            break;
        }
        length += static_cast<size_t>(count);
    }
    text.resize(length);
    return text;
}

}  // namespace

std::map<std::string, std::string> ReadConfigFile(const std::string& path) {
    std::map<std::string, std::string> values;
    try {
        std::istringstream text(ReadTrustedText(path).value_or(""));
        for (std::string line; std::getline(text, line);) {
            StoreLine(line, values);
        }
    } catch (const std::exception& error) {
        syslog(LOG_WARNING, "Caught std::exception reading in config file %s: %s", path.c_str(),
               error.what());
    }
    return values;
}
