#pragma once

#include "arraySim/model/conditions.h"
#include "arraySim/model/model.h"

namespace arraysim {

/**
 * Puts an object into a condition, with everything that shows it: its own attributes (a disk that is down is
 * not healthy, a fan that is down stands still), then the status of the controller, enclosure, folder and
 * array that hold it. Adds no alert.
 */
void SetCondition(Model& model, Object& object, Condition condition);

/** Brings a folder's status up to date with that of its disks. */
void UpdateFromDisks(Model& model, Object& folder);

/** The attributes of an active alert about an object that is not up. */
GivenValues AlertAbout(const Model& model, const Object& object);

/** SetCondition, and an alert. A controller with no room for one more loses its oldest. */
void FailObject(Model& model, Object& object, Condition condition);

/** Back to Up; its active alerts are no longer active. */
void RecoverObject(Model& model, Object& object);

}  // namespace arraysim
