#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "arraySim/protocol/response.h"

namespace arraysim {

/** A call that is being carried out. */
struct CallContext {
    Model& model;
    std::unique_ptr<BASEApiMethod> call;  ///< becomes part of the response
    Selection selection;                  ///< the object of the call
    const ObjectStyle& style;
    const ListAlteration& alteration;
};

// ---- Objects of the model. All throw ApiFailure if an object does not exist. ----

/** Returns the object with an instance ID: "<serial>.<index>", or "<serial>" if only one exists. */
Object& ObjectNamed(Model& model, const Selection& selection, const std::string& instance_id);

/** Returns the instance of the call, or the array if it names none. */
Object& SubjectOf(const CallContext& context);

/** Returns the objects that an argument refers to. Ignores references to a kind that the simulator lacks. */
std::vector<Object*> ReferencedObjects(const CallContext& context, const std::string& argument);

/** Checks that every reference of the call is to an existing object of this array. */
void CheckReferences(const CallContext& context);

/** Throws ApiFailure if another application has locked the subject that the call changes. */
void CheckLock(const CallContext& context, const Object& subject);

// ---- The language of the tables ----

/** Evaluates a value: a literal string, @today, or @NAME for an argument of the call, else an attribute of
   the subject. */
std::string ValueFor(const CallContext& context, const Object& subject, std::string_view value);

/** An attribute and its value, for ValueFor. */
struct AttributeValue {
    std::string_view attribute;  ///< empty: matches every object
    std::string_view value;
};

/** Returns the objects of a selection whose attributes have these values. */
std::vector<Object*> ObjectsWith(const CallContext& context, const Object& subject,
                                 const Selection& selection, std::span<const AttributeValue> conditions);

// ---- Responses ----

/** Returns a response with an object, or with none (null) if the call has no result. */
Response ObjectResponse(CallContext& context, Object* object);
Response ListResponse(CallContext& context, const std::vector<Object*>& objects);

}  // namespace arraysim
