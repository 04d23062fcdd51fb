#include "apiMgmt/common/utils/heartbeatMonitor.h"

#include <pthread.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <syslog.h>

#include <exception>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/socketUtils/tcpServerSocket.h"

int gPingListenPort = 0;

namespace {

constexpr timeval kPingTimeLimit{5, 0};
constexpr int64_t kPauseAfterFailedAccept_us = 10'000;
constexpr int64_t kPauseWithoutPort_us = 1'000'000;

void AnswerOnePing(TCPServerSocket& listener) {
    sockaddr_in peer;
    SocketWrapper connection(listener.Accept(peer));
    if (!connection.IsOpen()) {
        // With no descriptors left the connection stays in the queue and accept fails at once, each time.
        ClockSleepMicroseconds(kPauseAfterFailedAccept_us);
        return;
    }
    if (connection.SetReceiveTimeLimit(kPingTimeLimit) != 0) {
        return;
    }
    char ping[4];
    if (connection.ReadExact(ping, sizeof ping) == SocketWrapper::kSuccess) {
        connection.Write(ping, sizeof ping);
    }
}

[[noreturn]] void ServePings(int port) {
    TCPServerSocket listener(port, true);
    for (;;) {
        AnswerOnePing(listener);
    }
}

}  // namespace

int StartHeartbeatMonitor(int port) {
    gPingListenPort = port;
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, HeartbeatThreadRoutine, &gPingListenPort);
    if (error != 0) {
        syslog(LOG_WARNING,
               "Failed to initialize heartbeat monitor listener thread at port[%d]. Error code(%d).", port,
               error);
        return error;
    }
    pthread_detach(thread);  // never joined
    return 0;
}

void* HeartbeatThreadRoutine(void* argument) {
    NameThisThread("HeartBeat Monitor");
    if (argument == nullptr) {
        syslog(LOG_WARNING, "Heartbeat monitor listener port not specified");
        return nullptr;
    }
    // A predecessor that is slow to end may still hold the port.
    for (bool is_first = true;; is_first = false) {
        try {
            ServePings(*static_cast<const int*>(argument));
        } catch (const std::exception& error) {
            if (is_first) {
                syslog(LOG_WARNING, "Heartbeat monitor waits for its port: %s", error.what());
            }
            ClockSleepMicroseconds(kPauseWithoutPort_us);
        }
    }
}
