#pragma once

#include "arraySim/model/conditions.h"
#include "arraySim/model/model.h"

namespace arraysim {

/**
 * Sets the condition of an object and everything that shows it: its own attributes (a disk that is down is
 * not healthy, a fan that is down does not rotate), then the status of its controller, enclosure, folder and
 * the array. Adds no alert.
 */
void SetCondition(Model& model, Object& object, Condition condition);

/** Updates a folder's status from that of its disks. */
void UpdateFromDisks(Model& model, Object& folder);

/** Returns the attributes of an active alert about an object that is not Up. */
GivenValues AlertAbout(const Model& model, const Object& object);

/** Calls SetCondition and adds an alert. If the controller's list is full, its oldest alert is removed. */
void FailObject(Model& model, Object& object, Condition condition);

/** Sets the condition Up and deactivates the object's alerts. */
void RecoverObject(Model& model, Object& object);

}  // namespace arraysim
