#include "arraySim/protocol/callContext.h"

#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "arraySim/model/numbers.h"
#include "arraySim/model/objectMaker.h"

namespace arraysim {

namespace {

void CheckSerial(const Model& model, const std::optional<uint32_t>& serial, const std::string& instance_id) {
    if (!serial) {
        throw ApiFailure("InvalidArguments", "'" + instance_id + "' is no instance of an object");
    }
    if (*serial != model.serial()) {
        throw ApiFailure("InvalidTessera", "Array " + std::to_string(*serial) + " is not known");
    }
}

uint32_t IndexInInstanceId(const Model& model, const Selection& selection, const std::string& instance_id) {
    const size_t dot = instance_id.find('.');
    const std::optional<uint32_t> serial = ReadUint32(std::string_view(instance_id).substr(0, dot));
    const bool is_single = selection.kind != nullptr && !selection.kind->key;
    if (is_single && dot == std::string::npos) {
        CheckSerial(model, serial, instance_id);
        return 1;
    }
    const std::optional<uint32_t> index =
        dot == std::string::npos ? std::nullopt : ReadUint32(std::string_view(instance_id).substr(dot + 1));
    CheckSerial(model, index ? serial : std::nullopt, instance_id);
    return *index;
}

/** The references in the text of an argument; none when it is no argument of that kind. */
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

/** Null for a kind of object that the simulator has none of. */
Object* Resolve(Model& model, const APIObjectInstance& reference) {
    if (const std::optional<Selection> selection = model.catalogue().Find(reference.objectType)) {
        return &ObjectNamed(model, *selection, reference.instanceId);
    }
    const std::string& id = reference.instanceId;
    CheckSerial(model, ReadUint32(std::string_view(id).substr(0, id.find('.'))), id);
    return nullptr;
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

std::vector<Object*> Referred(const CallContext& context, const std::string& argument) {
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
        Referred(context, attribute->GetXmlName());
    }
}

std::string ValueFor(const CallContext& context, const Object& subject, const std::string& value) {
    if (value == "@today") {
        return DateText(0, 0);
    }
    if (!value.starts_with('@')) {
        return value;
    }
    const std::string name = value.substr(1);
    return context.call->HasAttribute(name) ? context.call->GetAttribute(name)
                                            : std::string(subject.Text(name));
}

}  // namespace arraysim
