#include "tools/apiClient/apiCatalogue.h"

#include <nlohmann/json.hpp>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

extern const std::string_view catalogue_text;

namespace {

using nlohmann::json;

std::optional<int64_t> Rule(const json& from, const char* key) {
    return from.contains(key) ? std::optional<int64_t>(from[key].get<int64_t>()) : std::nullopt;
}

CatalogueAttribute ReadAttribute(const json& from) {
    return {.name = from.at("name"),
            .kind = from.at("kind"),
            .label = from.at("label"),
            .table = from.value("table", ""),
            .object = from.value("object", ""),
            .invalid = from.value("invalid", ""),
            .min = Rule(from, "min"),
            .max = Rule(from, "max"),
            .minLength = Rule(from, "minLength"),
            .maxLength = Rule(from, "maxLength"),
            .needed = from.value("needed", false)};
}

std::vector<CatalogueAttribute> ReadAttributes(const json& from) {
    std::vector<CatalogueAttribute> attributes;
    for (const json& each : from) {
        attributes.push_back(ReadAttribute(each));
    }
    return attributes;
}

CatalogueCommand ReadCommand(const json& from) {
    return {.name = from.at("name"),
            .isAssociation = false,
            .changesState = from.at("changesState"),
            .privilege = from.at("privilege"),
            .arguments = ReadAttributes(from.at("arguments"))};
}

CatalogueCommand ReadAssociation(const json& name) {
    CatalogueAttribute instance;
    instance.name = "InstanceId";
    instance.kind = "INSTANCEID";
    instance.label = "Instance ID";
    instance.needed = true;
    return {.name = name,
            .isAssociation = true,
            .changesState = false,
            .privilege = "Reporter",
            .arguments = {instance}};
}

CatalogueObject ReadObject(const json& from) {
    CatalogueObject object{from.at("name"), from.at("text"), ReadAttributes(from.at("attributes")), {}};
    for (const json& each : from.value("commands", json::array())) {
        object.commands.push_back(ReadCommand(each));
    }
    for (const json& each : from.value("associations", json::array())) {
        object.commands.push_back(ReadAssociation(each));
    }
    return object;
}

std::vector<CatalogueObject> ReadObjects(const json& from) {
    std::vector<CatalogueObject> objects;
    for (const json& each : from) {
        objects.push_back(ReadObject(each));
    }
    return objects;
}

Catalogue ReadCatalogue() {
    const json whole = json::parse(catalogue_text);
    return {ReadObjects(whole.at("objects")), ReadObjects(whole.at("methodObjects"))};
}

}  // namespace

bool CatalogueAttribute::IsRequired() const {
    return needed && !BASEApiMethod::IsFilterAttribute(name);
}

ENUMTable CatalogueAttribute::Rows() const {
    return FindEnumeration(table);
}

const CatalogueCommand* CatalogueObject::FindCommand(std::string_view command) const {
    return FindNamed(commands, command);
}

const Catalogue& ApiCatalogue() {
    static const Catalogue catalogue = ReadCatalogue();
    return catalogue;
}

ENUMTable FindEnumeration(std::string_view name) {
    for (const ENUMNamedTable& each : APIEnumsIDStrList::gAllEnumTables) {
        if (CompareNoCase(each.name, name) == 0) {
            return each.rows;
        }
    }
    return {};
}
