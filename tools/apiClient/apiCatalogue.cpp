#include "tools/apiClient/apiCatalogue.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "tools/apiClient/catalogueTable.h"

namespace apiclient {

namespace {

using What = CatalogueRow::What;

std::optional<int64_t> Rule(int64_t value) {
    return value == CatalogueRow::kNoRule ? std::nullopt : std::optional(value);
}

CatalogueAttribute ReadAttribute(const CatalogueRow& row) {
    return {.name = std::string(row.name),
            .kind = std::string(row.kind),
            .label = std::string(row.text),
            .table = std::string(row.table),
            .object = std::string(row.object),
            .invalid = std::string(row.invalid),
            .min = Rule(row.min),
            .max = Rule(row.max),
            .min_length = Rule(row.min_length),
            .max_length = Rule(row.max_length),
            .needed = row.what == What::kNeeded};
}

CatalogueCommand ReadCommand(const CatalogueRow& row) {
    return {.name = std::string(row.name),
            .is_association = false,
            .changes_state = row.what == What::kChange,
            .privilege = std::string(row.text),
            .arguments = {}};
}

CatalogueCommand ReadAssociation(const CatalogueRow& row) {
    CatalogueAttribute instance;
    instance.name = "InstanceId";
    instance.kind = "INSTANCEID";
    instance.label = "Instance ID";
    instance.needed = true;
    return {.name = std::string(row.name),
            .is_association = true,
            .changes_state = false,
            .privilege = "Reporter",
            .arguments = {instance}};
}

void AddRow(CatalogueObject& object, const CatalogueRow& row) {
    switch (row.what) {
        case What::kAttribute:
            object.attributes.push_back(ReadAttribute(row));
            break;
        case What::kNeeded:
        case What::kTaken:
            object.commands.back().arguments.push_back(ReadAttribute(row));
            break;
        case What::kAssociation:
            object.commands.push_back(ReadAssociation(row));
            break;
        default:
            object.commands.push_back(ReadCommand(row));
    }
}

Catalogue ReadCatalogue() {
    Catalogue catalogue;
    std::vector<CatalogueObject>* objects = nullptr;
    for (const CatalogueRow& row : kCatalogueRows) {
        if (row.what == What::kObject || row.what == What::kMethodObject) {
            objects = row.what == What::kObject ? &catalogue.objects : &catalogue.method_objects;
            objects->push_back({std::string(row.name), std::string(row.text), {}, {}});
        } else {
            AddRow(objects->back(), row);
        }
    }
    return catalogue;
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

}  // namespace apiclient
