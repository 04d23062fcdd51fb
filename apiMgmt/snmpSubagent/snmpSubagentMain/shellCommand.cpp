#include "apiMgmt/snmpSubagent/snmpSubagentMain/shellCommand.h"

#include <fcntl.h>
#include <sys/select.h>
#include <unistd.h>

#include <cstdlib>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr const char* kPlainCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-:/@%+=,";

// The agent library opens its sockets, all within reach of select(2), without this mark.
void keep_descriptors_from_programs() {
    for (int descriptor = STDERR_FILENO + 1; descriptor < FD_SETSIZE; ++descriptor) {
        const int flags = fcntl(descriptor, F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0)
            fcntl(descriptor, F_SETFD, flags | FD_CLOEXEC);
    }
}

}  // namespace

command_output open_command(const std::string& command) {
    keep_descriptors_from_programs();
    return command_output(popen(command.c_str(), "r"));
}

int run_command(const std::string& command) {
    keep_descriptors_from_programs();
    return system(command.c_str());
}

std::string shell_word(const std::string& text) {
    if (!text.empty() && text.find_first_not_of(kPlainCharacters) == std::string::npos)
        return text;
    std::string quoted = text;
    ReplaceAll(quoted, "'", "'\\''");
    return "'" + quoted + "'";
}
