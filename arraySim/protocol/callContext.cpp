#include "arraySim/protocol/callContext.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "arraySim/model/numbers.h"
#include "arraySim/model/objectMaker.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

namespace {

void CheckSerial(const Model& model, const std::optional<uint32_t>& serial, const std::string& instance_id) {
    if (!serial) {
        throw ApiFailure("InvalidArguments", "'" + instance_id + "' is not an instance ID");
    }
    if (*serial != model.serial()) {
        throw ApiFailure("InvalidTessera", "Array " + std::to_string(*serial) + " is not known");
    }
}

uint32_t IndexInInstanceId(const Model& model, const Selection& selection, const std::string& instance_id) {
    const size_t dot = instance_id.find('.');
    const std::optional<uint32_t> serial = ParseUint32(std::string_view(instance_id).substr(0, dot));
    const bool is_single = selection.kind != nullptr && !selection.kind->key;
    if (is_single && dot == std::string::npos) {
        CheckSerial(model, serial, instance_id);
        return 1;
    }
    const std::optional<uint32_t> index =
        dot == std::string::npos ? std::nullopt : ParseUint32(std::string_view(instance_id).substr(dot + 1));
    CheckSerial(model, index ? serial : std::nullopt, instance_id);
    return *index;
}

/** Returns the references in an argument, or none if its type is not a reference. */
std::vector<std::unique_ptr<APIObjectInstance>> ReferencesIn(const BASEApiAttribute& attribute,
                                                             const std::string& text) {
    std::vector<std::unique_ptr<APIObjectInstance>> references;
    if (const auto* one = dynamic_cast<const OBJECTApiAttribute*>(&attribute)) {
        references.push_back(one->FromText(text));
        std::erase(references, nullptr);
    } else if (const auto* several = dynamic_cast<const OBJECTARRAYApiAttribute*>(&attribute)) {
        references = several->FromText(text);
    }
    return references;
}

/** Returns null for a kind that the simulator lacks. */
Object* Resolve(Model& model, const APIObjectInstance& reference) {
    if (const std::optional<Selection> selection = model.catalogue().Find(reference.objectType)) {
        return &ObjectNamed(model, *selection, reference.instanceId);
    }
    const std::string& id = reference.instanceId;
    CheckSerial(model, ParseUint32(std::string_view(id).substr(0, id.find('.'))), id);
    return nullptr;
}

using Replacements = std::vector<std::pair<std::string, std::string>>;

/** Copies an object and replaces values of attributes that it has. */
Object& Alter(Response& response, const Object& object, const Replacements& replacements) {
    Object& copy = response.altered.emplace_back(object);
    for (const auto& [attribute, value] : replacements) {
        const std::optional<size_t> position = object.kind->FindAttribute(attribute);
        if (position && object.HasAttribute(object.kind->attributes[*position].name())) {
            copy.SetAttribute(object.kind->attributes[*position].name(), value);
        }
    }
    return copy;
}

/** Returns the objects as altered by faults. */
std::vector<BASEApiObject*> AlterAll(Response& response, const std::vector<Object*>& objects,
                                     const CallContext& context) {
    std::vector<BASEApiObject*> altered(objects.begin(), objects.end());
    for (size_t i = 0; i < objects.size(); ++i) {
        Replacements replacements = i == 0 ? context.alteration.replaced_in_first : Replacements();
        replacements.insert(replacements.end(), context.style.replaced.begin(), context.style.replaced.end());
        if (!replacements.empty()) {
            altered[i] = &Alter(response, *objects[i], replacements);
        }
    }
    return altered;
}

Response ResponseWith(CallContext& context, const std::vector<Object*>& objects, bool is_list) {
    Response response;
    response.form = std::make_unique<ResponseForm>(context.model.catalogue(), context.style);
    const bool has_filter = is_list && context.call->HasAttribute("Filter");
    auto result = std::make_unique<COMPObjectMethodReturn>(is_list, context.call.release());
    result->ownsObjects = false;
    result->SetForm(response.form.get());
    result->AssignObjects(AlterAll(response, objects, context));
    response.objects = has_filter ? result->ObjectsToWrite().size() : objects.size();
    response.result = std::move(result);
    return response;
}

bool HasValues(const CallContext& context, const Object& subject, const Object& object,
               std::span<const AttributeValue> conditions) {
    return std::all_of(conditions.begin(), conditions.end(), [&](const AttributeValue& condition) {
        return condition.attribute.empty() ||
               object.Text(condition.attribute) == ValueFor(context, subject, condition.value);
    });
}

}  // namespace

Object& ObjectNamed(Model& model, const Selection& selection, const std::string& instance_id) {
    Object* object = model.Find(selection, IndexInInstanceId(model, selection, instance_id));
    if (object == nullptr) {
        throw ApiFailure("ObjectNotAvailable", selection.Name() + " " + instance_id + " does not exist");
    }
    return *object;
}

Object& SubjectOf(const CallContext& context) {
    for (const char* argument : {"InstanceId", "ObjectInstanceId"}) {
        if (context.call->HasAttribute(argument)) {
            return ObjectNamed(context.model, context.selection, context.call->GetAttribute(argument));
        }
    }
    Object* array = context.model.Array();
    if (array == nullptr) {
        throw ApiFailure("InvalidTessera", "There is no array object");
    }
    return *array;
}

std::vector<Object*> ReferencedObjects(const CallContext& context, const std::string& argument) {
    std::vector<Object*> objects;
    const BASEApiAttribute* attribute = context.call->FindAttribute(argument);
    if (attribute != nullptr) {
        for (const auto& reference : ReferencesIn(*attribute, context.call->GetAttribute(argument))) {
            objects.push_back(Resolve(context.model, *reference));
        }
    }
    std::erase(objects, nullptr);
    return objects;
}

void CheckReferences(const CallContext& context) {
    for (const BASEApiAttribute* attribute : context.call->GetAttributeList()) {
        ReferencedObjects(context, attribute->GetXmlName());
    }
}

void CheckLock(const CallContext& context, const Object& subject) {
    const std::string_view owner = subject.Text("ManagementApplication");
    if (context.call->ChangesState() && !owner.empty() &&
        context.call->GetAttribute("ManagementApplication") != owner) {
        throw ApiFailure("TesseraError", context.selection.Name() + " " +
                                             std::string(subject.Text("InstanceId")) + " is locked by '" +
                                             std::string(owner) + "'");
    }
}

std::string ValueFor(const CallContext& context, const Object& subject, std::string_view value) {
    if (value == "@today") {
        return FormatDate(0, 0);
    }
    if (!value.starts_with('@')) {
        return std::string(value);
    }
    const std::string name(value.substr(1));
    return context.call->HasAttribute(name) ? context.call->GetAttribute(name)
                                            : std::string(subject.Text(name));
}

Response ObjectResponse(CallContext& context, Object* object) {
    Response response;
    if (object != nullptr) {
        return ResponseWith(context, {object}, false);
    }
    response.objects = 1;
    response.result = std::make_unique<BASEApiMethodReturn>(true, context.call.release());
    return response;
}

Response ListResponse(CallContext& context, const std::vector<Object*>& objects) {
    return ResponseWith(context, objects, true);
}

std::vector<Object*> ObjectsWith(const CallContext& context, const Object& subject,
                                 const Selection& selection, std::span<const AttributeValue> conditions) {
    std::vector<Object*> objects;
    for (Object& object : context.model.Objects(*selection.list)) {
        if (selection.Matches(*object.kind) && HasValues(context, subject, object, conditions)) {
            objects.push_back(&object);
        }
    }
    return objects;
}

}  // namespace arraysim
