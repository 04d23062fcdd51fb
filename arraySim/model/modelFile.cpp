#include "arraySim/model/modelFile.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "apiMgmt/common/utils/textFile.h"
#include "arraySim/model/numbers.h"

namespace arraysim {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kKindMember = "kind";

Json ObjectToJson(const Object& object) {
    Json json = Json::object();
    if (object.kind->list->mixed) {
        json[kKindMember] = object.kind->name;
    }
    for (const Attribute& attribute : object.kind->attributes) {
        if (const std::optional<std::string_view> value = object.Value(attribute.name())) {
            json[attribute.name()] = std::string(*value);
        }
    }
    return json;
}

const Json& Member(const Json& json, const char* name) {
    const auto member = json.find(name);
    if (member == json.end()) {
        throw ModelFileError(std::string("missing member \"") + name + "\"");
    }
    return *member;
}

class ObjectReader {
  public:
    ObjectReader(const Catalogue& catalogue, const ObjectList& list) : catalogue_(catalogue), list_(list) {}

    Object Read(const Json& json) {
        ++row_;
        if (!json.is_object()) {
            Fail("not a JSON object");
        }
        Object object(KindFor(json));
        for (const auto& [name, value] : json.items()) {
            if (!(list_.mixed && name == kKindMember)) {
                Take(object, name, value);
            }
        }
        object.index = IndexOf(object);
        if (!indexes_.insert(object.index).second) {
            Fail("duplicate index " + std::to_string(object.index));
        }
        return object;
    }

  private:
    const Kind& KindFor(const Json& json) const {
        if (!list_.mixed) {
            return catalogue_.KindOf(list_.name);
        }
        const Json& name = Member(json, kKindMember);
        const std::optional<Selection> found =
            name.is_string() ? catalogue_.Find(name.get<std::string>()) : std::nullopt;
        if (!found || found->kind == nullptr || found->list != &list_) {
            Fail("the kind does not belong to this list");
        }
        return *found->kind;
    }

    void Take(Object& object, const std::string& name, const Json& value) const {
        const std::optional<size_t> position = object.kind->FindAttribute(name);
        if (!position) {
            Fail("unknown attribute \"" + name + "\"");
        }
        if (!value.is_string()) {
            Fail("attribute \"" + name + "\" must be a string");
        }
        object.Put(object.kind->attributes[*position].name(), value.get<std::string>());
    }

    uint32_t IndexOf(const Object& object) const {
        if (!object.kind->key) {
            return 1;
        }
        const std::string& key = object.kind->attributes[*object.kind->key].name();
        const std::optional<uint32_t> index = ParseUint32(object.Text(key));
        if (!index) {
            Fail("attribute \"" + key + "\" must contain a number");
        }
        return *index;
    }

    [[noreturn]] void Fail(const std::string& why) const {
        throw ModelFileError(list_.name + ", object " + std::to_string(row_) + ": " + why);
    }

    const Catalogue& catalogue_;
    const ObjectList& list_;
    std::set<uint32_t> indexes_;
    size_t row_ = 0;
};

const ObjectList& ListNamed(const Catalogue& catalogue, const std::string& name) {
    for (const ObjectList& list : catalogue.lists()) {
        if (list.name == name) {
            return list;
        }
    }
    throw ModelFileError("unknown list \"" + name + "\"");
}

Model FromJson(const Catalogue& catalogue, const Json& json) {
    const Json& serial = Member(json, "serial");
    if (!serial.is_number_unsigned() || serial.get<uint64_t>() > UINT32_MAX) {
        throw ModelFileError("\"serial\" must be a number from 0 to 4294967295");
    }
    Model model(catalogue, serial.get<uint32_t>());
    for (const auto& [name, objects] : Member(json, "objects").items()) {
        const ObjectList& list = ListNamed(catalogue, name);
        if (!objects.is_array()) {
            throw ModelFileError(name + ": not a JSON array");
        }
        ObjectReader reader(catalogue, list);
        for (const Json& object : objects) {
            model.Append(reader.Read(object));
        }
    }
    model.UpdateCounts();
    return model;
}

}  // namespace

std::string WriteModel(const Model& model) {
    std::string text = "{\"serial\": " + std::to_string(model.serial()) + ",\n \"objects\": {";
    const char* list_separator = "\n";
    for (const ObjectList& list : model.catalogue().lists()) {
        text += list_separator + ("  \"" + list.name + "\": [");
        const char* separator = "\n";
        for (const Object& object : model.Objects(list)) {
            text += separator + ("   " + ObjectToJson(object).dump());
            separator = ",\n";
        }
        text += ']';
        list_separator = ",\n";
    }
    return text + "\n }\n}\n";
}

Model ReadModel(const Catalogue& catalogue, std::string_view text) {
    try {
        const Json json = Json::parse(text);
        if (!json.is_object()) {
            throw ModelFileError("a model must be a JSON object");
        }
        return FromJson(catalogue, json);
    } catch (const nlohmann::json::exception& error) {
        throw ModelFileError(error.what());
    }
}

void WriteModelFile(const Model& model, const std::string& path) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << WriteModel(model);
    file.close();
    if (!file) {
        throw ModelFileError("cannot write " + path + ": " + std::strerror(errno));
    }
}

Model ReadModelFile(const Catalogue& catalogue, const std::string& path) {
    const std::optional<std::string> text = ReadTextFile(path);
    if (!text) {
        throw ModelFileError("cannot read " + path + ": " + std::strerror(errno));
    }
    try {
        return ReadModel(catalogue, *text);
    } catch (const ModelFileError& error) {
        throw ModelFileError(path + ": " + error.what());
    }
}

bool IsUtf8(const std::string& text) {
    try {
        static_cast<void>(Json(text).dump());
        return true;
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

}  // namespace arraysim
