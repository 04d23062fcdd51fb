#include "tests/unit/common/tempFolder.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

NewsPipe::NewsPipe(std::string path) : path_(std::move(path)) {
    if (mkfifo(path_.c_str(), 0600) != 0) {
        abort();
    }
    // Not blocking, so that the reader is there before the writer; close-on-exec is left off on purpose.
    descriptor_ = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
}

NewsPipe::~NewsPipe() {
    close(descriptor_);
}

std::string NewsPipe::ReadAll() const {
    constexpr int only_a_failure_waits_ms = 60'000;
    std::string news;
    pollfd ready{descriptor_, POLLIN, 0};
    while (poll(&ready, 1, only_a_failure_waits_ms) > 0) {
        char buffer[1000];
        const ssize_t count = read(descriptor_, buffer, sizeof buffer);
        if (count == 0) {
            return news;
        }
        if (count > 0) {
            news.append(buffer, static_cast<size_t>(count));
        }
    }
    return "no news";
}
