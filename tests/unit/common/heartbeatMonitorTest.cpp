#include "apiMgmt/common/utils/heartbeat/heartbeatMonitor.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <string>

#include "tests/unit/common/fakeSleep.h"
#include "tests/unit/common/fakeSyslog.h"

namespace {

std::atomic<int> listening_port{0};
std::atomic<int> sleeps{0};

void Pause(int64_t duration_us) {
    EXPECT_GT(duration_us, 0);
    ++sleeps;
}

uint16_t StartOnFreePort() {
    on_sleep = Pause;
    EXPECT_EQ(StartHeartbeatMonitor(0), 0);
    listening_port.wait(0);
    return static_cast<uint16_t>(listening_port);
}

sockaddr_in Loopback(uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

class Watcher {
  public:
    Watcher() : descriptor_(socket(AF_INET, SOCK_STREAM, 0)) {}
    ~Watcher() { close(descriptor_); }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    bool Connect(uint16_t port) const {
        const sockaddr_in address = Loopback(port);
        return connect(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

    /** Connects, and returns what comes back up to the monitor's end of the connection. */
    std::string Ping(uint16_t port, const std::string& bytes) const {
        EXPECT_TRUE(Connect(port));
        send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        shutdown(descriptor_, SHUT_WR);
        return Answer();
    }

    std::string Answer() const {
        std::string answer;
        char byte = 0;
        while (recv(descriptor_, &byte, 1, 0) == 1) {
            answer += byte;
        }
        return answer;
    }

  private:
    int descriptor_;
};

}  // namespace

extern "C" int listen(int descriptor, int backlog) {
    const int result = static_cast<int>(syscall(SYS_listen, descriptor, backlog));
    sockaddr_in address{};
    socklen_t length = sizeof address;
    getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length);
    EXPECT_EQ(ntohl(address.sin_addr.s_addr), INADDR_LOOPBACK);
    listening_port = ntohs(address.sin_port);
    listening_port.notify_all();
    return result;
}

TEST(HeartbeatMonitor, EchoesFourBytesWhoeverElseIsConnectedAndSilent) {
    const uint16_t port = StartOnFreePort();
    const Watcher silent[100];
    for (const Watcher& each : silent) {
        ASSERT_TRUE(each.Connect(port));
    }
    EXPECT_EQ(silent[0].Answer(), "");  // the oldest ones make room
    const std::pair<std::string, std::string> cases[] = {
        {std::string("\0\xff\0\1", 4), std::string("\0\xff\0\1", 4)},
        {"12345", "1234"},
        {"123", ""},  // closes before the fourth byte
    };
    for (const auto& [bytes, answer] : cases) {
        EXPECT_EQ(Watcher().Ping(port, bytes), answer) << bytes;
    }
    EXPECT_THAT(SyslogLines(), testing::IsEmpty());
    now_of_test_us = 6'000'000;
    EXPECT_EQ(Watcher().Ping(port, "wake"), "wake");
    EXPECT_EQ(silent[99].Answer(), "");  // closed after its timeout
}

TEST(HeartbeatMonitor, WaitsForAPortThatIsTaken) {
    const int taken = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof address;
    ASSERT_EQ(bind(taken, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(getsockname(taken, reinterpret_cast<sockaddr*>(&address), &length), 0);
    const uint16_t port = ntohs(address.sin_port);
    on_sleep = Pause;
    ASSERT_EQ(StartHeartbeatMonitor(port), 0);
    while (sleeps < 3) {
        sched_yield();
    }
    EXPECT_THAT(SyslogLines(),
                testing::ElementsAre("4|Heartbeat monitor waits for its port: Bind failed at port [" +
                                     std::to_string(port) + "]"));
    close(taken);
    listening_port.wait(0);
    EXPECT_EQ(Watcher().Ping(port, "late"), "late");
    EXPECT_EQ(HeartbeatThreadRoutine(nullptr), nullptr);
    EXPECT_EQ(SyslogLines().back(), "4|Heartbeat monitor listener port not specified");
}
