#pragma once

#include <cstdint>
#include <string>

#include "arraySim/model/model.h"
#include "arraySim/model/random.h"

namespace arraysim {

/** The place of an object in the array, to which the rules of data/array/objects.def can refer. */
struct Place {
    uint32_t index = 0;
    uint32_t row = 1;  ///< among the children of the parent, or in the list
    uint32_t parent_index = 0;
    uint32_t parent_row = 0;
    std::string parent_name;
    std::string array_name;
    uint32_t serial = 0;
};

/** Creates an object by the rules of its kind. `given` values, which must be attributes of the kind, replace
    those of the rules. Throws RuleError for an unknown template. */
Object MakeObject(const Kind& kind, const Place& place, Random random, const GivenValues& given = {});

/** Returns the place at the end of the kind's list, below the parent that `given` names, else the first. */
Place PlaceAtEnd(const Model& model, const Kind& kind, uint32_t index, const GivenValues& given);

/** Appends a new object to its list; also creates the configuration of a disk and the storage usage of a
   folder. The index must be free. The reference is valid until the list changes. */
Object& AddObject(Model& model, const Kind& kind, uint32_t index, const GivenValues& values);

/** Removes an object, and the objects that AddObject created with it. */
void RemoveObject(Model& model, const Object& object);

/** Formats a time that many days before the array's calendar day. */
std::string FormatDate(int64_t days_before, int64_t second_of_day);
/** Formats a temperature: "25 C/77 F". */
std::string FormatTemperature(int64_t celsius);

}  // namespace arraysim
