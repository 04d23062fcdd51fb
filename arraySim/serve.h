#pragma once

#include <cstdint>
#include <string>

#include "arraySim/protocol/response.h"

namespace arraysim {

/** The options of `serve`. */
struct ServeOptions {
    std::string preset = "typical";
    uint64_t seed = 1;
    std::string model_file;  ///< replaces the preset
    uint32_t serial = 64702;
    std::string socket_path = "/tmp/apimgr.sock";
    std::string control_path = "/tmp/arraySim.ctl";
    std::string key;                       ///< empty: the session key of this machine
    int privilege = USER_PRIVILEGE_ADMIN;  ///< of the key
    Spelling spelling = Spelling::kApi;
    std::string scenario_file;
    std::string events_path;  ///< the daemon's socket for events; empty: no events are sent
    bool trace = false;
};

/** Exit statuses of the program. */
enum ExitStatus {
    kGood = 0,
    kFailed = 1,  ///< the command or a step of the scenario failed, or the scenario is invalid
    kUsage = 2,   ///< the command line is invalid
    kNoStart = 3  ///< the model, key or scenario could not be read, or a socket not created
};

/** Runs the simulator until SIGINT, SIGTERM or the command `quit`. */
ExitStatus Serve(const ServeOptions& options);

}  // namespace arraysim
