#include "apiMgmt/snmpSubagent/snmpSubagentMain/supervisor.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "apiMgmt/common/platform/clock.h"

namespace {

constexpr int64_t kBetweenSigns_us = 2 * kSecondUs;

int channel = -1;  // open until the process exits
sockaddr_un supervisor_address{};
socklen_t address_length = 0;
int64_t next_sign_us = 0;

// A path, or a name in Linux's abstract namespace, whose leading zero byte is written as @.
bool set_address(const std::string& name) {
    if (name.size() < 2 || name.size() >= sizeof supervisor_address.sun_path ||
        (name[0] != '/' && name[0] != '@'))
        return false;
    supervisor_address.sun_family = AF_UNIX;
    memcpy(supervisor_address.sun_path, name.data(), name.size());
    if (name[0] == '@')
        supervisor_address.sun_path[0] = '\0';
    address_length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    return true;
}

// Must not block if the supervisor does not read.
void send_text(const std::string& text) {
    if (channel >= 0)
        (void)sendto(channel, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
                     reinterpret_cast<const sockaddr*>(&supervisor_address), address_length);
}

}  // namespace

void open_supervisor_channel() {
    const char* name = getenv("NOTIFY_SOCKET");
    if (name == nullptr)
        return;
    if (set_address(name))
        channel = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    unsetenv("NOTIFY_SOCKET");
}

void feed_watchdog() {
    if (channel < 0 || ClockNowUs() < next_sign_us)
        return;
    next_sign_us = ClockNowUs() + kBetweenSigns_us;
    send_text("WATCHDOG=1");
}

void set_supervisor_status(const char* status) {
    send_text(std::string("STATUS=") + status);
}
