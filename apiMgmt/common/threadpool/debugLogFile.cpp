#include "apiMgmt/common/threadpool/debugLogFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/privateLog.h"

namespace {

constexpr off_t kGreatestSize = 1'000'000;

// Better to lose what the file holds than to let it grow without end.
void PutAside() {
    unlink(kOldDebugLogFile);
    if (rename(kDebugLogFile, kOldDebugLogFile) != 0) {
        unlink(kDebugLogFile);
    }
}

// Below 0 when there is no file to write to.
int OpenWithRoom() {
    const int descriptor = OpenPrivateLog(kDebugLogFile);
    if (descriptor < 0 || lseek(descriptor, 0, SEEK_END) <= kGreatestSize) {
        return descriptor;
    }
    close(descriptor);
    PutAside();
    return OpenPrivateLog(kDebugLogFile, O_TRUNC);
}

std::string LocalTime() {
    const time_t now_s = ClockNow().tv_sec;
    tm local{};
    localtime_r(&now_s, &local);
    char text[64];
    return {text, strftime(text, sizeof text, "%m/%d/%Y-%H:%M:%S", &local)};
}

}  // namespace

void AppendToDebugLogFile(const std::string& message) {
    const int descriptor = OpenWithRoom();
    if (descriptor < 0) {
        return;
    }
    const std::string line = LocalTime() + " " + message + "\n";
    // There is no one to tell of a full disk.
    [[maybe_unused]] const ssize_t written = write(descriptor, line.data(), line.size());
    close(descriptor);
}
