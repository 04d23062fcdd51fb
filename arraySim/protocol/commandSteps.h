#pragma once

#include <optional>
#include <string_view>

#include "arraySim/protocol/callContext.h"

/** The steps from which the command table builds the commands of the API. */
namespace arraysim::step {

/** A step with its arguments, which each function below explains. */
struct Step {
    using Run = std::optional<Response> (*)(CallContext& context, Object& subject, const Step& step);

    Run run = nullptr;
    std::string_view first = {};
    std::string_view second = {};
    std::string_view third = {};
};

using Result = std::optional<Response>;

// A step acts on the subject: the instance of the command, or the array if it names none. A step that returns
// a response or throws ApiFailure ends the command. A VALUE is evaluated by ValueFor.

/** ATTR VALUE: rejects the command if the attribute has this value. */
Result Unless(CallContext& context, Object& subject, const Step& step);
/** ATTR VALUE: sets the attribute. */
Result Set(CallContext& context, Object& subject, const Step& step);
/** ATTR: adds 1. */
Result Increment(CallContext& context, Object& subject, const Step& step);
/** ATTR: subtracts 1 unless the value is 0. */
Result Decrement(CallContext& context, Object& subject, const Step& step);
/** Acts as the command `recover` of the control socket. */
Result Recover(CallContext& context, Object& subject, const Step& step);
/** Acts as the command `fail` of the control socket. */
Result Fail(CallContext& context, Object& subject, const Step& step);
/** Removes the subject. */
Result Remove(CallContext& context, Object& subject, const Step& step);
/** KIND [ATTR VALUE]: creates an object, sets each attribute that is an argument, and returns it. */
Result Create(CallContext& context, Object& subject, const Step& step);
/** VALUE: returns a Boolean, a number or a string. */
Result Reply(CallContext& context, Object& subject, const Step& step);
/** KIND [ATTR VALUE]: returns the objects that have this value, as today's record. */
Result History(CallContext& context, Object& subject, const Step& step);
/** STATE TEXT: fails with this error of the API. */
Result Reject(CallContext& context, Object& subject, const Step& step);
/** Does nothing, for commands without a visible effect. */
Result Nothing(CallContext& context, Object& subject, const Step& step);

// Whole commands that the steps above cannot express.

Result ReleaseDisks(CallContext& context, Object& subject, const Step& step);
Result RevertDisks(CallContext& context, Object& subject, const Step& step);
Result AddDisks(CallContext& context, Object& folder, const Step& step);
Result RemoveDisks(CallContext& context, Object& folder, const Step& step);
Result CreateFolder(CallContext& context, Object& subject, const Step& step);
Result DeleteVolumes(CallContext& context, Object& subject, const Step& step);
Result RecycleVolumes(CallContext& context, Object& subject, const Step& step);
Result ExpandVolume(CallContext& context, Object& volume, const Step& step);
Result ExpandVolumeToSize(CallContext& context, Object& volume, const Step& step);
Result SupportedLanguages(CallContext& context, Object& subject, const Step& step);

}  // namespace arraysim::step
