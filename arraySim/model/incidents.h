#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "arraySim/model/model.h"

namespace arraysim {

/** How an object is. The words of `Status`. */
enum class Condition { kUp, kDown, kDegraded };

const char* ConditionText(Condition condition);
/** Without regard to letter case. */
std::optional<Condition> ConditionOf(std::string_view text);

/** Whether objects of the kind have a status at all. */
bool HasCondition(const Kind& kind);

/**
 * Puts an object into a condition, with everything that shows it: its own attributes (a disk that is down is
 * not healthy, a fan that is down stands still), then the status of the controller, enclosure, folder and
 * array that hold it. Adds no alert.
 */
void PutInto(Model& model, Object& object, Condition condition);

/** Brings a folder's status up to date with that of its disks. */
void FollowDisks(Model& model, Object& folder);

/** The attributes of an active alert about an object that is not up. */
GivenValues AlertAbout(const Model& model, const Object& object);

/** PutInto, and an alert. A controller with no room for one more loses its oldest. */
void FailObject(Model& model, Object& object, Condition condition);

/** Back to Up; its active alerts are no longer active. */
void RecoverObject(Model& model, Object& object);

}  // namespace arraysim
