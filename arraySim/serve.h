#pragma once

#include <cstdint>
#include <string>

#include "arraySim/protocol/answer.h"

namespace arraysim {

/** What `serve` is told on its command line. */
struct ServeOptions {
    std::string preset = "typical";
    uint64_t seed = 1;
    std::string model_file;  ///< instead of a preset
    uint32_t serial = 64702;
    std::string socket_path = "/tmp/apimgr.sock";
    std::string control_path = "/tmp/arraySim.ctl";
    std::string key;                       ///< empty: the trusted key of this machine
    int privilege = USER_PRIVILEGE_ADMIN;  ///< of who has the key
    Spelling spelling = Spelling::kApi;
    std::string scenario_file;
    std::string events_path;  ///< where the daemon takes events; empty: they are not sent
    bool trace = false;
};

/** Exit statuses of the program. */
enum ExitStatus {
    kGood = 0,
    kFailed = 1,  ///< the command or a step of the scenario failed, or the scenario has a mistake
    kUsage = 2,   ///< the command line is wrong
    kNoStart = 3  ///< model, key, scenario or sockets could not be had
};

/** Runs the simulator until SIGINT, SIGTERM or the command `quit`. */
ExitStatus Serve(const ServeOptions& options);

}  // namespace arraysim
