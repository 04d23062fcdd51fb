#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arraySim/model/model.h"

namespace arraysim {

/** A size of the array. */
struct Preset {
    std::string_view name;
    std::string_view array_name;
    size_t column;  ///< of the table of sizes
};

/** Returns small, typical and full, which fills every table of the daemon to its last row. */
std::span<const Preset> Presets();
std::optional<Preset> FindPreset(std::string_view name);

/** Builds the array of a preset. The same arguments always give the same array. */
Model BuildPreset(const Catalogue& catalogue, const Preset& preset, uint64_t seed, uint32_t serial);

}  // namespace arraysim
