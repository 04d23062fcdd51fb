#include <algorithm>
#include <iterator>

#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/getListApiMethod.h"
#include "arraySim/protocol/callContext.h"

// Calls that only look: Get, GetList, associations, and how objects become an answer.

namespace arraysim {

namespace {

using Replacements = std::vector<std::pair<std::string, std::string>>;

/** A copy of the object with other values, where it has such attributes. */
Object& Alter(Answer& answer, const Object& object, const Replacements& replacements) {
    Object& copy = answer.altered.emplace_back(object);
    for (const auto& [attribute, value] : replacements) {
        const std::optional<size_t> position = object.kind->FindAttribute(attribute);
        if (position && object.HasAttribute(object.kind->attributes[*position].name())) {
            copy.SetAttribute(object.kind->attributes[*position].name(), value);
        }
    }
    return copy;
}

/** The objects as faults want them. */
std::vector<BASEApiObject*> AlterAll(Answer& answer, const std::vector<Object*>& objects,
                                     const CallContext& context) {
    std::vector<BASEApiObject*> altered(objects.begin(), objects.end());
    for (size_t i = 0; i < objects.size(); ++i) {
        Replacements replacements = i == 0 ? context.bend.replaced_in_first : Replacements();
        replacements.insert(replacements.end(), context.style.replaced.begin(), context.style.replaced.end());
        if (!replacements.empty()) {
            altered[i] = &Alter(answer, *objects[i], replacements);
        }
    }
    return altered;
}

Answer AnswerWith(CallContext& context, const std::vector<Object*>& objects, bool is_list) {
    Answer answer;
    answer.form = std::make_unique<AnswerForm>(context.model.catalogue(), context.style);
    const bool has_filter = is_list && context.call->HasAttribute("Filter");
    auto result = std::make_unique<COMPObjectMethodReturn>(is_list, context.call.release());
    result->ownsObjects = false;
    result->SetForm(answer.form.get());
    result->AssignObjects(AlterAll(answer, objects, context));
    answer.objects = has_filter ? result->ObjectsToWrite().size() : objects.size();
    answer.result = std::move(result);
    return answer;
}

/** Objects of a selection in turn until the daemon's table is full, and then some. */
void Overfill(std::vector<Object*>& objects, size_t wanted) {
    const size_t distinct = objects.size();
    for (size_t i = 0; distinct > 0 && objects.size() < wanted; ++i) {
        objects.push_back(objects[i % distinct]);
    }
}

/** A list that is not what the caller meant would be worse than none. */
void CheckFilter(const BASEApiMethod& call) {
    const std::string text = call.GetAttribute("Filter");
    const auto* list = dynamic_cast<const GETLISTApiMethod*>(&call);
    if (list == nullptr || text.empty()) {
        return;
    }
    const std::unique_ptr<FILTERList> filter(list->GetFilter());
    if (!filter || filter->items.empty()) {
        throw ApiFailure("InvalidArguments", "'" + text + "' is no filter");
    }
}

bool HasValues(const CallContext& context, const Object& subject, const Object& object,
               const Assignments& conditions) {
    return std::all_of(conditions.begin(), conditions.end(), [&](const auto& condition) {
        return object.Text(condition.first) == ValueFor(context, subject, condition.second);
    });
}

bool IsList(const std::string& relation) {
    return relation.ends_with("List");
}

}  // namespace

Answer ObjectAnswer(CallContext& context, Object* object) {
    Answer answer;
    if (object != nullptr) {
        return AnswerWith(context, {object}, false);
    }
    answer.objects = 1;
    answer.result = std::make_unique<BASEApiMethodReturn>(true, context.call.release());
    return answer;
}

Answer ListAnswer(CallContext& context, const std::vector<Object*>& objects) {
    return AnswerWith(context, objects, true);
}

std::vector<Object*> ObjectsWith(const CallContext& context, const Object& subject,
                                 const Selection& selection, const Assignments& conditions) {
    std::vector<Object*> objects;
    for (Object& object : context.model.Objects(*selection.list)) {
        if (selection.Matches(*object.kind) && HasValues(context, subject, object, conditions)) {
            objects.push_back(&object);
        }
    }
    return objects;
}

Answer AnswerGetList(CallContext& context) {
    CheckFilter(*context.call);
    std::vector<Object*> objects;
    if (!context.bend.no_objects) {
        for (Object& object : context.model.Objects(*context.selection.list)) {
            if (context.selection.Matches(*object.kind)) {
                objects.push_back(&object);
            }
        }
    }
    // An array without a monitored UPS says so, where every other list is simply empty.
    if (objects.empty() && context.selection.Name() == "TsUps" && !context.bend.no_objects) {
        throw ApiFailure("ObjectNotAvailable", "No UPS is monitored");
    }
    if (context.bend.beyond_capacity) {
        Overfill(objects, context.selection.list->Capacity() + *context.bend.beyond_capacity);
    }
    return ListAnswer(context, objects);
}

Answer AnswerGet(CallContext& context) {
    return ObjectAnswer(context, &SubjectOf(context));
}

Answer AnswerAssociation(CallContext& context) {
    const std::string relation = context.call->GetCommandName();
    const Object& subject = SubjectOf(context);
    std::vector<Object*> objects;
    const Relation* known = CallTable::Builtin().FindRelation(context.selection.Name(), relation);
    if (known != nullptr) {
        objects = ObjectsWith(context, subject, known->target, known->conditions);
    } else if (relation == "Tessera" && context.model.Array() != nullptr) {
        objects.push_back(context.model.Array());
    }
    if (IsList(relation)) {
        return ListAnswer(context, objects);
    }
    if (objects.empty()) {
        throw ApiFailure(
            "ObjectNotAvailable",
            context.selection.Name() + " " + std::string(subject.Text("InstanceId")) + " has no " + relation);
    }
    return ObjectAnswer(context, objects.front());
}

}  // namespace arraysim
