#include "tests/unit/core/fakes/transcript.h"

#include <mutex>
#include <utility>

namespace transcript {
namespace {

using reaction = std::pair<std::string, std::function<void(const std::string&)>>;

std::mutex lock;
std::string lines;
std::vector<reaction> reactions;

}  // namespace

void add(const std::string& line) {
    std::vector<reaction> current;
    {
        const std::lock_guard guard(lock);
        lines += line + '\n';
        current = reactions;
    }
    for (const auto& [beginning, action] : current) {
        if (line.rfind(beginning, 0) == 0)
            action(line);
    }
}

std::string take() {
    const std::lock_guard guard(lock);
    return std::exchange(lines, "");
}

void on(const std::string& beginning, std::function<void(const std::string&)> action) {
    const std::lock_guard guard(lock);
    reactions.emplace_back(beginning, std::move(action));
}

}  // namespace transcript
