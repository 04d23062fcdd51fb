#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/model/model.h"

namespace arraysim {

/** Maximum length of a trap command in bytes; the daemon ignores the rest. */
inline constexpr size_t kMaximumTrapCommand = 500;

/**
 * A record of all values whose changes are reported, from which the events are derived: construct it before a
 * change of the model. Objects that have been added or removed since cause no event.
 */
class StatusWatch {
  public:
    explicit StatusWatch(const Model& model);

    /** Returns the trap commands for all differences in the order of the lists, parts before parents. */
    std::vector<std::string> Changes(const Model& model) const;

  private:
    struct Watched {
        uint32_t index;
        std::optional<std::string> value;
    };

    std::vector<std::vector<Watched>> before_;  ///< by list, in the order of its objects
};

/** Returns a trap command that carries a string and is about no object. */
std::string MiscEvent(const Model& model, std::string_view text);

/** Returns a trap command about a device of a SCSI initiator. disk_row 0: no disk is concerned. */
std::string ScsiDeviceEvent(const Model& model, uint32_t type, uint32_t status, uint32_t disk_row);

}  // namespace arraysim
