#pragma once

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

#include "arraySim/control/simulator.h"

namespace arraysim {

class ControlError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * A server for commands on a local stream socket, one command per connection: the peer sends a line and
 * receives the reply, then the connection is closed. The first line of a reply is "ok" or "error: ..."; data
 * follows. The socket file has mode 0600 and exists from Start to Stop.
 */
class ControlServer {
  public:
    ControlServer(Simulator& simulator, std::string path);
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /** Starts the thread. Throws ControlError, also if another simulator responds at the path. */
    void Start();
    /** Waits for the current command and stops the thread. */
    void Stop();

  private:
    void Loop();
    void ServePeer(int descriptor);

    Simulator& simulator_;
    const std::string path_;
    int listener_ = -1;
    int wake_descriptor_ = -1;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

/** Sends one command to a running simulator and returns its reply. Throws ControlError if none responds. */
Reply Tell(const std::string& path, const std::string& line);

}  // namespace arraysim
