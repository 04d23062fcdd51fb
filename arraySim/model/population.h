#pragma once

#include <cstdint>

#include "arraySim/model/model.h"

namespace arraysim {

/** Makes an object and puts it at the end of its list, and with a disk its configuration, with a folder its
    storage usage. The index must be free. */
Object& AddObject(Model& model, const Kind& kind, uint32_t index, const GivenValues& values);

/** Takes an object away with what came with it. */
void RemoveObject(Model& model, const Object& object);

}  // namespace arraysim
