#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "arraySim/protocol/answer.h"

namespace arraysim {

/** One call while it is carried out. */
struct CallContext {
    Model& model;
    std::unique_ptr<BASEApiMethod> call;  ///< becomes part of the answer
    Selection selection;                  ///< what the call names as its object
    const ObjectStyle& style;
    const ListAlteration& alteration;
};

// ---- Objects of the model. All throw ApiFailure if there is none. ----

/** Returns the object that an instance id of this array names: "<serial>.<index>", or "<serial>" where only
   one exists. */
Object& ObjectNamed(Model& model, const Selection& selection, const std::string& instance_id);

/** Returns the instance that the call names, or the array if it names none. */
Object& SubjectOf(const CallContext& context);

/** Returns the objects that an argument refers to. References to a kind that the simulator does not have are
    left out. */
std::vector<Object*> Referred(const CallContext& context, const std::string& argument);

/** Checks that every reference of the call is to this array, and to an object that exists. */
void CheckReferences(const CallContext& context);

/** Throws ApiFailure if another application has locked the subject that the call changes. */
void CheckLock(const CallContext& context, const Object& subject);

// ---- The language of the tables ----

/** Returns the meaning of a value: a string, @argument or else @attribute of the subject, @today. */
std::string ValueFor(const CallContext& context, const Object& subject, std::string_view value);

/** An attribute and its value, as above. */
struct AttributeValue {
    std::string_view attribute;  ///< empty: no condition
    std::string_view value;
};

/** Returns the objects of a selection whose attributes have these values. */
std::vector<Object*> ObjectsWith(const CallContext& context, const Object& subject,
                                 const Selection& selection, std::span<const AttributeValue> conditions);

// ---- Answers ----

/** Answers with one object, or with none for a call without a result. */
Answer ObjectAnswer(CallContext& context, Object* object);
Answer ListAnswer(CallContext& context, const std::vector<Object*>& objects);

}  // namespace arraysim
