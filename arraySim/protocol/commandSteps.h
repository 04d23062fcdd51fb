#pragma once

#include <optional>
#include <string_view>

#include "arraySim/protocol/callContext.h"

/** The steps of which the table of commands says what a command of the API does. */
namespace arraysim::step {

/** A step with its arguments; each function below says what they are. */
struct Step {
    using Run = std::optional<Answer> (*)(CallContext& context, Object& subject, const Step& step);

    Run run = nullptr;
    std::string_view first = {};
    std::string_view second = {};
    std::string_view third = {};
};

using Result = std::optional<Answer>;

// Steps act on the subject: the instance that the command names, or the array if it names none. A step that
// returns an answer ends the command, and so does one that throws ApiFailure. A VALUE is one for ValueFor.

/** ATTR VALUE: rejects the command if the attribute has this value. */
Result Unless(CallContext& context, Object& subject, const Step& step);
/** ATTR VALUE */
Result Set(CallContext& context, Object& subject, const Step& step);
/** ATTR: one more. */
Result Increment(CallContext& context, Object& subject, const Step& step);
/** ATTR: one less, but not below 0. */
Result Decrement(CallContext& context, Object& subject, const Step& step);
/** As the command `recover` of the control socket. */
Result Recover(CallContext& context, Object& subject, const Step& step);
/** As the command `fail`. */
Result Fail(CallContext& context, Object& subject, const Step& step);
/** Removes the subject. */
Result Remove(CallContext& context, Object& subject, const Step& step);
/** KIND [ATTR VALUE]: makes an object with every argument that is one of its attributes, and answers with it.
 */
Result Create(CallContext& context, Object& subject, const Step& step);
/** VALUE: answers with a Boolean, a number or else a string. */
Result Reply(CallContext& context, Object& subject, const Step& step);
/** KIND [ATTR VALUE]: answers with the objects that have this value, as the record of today. */
Result History(CallContext& context, Object& subject, const Step& step);
/** STATE TEXT: fails with this error state of the API. */
Result Reject(CallContext& context, Object& subject, const Step& step);
/** Changes nothing that the array shows. */
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
