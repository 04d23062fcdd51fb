#pragma once

#include <memory>
#include <string>
#include <vector>

#include "arraySim/protocol/answers.h"
#include "arraySim/protocol/callTable.h"

namespace arraysim {

/** One call on its way to an answer. */
struct CallContext {
    Model& model;
    std::unique_ptr<BASEApiMethod> call;  ///< becomes part of the answer
    Selection selection;                  ///< what the call names as its object
    const ObjectStyle& style;
    const ListBend& bend;
};

// ---- Objects of the model. All throw ApiFailure when there is none. ----

/** The one that an instance id of this array names: "<serial>.<index>", or "<serial>" where only one exists.
 */
Object& ObjectNamed(Model& model, const Selection& selection, const std::string& instance_id);

/** The instance that the call names, or the array when it names none. */
Object& SubjectOf(const CallContext& context);

/** The objects that an argument refers to, one or several. Objects that the model has not are left out,
    unless they are of a kind that it has. */
std::vector<Object*> Referred(const CallContext& context, const std::string& argument);

/** Every reference of the call is to this array, and to what exists. */
void CheckReferences(const CallContext& context);

/** What an assignment's value stands for: a text, @argument or @attribute, @today. */
std::string ValueFor(const CallContext& context, const Object& subject, const std::string& value);

// ---- Answers ----

/** One object, or none for a call without a result. */
Answer ObjectAnswer(CallContext& context, Object* object);
Answer ListAnswer(CallContext& context, const std::vector<Object*>& objects);

/** The objects of a selection whose attributes have these values. */
std::vector<Object*> ObjectsWith(const CallContext& context, const Object& subject,
                                 const Selection& selection, const Assignments& conditions);

// ---- Calls ----

Answer AnswerGetList(CallContext& context);
Answer AnswerGet(CallContext& context);
Answer AnswerAssociation(CallContext& context);
Answer AnswerModify(CallContext& context);
/** Any other command. */
Answer AnswerEffect(CallContext& context);
/** A command that is too special for data/calls.def. */
Answer AnswerItself(CallContext& context);

/** Steps that several calls have in common. */
void ChangeAttribute(Model& model, Object& object, const std::string& attribute, const std::string& value);

}  // namespace arraysim
