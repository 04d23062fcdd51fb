#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arraySim/model/model.h"

namespace arraysim {

/** How many of everything. What hangs on a controller or an enclosure is counted for each of them. */
struct Preset {
    std::string_view name;
    std::string_view array_name;
    uint32_t controllers;
    uint32_t controller_fans;
    uint32_t controller_supplies;
    uint32_t controller_voltages;
    uint32_t controller_temperatures;
    uint32_t controller_alerts;
    uint32_t enclosures;
    uint32_t enclosure_fans;
    uint32_t enclosure_supplies;
    uint32_t enclosure_io_modules;
    uint32_t enclosure_temperatures;
    uint32_t enclosure_alarms;
    uint32_t disks;
    uint32_t folders;
    uint32_t volumes;
    uint32_t servers;
    uint32_t ups;
};

/** small, typical, full. */
std::span<const Preset> Presets();
std::optional<Preset> FindPreset(std::string_view name);

/** The array of a preset. Depends on nothing but the arguments. */
Model BuildPreset(const Catalogue& catalogue, const Preset& preset, uint64_t seed, uint32_t serial);

}  // namespace arraysim
