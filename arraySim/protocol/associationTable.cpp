#include "arraySim/protocol/associationTable.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

namespace {

/** An association, which leads to the objects of a kind whose attributes have these values. */
struct AssociationRow {
    std::string_view object;
    std::string_view association;
    std::string_view target;
    AttributeValue conditions[2] = {};
};

// `Tessera` always leads to the array and needs no row. Other associations without a row lead to no objects.
constexpr AssociationRow kAssociations[] = {
    {"Tessera", "ActiveAlertList", "TsAlert", {{"Type", "Alert"}, {"Active", "True"}}},
    {"Tessera", "AlertList", "TsAlert", {{"Type", "Alert"}}},
    {"Tessera", "ControllerCacheCardList", "TsControllerCacheCard"},
    {"Tessera", "ControllerFanSensorList", "TsControllerFanSensor"},
    {"Tessera", "ControllerList", "TsController"},
    {"Tessera", "ControllerPowerSupplyList", "TsControllerPowerSupply"},
    {"Tessera", "ControllerTemperatureSensorList", "TsControllerTemperatureSensor"},
    {"Tessera", "ControllerVoltageSensorList", "TsControllerVoltageSensor"},
    {"Tessera", "DiskConfigurationList", "TsDiskConfiguration"},
    {"Tessera", "DiskFolderList", "TsDiskFolder"},
    {"Tessera", "DiskList", "TsDisk"},
    {"Tessera", "EnclosureAudibleAlarmList", "TsEnclosureAudibleAlarm"},
    {"Tessera", "EnclosureCoolingFanSensorList", "TsEnclosureCoolingFanSensor"},
    {"Tessera", "EnclosureIoModuleList", "TsEnclosureIoModule"},
    {"Tessera", "EnclosureList", "TsEnclosure"},
    {"Tessera", "EnclosurePowerSupplyList", "TsEnclosurePowerSupply"},
    {"Tessera", "EnclosureTemperatureSensorList", "TsEnclosureTemperatureSensor"},
    {"Tessera", "HistoricalAlertList", "TsAlert", {{"Type", "Alert"}, {"Active", "False"}}},
    {"Tessera", "IndicationAlertList", "TsAlert", {{"Type", "Indication"}}},
    {"Tessera", "ObjectCount", "TsObjectCount"},
    {"Tessera", "PhysicalServerList", "TsPhysicalServer"},
    {"Tessera", "RemoteTesseraList", "TsRemoteTessera"},
    {"Tessera", "ServerClusterList", "TsServerCluster"},
    {"Tessera", "ServerList", "TsServer"},
    {"Tessera", "TwinVolumeList", "TsVolume", {{"TwinVolume", "True"}}},
    {"Tessera", "UnassignedDiskList", "TsDisk", {{"Managed", "False"}}},
    {"Tessera", "UpsList", "TsUps"},
    {"Tessera", "VirtualServerList", "TsVirtualServer"},
    {"Tessera", "VolumeList", "TsVolume"},

    {"TsAlert", "TsObjectList", "TsController", {{"Index", "@ControllerIndex"}}},

    {"TsController", "CacheCard", "TsControllerCacheCard", {{"ControllerIndex", "@Index"}}},
    {"TsController", "FanSensorList", "TsControllerFanSensor", {{"ControllerIndex", "@Index"}}},
    {"TsController", "PowerSupplyList", "TsControllerPowerSupply", {{"ControllerIndex", "@Index"}}},
    {"TsController",
     "TemperatureSensorList",
     "TsControllerTemperatureSensor",
     {{"ControllerIndex", "@Index"}}},
    {"TsController", "VoltageSensorList", "TsControllerVoltageSensor", {{"ControllerIndex", "@Index"}}},

    {"TsControllerCacheCard", "Controller", "TsController", {{"Index", "@ControllerIndex"}}},

    {"TsControllerFanSensor", "Controller", "TsController", {{"Index", "@ControllerIndex"}}},

    {"TsControllerPowerSupply", "Controller", "TsController", {{"Index", "@ControllerIndex"}}},

    {"TsControllerTemperatureSensor", "Controller", "TsController", {{"Index", "@ControllerIndex"}}},

    {"TsControllerVoltageSensor", "Controller", "TsController", {{"Index", "@ControllerIndex"}}},

    {"TsEnclosure", "AudibleAlarmList", "TsEnclosureAudibleAlarm", {{"EnclosureIndex", "@Index"}}},
    {"TsEnclosure", "CoolingFanSensorList", "TsEnclosureCoolingFanSensor", {{"EnclosureIndex", "@Index"}}},
    {"TsEnclosure", "DiskList", "TsDisk", {{"EnclosureIndex", "@Index"}}},
    {"TsEnclosure", "IoModuleList", "TsEnclosureIoModule", {{"EnclosureIndex", "@Index"}}},
    {"TsEnclosure", "PowerSupplyList", "TsEnclosurePowerSupply", {{"EnclosureIndex", "@Index"}}},
    {"TsEnclosure", "TemperatureSensorList", "TsEnclosureTemperatureSensor", {{"EnclosureIndex", "@Index"}}},

    {"TsEnclosureAudibleAlarm", "Enclosure", "TsEnclosure", {{"Index", "@EnclosureIndex"}}},

    {"TsEnclosureCoolingFanSensor", "Enclosure", "TsEnclosure", {{"Index", "@EnclosureIndex"}}},

    {"TsEnclosureIoModule", "Enclosure", "TsEnclosure", {{"Index", "@EnclosureIndex"}}},

    {"TsEnclosurePowerSupply", "Enclosure", "TsEnclosure", {{"Index", "@EnclosureIndex"}}},

    {"TsEnclosureTemperatureSensor", "Enclosure", "TsEnclosure", {{"Index", "@EnclosureIndex"}}},

    {"TsDisk", "DiskConfiguration", "TsDiskConfiguration", {{"DiskIndex", "@Index"}}},
    {"TsDisk", "Enclosure", "TsEnclosure", {{"Index", "@EnclosureIndex"}}},

    {"TsDiskConfiguration", "Disk", "TsDisk", {{"Index", "@DiskIndex"}}},

    {"TsDiskFolder", "DiskList", "TsDisk", {{"DiskFolderIndex", "@Index"}}},
    {"TsDiskFolder", "SpareDiskList", "TsDisk", {{"DiskFolderIndex", "@Index"}, {"Spare", "True"}}},
    {"TsDiskFolder", "StorageUsage", "TsDiskFolderStorageUsage", {{"Index", "@Index"}}},

    {"TsDiskFolderStorageUsage", "TsDiskFolder", "TsDiskFolder", {{"Index", "@Index"}}},
};

bool IsValid(const Catalogue& catalogue, const AssociationRow& row) {
    const std::optional<Selection> target = catalogue.Find(row.target);
    return CreateAssociation(std::string(row.object), std::string(row.association)) && target &&
           std::all_of(std::begin(row.conditions), std::end(row.conditions), [&](const AttributeValue& each) {
               return each.attribute.empty() || catalogue.FindAttribute(*target, each.attribute) != nullptr;
           });
}

/** Throws CatalogueError for a row with a name that the API lacks, because it would lead to no objects. */
void CheckRows(const Catalogue& catalogue) {
    for (const AssociationRow& row : kAssociations) {
        if (!IsValid(catalogue, row)) {
            throw CatalogueError("the table of associations has an unknown name in the row of " +
                                 std::string(row.object) + " " + std::string(row.association));
        }
    }
}

/** Returns null for an association without a row. */
const AssociationRow* FindRow(const Catalogue& catalogue, std::string_view object,
                              std::string_view association) {
    [[maybe_unused]] static const bool checked = (CheckRows(catalogue), true);
    const auto* row = std::find_if(
        std::begin(kAssociations), std::end(kAssociations),
        [&](const AssociationRow& each) { return each.object == object && each.association == association; });
    return row == std::end(kAssociations) ? nullptr : row;
}

}  // namespace

Response AnswerAssociation(CallContext& context) {
    const std::string association = context.call->GetCommandName();
    const Catalogue& catalogue = context.model.catalogue();
    const Object& subject = SubjectOf(context);
    std::vector<Object*> objects;
    if (const AssociationRow* row = FindRow(catalogue, context.selection.Name(), association)) {
        objects = ObjectsWith(context, subject, *catalogue.Find(row->target), row->conditions);
    } else if (association == "Tessera" && context.model.Array() != nullptr) {
        objects.push_back(context.model.Array());
    }
    if (association.ends_with("List")) {
        return ListResponse(context, objects);
    }
    if (objects.empty()) {
        throw ApiFailure("ObjectNotAvailable", context.selection.Name() + " " +
                                                   std::string(subject.Text("InstanceId")) + " has no " +
                                                   association);
    }
    return ObjectResponse(context, objects.front());
}

}  // namespace arraysim
