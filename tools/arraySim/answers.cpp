#include "tools/arraySim/answers.h"

#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/arraySim/numbers.h"

namespace arraysim {

namespace {

/** Attributes of the array object that may be changed, with the bounds of their length in bytes. */
struct Changeable {
    const char* attribute;
    size_t shortest;
    size_t longest;
    const char* forbidden;
};
constexpr Changeable kChangeable[] = {
    {"Name", 1, 64, "<>&"},
    {"Location", 0, 240, ""},
    {"Contact", 0, 240, ""},
};

void CheckKey(const ApiRequest& request, const std::string& session_key) {
    if (request.session_key.empty() || request.session_key != session_key) {
        throw ApiFailure("IllegalSessionKey", "The session key is not known");
    }
}

void CheckForm(const ApiRequest& request) {
    if (request.command_type != "Method") {
        throw ApiFailure("MethodNotAvailable",
                         "Only methods are answered, no '" + request.command_type + "'");
    }
    if (ParseBool(request.async)) {
        throw ApiFailure("InvalidArguments", "Commands are carried out at once, not asynchronously");
    }
    if (request.encode_type != "xml") {
        throw ApiFailure("InvalidArguments",
                         "Objects are written as xml, not as '" + request.encode_type + "'");
    }
}

[[noreturn]] void FailMethod(const Selection& selection, const std::string& command) {
    throw ApiFailure("MethodNotAvailable", selection.Name() + " has no command '" + command + "'");
}

/** Objects one after the other, the first in a style of its own. */
void AppendObjects(std::string& xml, const std::vector<const Object*>& objects, const ObjectStyle& style,
                   const ListBend& bend) {
    ObjectStyle first_style = style;
    first_style.replaced.insert(first_style.replaced.begin(), bend.replaced_in_first.begin(),
                                bend.replaced_in_first.end());
    for (const Object* object : objects) {
        AppendObject(xml, *object, object == objects.front() ? first_style : style);
    }
}

/** A list that takes the objects of a selection in turn until it is full, and then some. */
std::vector<const Object*> ObjectsToList(const Model& model, const Selection& selection,
                                         const ListBend& bend) {
    std::vector<const Object*> objects;
    if (bend.no_objects) {
        return objects;
    }
    for (const Object& object : model.Objects(*selection.list)) {
        if (selection.Matches(*object.kind)) {
            objects.push_back(&object);
        }
    }
    if (bend.beyond_capacity && !objects.empty()) {
        const size_t distinct = objects.size();
        const size_t wanted = selection.list->Capacity() + *bend.beyond_capacity;
        for (size_t i = 0; objects.size() < wanted; ++i) {
            objects.push_back(objects[i % distinct]);
        }
    }
    return objects;
}

ApiAnswer GetList(const Model& model, const ApiRequest& request, const Selection& selection,
                  const ObjectStyle& style, const ListBend& bend) {
    if (selection.list->unlisted) {
        FailMethod(selection, request.command);
    }
    if (!request.Attribute("Filter").empty()) {
        throw ApiFailure("InvalidArguments", "Filters are not answered");
    }
    const std::vector<const Object*> objects = ObjectsToList(model, selection, bend);
    // An array without a monitored UPS says so, where every other list is simply empty.
    if (objects.empty() && selection.Name() == "TsUps" && !bend.no_objects) {
        throw ApiFailure("ObjectNotAvailable", "No UPS is monitored");
    }
    ApiAnswer answer;
    answer.objects = objects.size();
    if (objects.empty()) {
        answer.result = "<ReturnObjectArray />";
        return answer;
    }
    answer.result = "<ReturnObjectArray>";
    AppendObjects(answer.result, objects, style, bend);
    answer.result += "</ReturnObjectArray>";
    return answer;
}

/** The API index in an instance id of this array: "<serial>.<index>", or "<serial>" where only one object
    exists. */
uint32_t IndexInInstanceId(const Model& model, const Selection& selection, const std::string& instance_id) {
    const bool single = selection.kind != nullptr && !selection.kind->key;
    if (single && ReadUint32(instance_id) == model.serial()) {
        return 1;
    }
    const size_t dot = instance_id.find('.');
    const std::optional<uint32_t> serial = ReadUint32(std::string_view(instance_id).substr(0, dot));
    const std::optional<uint32_t> index =
        dot == std::string::npos ? std::nullopt : ReadUint32(std::string_view(instance_id).substr(dot + 1));
    if (!serial || !index) {
        throw ApiFailure("InvalidArguments", "'" + instance_id + "' is no instance of an object");
    }
    if (*serial != model.serial()) {
        throw ApiFailure("InvalidTessera", "Array " + std::to_string(*serial) + " is not known");
    }
    return *index;
}

std::string RequiredInstanceId(const ApiRequest& request) {
    std::string instance_id = request.Attribute("InstanceId");
    if (instance_id.empty()) {
        throw ApiFailure("InvalidValue", "Required attribute InstanceId not set");
    }
    return instance_id;
}

ApiAnswer Get(const Model& model, const ApiRequest& request, const Selection& selection,
              const ObjectStyle& style, const ListBend& bend) {
    const std::string instance_id = RequiredInstanceId(request);
    const Object* object = model.Find(selection, IndexInInstanceId(model, selection, instance_id));
    if (object == nullptr) {
        throw ApiFailure("ObjectNotAvailable", selection.Name() + " " + instance_id + " does not exist");
    }
    ApiAnswer answer;
    answer.objects = 1;
    answer.result = "<ReturnObject>";
    AppendObjects(answer.result, {object}, style, bend);
    answer.result += "</ReturnObject>";
    return answer;
}

const Changeable& ChangeableNamed(const std::string& attribute) {
    for (const Changeable& each : kChangeable) {
        if (attribute == each.attribute) {
            return each;
        }
    }
    throw ApiFailure("InvalidArguments", "Attribute " + attribute + " cannot be modified");
}

void CheckValue(const Changeable& bounds, const std::string& value) {
    const std::string opening = FormatString("Attribute \"%s\" was \"%s\"", bounds.attribute, value.c_str());
    if (value.size() < bounds.shortest || value.size() > bounds.longest) {
        throw ApiFailure(
            "ParsingError",
            opening + FormatString(" [%zu characters long], but must be a string of %zu to %zu characters",
                                   value.size(), bounds.shortest, bounds.longest));
    }
    if (value.find_first_of(bounds.forbidden) != std::string::npos) {
        throw ApiFailure("ParsingError",
                         opening + ", but cannot contain these characters: " + bounds.forbidden);
    }
}

/** Every object carries the array's name. */
void SpreadArrayName(Model& model, Object& array) {
    const std::string name(array.Text("Name"));
    array.Put("InstanceName", name);
    for (const ObjectList& list : model.catalogue().lists()) {
        for (Object& object : model.Objects(list)) {
            object.Put("TsName", name);
        }
    }
}

/** All attributes are checked before the first is changed. */
ApiAnswer ModifyArray(Model& model, const ApiRequest& request) {
    const std::string instance_id = RequiredInstanceId(request);
    Object* array = model.Array();
    if (array == nullptr || ReadUint32(instance_id) != model.serial()) {
        throw ApiFailure("InvalidTessera", "Array '" + instance_id + "' is not known");
    }
    size_t changes = 0;
    for (const auto& [attribute, value] : request.attributes) {
        if (attribute != "InstanceId" && attribute != "LiteObj") {
            CheckValue(ChangeableNamed(attribute), value);
            ++changes;
        }
    }
    if (changes == 0) {
        throw ApiFailure("InvalidArguments", "Nothing to modify was given");
    }
    for (const auto& [attribute, value] : request.attributes) {
        if (attribute != "InstanceId" && attribute != "LiteObj") {
            array->Put(attribute, value);
        }
    }
    if (request.attributes.count("Name") > 0) {
        SpreadArrayName(model, *array);
    }
    ApiAnswer answer;
    answer.objects = 1;
    return answer;
}

}  // namespace

ApiAnswer CarryOut(Model& model, const ApiRequest& request, const std::string& session_key,
                   const ObjectStyle& style, const ListBend& bend) {
    CheckKey(request, session_key);
    CheckForm(request);
    const std::optional<Selection> selection = model.catalogue().FindRequestable(request.object);
    if (!selection) {
        throw ApiFailure("ObjectNotAvailable", "Object '" + request.object + "' is not known");
    }
    if (request.command == "GetList") {
        return GetList(model, request, *selection, style, bend);
    }
    if (request.command == "Get") {
        return Get(model, request, *selection, style, bend);
    }
    if (request.command == "Modify" && selection->Name() == "Tessera") {
        return ModifyArray(model, request);
    }
    FailMethod(*selection, request.command);
}

}  // namespace arraysim
