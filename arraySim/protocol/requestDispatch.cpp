#include "arraySim/protocol/requestDispatch.h"

#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"
#include "apiMgmt/apiStub/base/apiObjects/base/getListApiMethod.h"
#include "arraySim/protocol/apiCall.h"
#include "arraySim/protocol/associationTable.h"
#include "arraySim/protocol/commandTable.h"

namespace arraysim {

namespace {

// ---- GetList ----

/** Repeats the objects until there are `wanted`. */
void Overfill(std::vector<Object*>& objects, size_t wanted) {
    const size_t distinct = objects.size();
    for (size_t i = 0; distinct > 0 && objects.size() < wanted; ++i) {
        objects.push_back(objects[i % distinct]);
    }
}

/** Rejects an invalid filter: without it, the list would contain objects that were not requested. */
void CheckFilter(const BASEApiMethod& call) {
    const std::string text = call.GetAttribute("Filter");
    const auto* list = dynamic_cast<const GETLISTApiMethod*>(&call);
    if (list == nullptr || text.empty()) {
        return;
    }
    const std::unique_ptr<FILTERList> filter(list->GetFilter());
    if (!filter || filter->items.empty()) {
        throw ApiFailure("InvalidArguments", "'" + text + "' is not a valid filter");
    }
}

Response AnswerGetList(CallContext& context) {
    CheckFilter(*context.call);
    std::vector<Object*> objects;
    if (!context.alteration.no_objects) {
        for (Object& object : context.model.Objects(*context.selection.list)) {
            if (context.selection.Matches(*object.kind)) {
                objects.push_back(&object);
            }
        }
    }
    // Without a UPS, the array reports an error; any other list without objects is empty.
    if (objects.empty() && context.selection.Name() == "TsUps" && !context.alteration.no_objects) {
        throw ApiFailure("ObjectNotAvailable", "No UPS is monitored");
    }
    if (context.alteration.beyond_capacity) {
        Overfill(objects, context.selection.list->table->Capacity() + *context.alteration.beyond_capacity);
    }
    return ListResponse(context, objects);
}

// ---- Modify ----

/** Updates the array's name, which every object contains. */
void SpreadArrayName(Model& model, const std::string& name) {
    for (const ObjectList& list : model.catalogue().lists()) {
        for (Object& object : model.Objects(list)) {
            object.Put("TsName", name);
        }
    }
}

bool IsNamedByName(const Kind& kind) {
    const std::optional<size_t> position = kind.FindAttribute("InstanceName");
    return position && kind.attributes[*position].rule.text == "Name";
}

void ChangeAttribute(Model& model, Object& object, const std::string& attribute, const std::string& value) {
    object.Put(attribute, value);
    if (attribute == "Name" && IsNamedByName(*object.kind)) {
        object.Put("InstanceName", value);
    }
    if (attribute == "Name" && &object == model.Array()) {
        SpreadArrayName(model, value);
    }
    // The index of a reference is a separate attribute: `Folder` and `FolderIndex`.
    const auto* reference =
        dynamic_cast<const OBJECTApiAttribute*>(FindAttributeIn(object.kind->whole, attribute));
    if (reference != nullptr) {
        const std::unique_ptr<APIObjectInstance> instance = reference->FromText(value);
        const std::string id = instance ? instance->instanceId : std::string();
        const size_t dot = id.find('.');
        object.Put(attribute + "Index", dot == std::string::npos ? "0" : id.substr(dot + 1));
    }
}

/** Changes all attributes or none, because all were checked when the call was made. */
Response AnswerModify(CallContext& context) {
    Object& subject = SubjectOf(context);
    CheckLock(context, subject);
    size_t changes = 0;
    for (const Attribute& attribute : subject.kind->attributes) {
        const std::string& name = attribute.name();
        if (name != "InstanceId" && name != "ManagementApplication" && context.call->HasAttribute(name)) {
            ChangeAttribute(context.model, subject, name, context.call->GetAttribute(name));
            ++changes;
        }
    }
    if (changes == 0) {
        throw ApiFailure("InvalidArguments", "Missing attributes to modify");
    }
    return ObjectResponse(context, nullptr);
}

// ---- All calls ----

void CheckKey(const ApiRequest& request, const Session& session) {
    if (request.session_key.empty() || request.session_key != session.key) {
        throw ApiFailure("IllegalSessionKey", "The session key is not known");
    }
}

Response Dispatch(CallContext& context) {
    const std::string& command = context.call->GetCommandName();
    if (dynamic_cast<const BASEApiAssociation*>(context.call.get()) != nullptr) {
        return AnswerAssociation(context);
    }
    if (command == "GetList") {
        return AnswerGetList(context);
    }
    if (command == "Get") {
        return ObjectResponse(context, &SubjectOf(context));
    }
    CheckReferences(context);
    return command == "Modify" ? AnswerModify(context) : AnswerCommand(context);
}

}  // namespace

Response CarryOut(Model& model, const ApiRequest& request, const Session& session, const ObjectStyle& style,
                  const ListAlteration& alteration) {
    try {
        CheckKey(request, session);
        std::unique_ptr<BASEApiMethod> call = MakeCall(request);
        CheckPrivilege(*call, session.privilege);
        CallContext context{model, std::move(call), *model.catalogue().FindRequestable(request.object), style,
                            alteration};
        return Dispatch(context);
    } catch (const ApiFailure& failure) {
        return FailureResponse(failure.code(), failure.what(), failure.detail());
    }
}

}  // namespace arraysim
