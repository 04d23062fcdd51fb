#include "arraySim/model/presets.h"

namespace arraysim {

namespace {

// `full` fills every table of the daemon to its last row.
constexpr Preset kPresets[] = {
    {.name = "small",
     .array_name = "tessera-lab",
     .controllers = 2,
     .controller_fans = 3,
     .controller_supplies = 2,
     .controller_voltages = 3,
     .controller_temperatures = 2,
     .controller_alerts = 5,
     .enclosures = 1,
     .enclosure_fans = 3,
     .enclosure_supplies = 2,
     .enclosure_io_modules = 2,
     .enclosure_temperatures = 3,
     .enclosure_alarms = 1,
     .disks = 12,
     .folders = 2,
     .volumes = 6,
     .servers = 5,
     .ups = 1},
    {.name = "typical",
     .array_name = "tessera-north",
     .controllers = 2,
     .controller_fans = 6,
     .controller_supplies = 2,
     .controller_voltages = 8,
     .controller_temperatures = 5,
     .controller_alerts = 150,
     .enclosures = 5,
     .enclosure_fans = 4,
     .enclosure_supplies = 2,
     .enclosure_io_modules = 2,
     .enclosure_temperatures = 6,
     .enclosure_alarms = 1,
     .disks = 120,
     .folders = 4,
     .volumes = 150,
     .servers = 40,
     .ups = 2},
    {.name = "full",
     .array_name = "tessera-max",
     .controllers = 2,
     .controller_fans = 6,
     .controller_supplies = 4,
     .controller_voltages = 10,
     .controller_temperatures = 7,
     .controller_alerts = 9000,
     .enclosures = 100,
     .enclosure_fans = 6,
     .enclosure_supplies = 4,
     .enclosure_io_modules = 2,
     .enclosure_temperatures = 22,
     .enclosure_alarms = 1,
     .disks = 2000,
     .folders = 500,
     .volumes = 2000,
     .servers = 500,
     .ups = 100},
};

}  // namespace

std::span<const Preset> Presets() {
    return kPresets;
}

std::optional<Preset> FindPreset(std::string_view name) {
    for (const Preset& preset : kPresets) {
        if (preset.name == name) {
            return preset;
        }
    }
    return std::nullopt;
}

}  // namespace arraysim
