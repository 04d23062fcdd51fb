#include "tools/apiClient/apiCatalogue.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"
#include "tools/apiClient/catalogueTable.h"

namespace apiclient {

namespace {

using What = CatalogueRow::What;

/** Returns the descriptors of a class that the library knows by that name. */
template <class Base>
const ATTRIBUTEList& DescriptorsOf(const std::string& name) {
    return APIObjectFactory<Base>::Instance().Create(name)->GetAttributeList();
}

CatalogueAttribute ReadAttribute(const CatalogueRow& row, const ATTRIBUTEList& descriptors) {
    const BASEApiAttribute* descriptor = FindAttributeIn(descriptors, row.name);
    return {.name = std::string(row.name),
            .kind = std::string(row.kind),
            .label = std::string(row.text),
            .table = std::string(row.table),
            .object = std::string(row.object),
            // Classes do not describe the instance ID of a call.
            .descriptor = descriptor == nullptr ? &BASEApiAssociation::InstanceIdAttribute() : descriptor,
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
    instance.descriptor = &BASEApiAssociation::InstanceIdAttribute();
    instance.needed = true;
    return {.name = std::string(row.name),
            .is_association = true,
            .changes_state = false,
            .privilege = "Reporter",
            .arguments = {instance}};
}

class CatalogueReader {
  public:
    Catalogue Read() {
        for (const CatalogueRow& row : kCatalogueRows) {
            AddRow(row);
        }
        return std::move(catalogue_);
    }

  private:
    void AddRow(const CatalogueRow& row) {
        switch (row.what) {
            case What::kObject:
                BeginObject(catalogue_.objects, row, DescriptorsOf<BASEApiObject>(std::string(row.name)));
                break;
            case What::kMethodObject:
                BeginObject(catalogue_.method_objects, row,
                            DescriptorsOf<BASEApiMethodObject>(std::string(row.name)));
                break;
            case What::kAttribute:
                object_->attributes.push_back(ReadAttribute(row, *descriptors_));
                break;
            case What::kNeeded:
            case What::kTaken:
                object_->commands.back().arguments.push_back(ReadAttribute(row, *descriptors_));
                break;
            case What::kAssociation:
                object_->commands.push_back(ReadAssociation(row));
                break;
            default:
                object_->commands.push_back(ReadCommand(row));
                descriptors_ = &DescriptorsOf<BASEApiMethod>(MethodClass(object_->name, row.name));
        }
    }

    void BeginObject(std::vector<CatalogueObject>& objects, const CatalogueRow& row,
                     const ATTRIBUTEList& descriptors) {
        object_ =
            &objects.emplace_back(CatalogueObject{std::string(row.name), std::string(row.text), {}, {}});
        descriptors_ = &descriptors;
    }

    Catalogue catalogue_;
    CatalogueObject* object_ = nullptr;           ///< the one being read
    const ATTRIBUTEList* descriptors_ = nullptr;  ///< of the class that the attributes belong to
};

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

std::string MethodClass(const std::string& object, std::string_view command) {
    return "API" + object + std::string(command) + "Method";
}

const Catalogue& ApiCatalogue() {
    static const Catalogue catalogue = CatalogueReader().Read();
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
