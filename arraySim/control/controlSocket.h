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
 * Takes commands on a local stream socket, one per connection: the peer sends a line and gets the reply, then
 * the connection is closed. The first line of a reply is "ok" or "error: ..."; data follows. The socket file
 * has mode 0600 and exists from Start to Stop.
 */
class ControlServer {
  public:
    ControlServer(Simulator& simulator, std::string path);
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /** Throws ControlError, also when another simulator answers at the path. */
    void Start();
    /** Waits for the command that is being carried out. */
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

/** Sends one command to a running simulator. Throws ControlError when none answers. */
Reply Tell(const std::string& path, const std::string& line);

}  // namespace arraysim
