#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/model/model.h"

namespace arraysim {

/** More bytes of a trap command the daemon does not look at. */
inline constexpr size_t kGreatestEventText = 500;

/**
 * What a change of the model gives the daemon to hear. Made before the change, it remembers how everything
 * is whose changes are reported. Objects that have come or gone meanwhile are no change.
 */
class StatusWatch {
  public:
    explicit StatusWatch(const Model& model);

    /** The trap commands for all that differs now, in the order of the lists, parts before what holds them.
     */
    std::vector<std::string> Changes(const Model& model) const;

  private:
    struct Watched {
        uint32_t index;
        std::optional<std::string> value;
    };

    std::vector<std::vector<Watched>> before_;  ///< by list, in the order of its objects
};

/** Trap command that carries a text and speaks of no object. */
std::string MiscEvent(const Model& model, std::string_view text);

/** Trap command about a device of a SCSI initiator; disk_row 0: no disk is concerned. */
std::string ScsiDeviceEvent(const Model& model, uint32_t type, uint32_t status, uint32_t disk_row);

}  // namespace arraysim
