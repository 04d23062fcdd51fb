#include "apiMgmt/common/utils/privateLog.h"

#include <fcntl.h>
#include <sys/stat.h>

int OpenPrivateLog(const char* path, int more_flags) {
    constexpr mode_t kMode = S_IRUSR | S_IWUSR;
    const int descriptor = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | more_flags, kMode);
    struct stat status {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        (status.st_mode & ACCESSPERMS) != kMode) {
        fchmod(descriptor, kMode);
    }
    return descriptor;
}
