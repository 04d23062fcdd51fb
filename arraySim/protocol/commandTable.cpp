#include "arraySim/protocol/commandTable.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "arraySim/protocol/apiRequest.h"
#include "arraySim/protocol/commandSteps.h"

namespace arraysim {

namespace {

using namespace step;

/** A command and its steps, of which the first without a function marks the end. */
struct CommandRow {
    std::string_view object;
    std::string_view command;
    Step steps[5];
};

// GetHistorical... and GetLatest... have a row only if the model has such records.
constexpr CommandRow kCommands[] = {
    {"Tessera", "Add", {{Reject, "TesseraError", "This manager serves its own array only"}}},
    {"Tessera", "AddController", {{Create, "TsController", "IpAddress", "@Eth0Ipv4Address"}}},
    {"Tessera", "AddIScsiTesseraConnections", {{Nothing}}},
    {"Tessera",
     "ChangeExpiredPassword",
     {{Unless, "UserPasswordExpired", "False"},
      {Set, "UserPasswordExpired", "False"},
      {Set, "UserPasswordExpiring", "False"}}},
    {"Tessera", "CheckVolumeSize", {{Reply, "True"}}},
    {"Tessera", "ClearData", {{Nothing}}},
    {"Tessera", "FactoryReset", {{Reject, "AuthorizationError", "The token for the reset is not valid"}}},
    {"Tessera", "GetCarryVolumeEncryptionEnabled", {{Reply, "False"}}},
    {"Tessera",
     "GetCarryVolumeEncryptionSecurityKey",
     {{Reject, "CarryVolumeNodeError", "The array has no carry volumes"}}},
    {"Tessera", "GetHistoricalObjectCount", {{History, "TsObjectCount"}}},
    {"Tessera", "GetScsiVpd", {{Reply, "@SerialNumber"}}},
    {"Tessera", "GetSupportedLanguages", {{SupportedLanguages}}},
    {"Tessera", "Recommend", {{Reject, "ObjectNotAvailable", "None of the names is known to the array"}}},
    {"Tessera",
     "Reconnect",
     {{Set, "HostOrIpAddress", "@HostOrIpAddress"},
      {Set, "UserName", "@UserName"},
      {Set, "Connected", "True"},
      {Set, "ConnectionError", ""}}},
    {"Tessera", "Remove", {{Reject, "TesseraError", "This manager serves its own array only"}}},
    {"Tessera", "RemoveIScsiTesseraConnections", {{Nothing}}},
    {"Tessera", "RequiresInitialConfiguration", {{Reply, "False"}}},
    {"Tessera", "Restart", {{Recover}}},
    {"Tessera", "SaveRestorePoints", {{Nothing}}},
    {"Tessera", "SecureDataUnlock", {{Set, "SecureDataLocked", "False"}}},
    {"Tessera",
     "SetRemoteDataCollectorHostOrIpAddress",
     {{Set, "RemoteDataCollectorHostOrIpAddress", "@RemoteDataCollectorHostOrIpAddress"}}},
    {"Tessera", "Shutdown", {{Unless, "Status", "Down"}, {Fail}}},
    {"Tessera", "ValidateEnclosureDiskPaths", {{Nothing}}},
    {"Tessera", "ValidateRestorePoints", {{Nothing}}},

    {"TsAlert", "Acknowledge", {{Set, "Acknowledged", "True"}}},
    {"TsAlert", "Delete", {{Unless, "Active", "True"}, {Remove}}},

    {"TsController", "Restart", {{Recover}, {Set, "LastBootTime", "@today"}}},
    {"TsController",
     "Shutdown",
     {{Unless, "ShutdownAvailable", "False"}, {Unless, "Status", "Down"}, {Fail}}},

    {"TsEnclosure", "Delete", {{Unless, "Status", "Up"}, {Remove}}},

    {"TsEnclosureAudibleAlarm", "RequestMuteOff", {{Set, "Muted", "NotMuted"}}},
    {"TsEnclosureAudibleAlarm", "RequestMuteOn", {{Set, "Muted", "Muted"}}},
    {"TsEnclosureAudibleAlarm", "RequestSwapClear", {{Set, "SwapDetected", "False"}}},

    {"TsEnclosureCoolingFanSensor", "RequestSwapClear", {{Set, "SwapDetected", "False"}}},

    {"TsEnclosureIoModule", "RequestSwapClear", {{Set, "SwapDetected", "False"}}},

    {"TsEnclosurePowerSupply", "RequestDCUndervoltageClear", {{Set, "DcUndervolt", "False"}}},
    {"TsEnclosurePowerSupply", "RequestSwapClear", {{Set, "SwapDetected", "False"}}},

    {"TsEnclosureTemperatureSensor",
     "RequestMinMaxClear",
     {{Set, "MinimumTemperature", "@Temperature"},
      {Set, "MaximumTemperature", "@Temperature"},
      {Set, "MinimumTemperatureTime", "@today"},
      {Set, "MaximumTemperatureTime", "@today"}}},
    {"TsEnclosureTemperatureSensor", "RequestSwapClear", {{Set, "SwapDetected", "False"}}},

    {"TsUps", "Create", {{Create, "TsUps", "Name", "@IpAddress"}}},
    {"TsUps", "Delete", {{Remove}}},

    {"TsDisk", "CheckReleaseDiskAvailability", {{Reply, "True"}}},
    {"TsDisk", "Delete", {{Unless, "Status", "Up"}, {Remove}}},
    {"TsDisk", "ReleaseDisk", {{ReleaseDisks}}},
    {"TsDisk", "Restore", {{Recover}}},
    {"TsDisk", "RevertToManaged", {{RevertDisks}}},
    {"TsDisk", "ScanForDisks", {{Nothing}}},

    {"TsDiskConfiguration", "RequestIndicatorOff", {{Set, "IndicatorOn", "False"}}},
    {"TsDiskConfiguration", "RequestIndicatorOn", {{Set, "IndicatorOn", "True"}}},
    {"TsDiskConfiguration", "RequestSwapClear", {{Set, "SwapDetected", "False"}}},

    {"TsDiskFolder", "AddDisks", {{AddDisks}}},
    {"TsDiskFolder", "AddToUserGroup", {{Nothing}}},
    {"TsDiskFolder", "Create", {{CreateFolder}}},
    {"TsDiskFolder", "CreateStorageType", {{Nothing}}},
    {"TsDiskFolder", "Delete", {{Unless, "OkToDelete", "False"}, {Remove}}},
    {"TsDiskFolder", "GenerateDefaultSettings", {{Nothing}}},
    {"TsDiskFolder", "GenerateRaidRebalanceStatus", {{Nothing}}},
    {"TsDiskFolder", "GetHistoricalStorageUsage", {{History, "TsDiskFolderStorageUsage", "Index", "@Index"}}},
    {"TsDiskFolder",
     "RaidRebalance",
     {{Unless, "RaidRebalanceRunning", "True"}, {Set, "RaidRebalanceRunning", "True"}}},
    {"TsDiskFolder", "RemoveDisks", {{RemoveDisks}}},
    {"TsDiskFolder",
     "StopRebalance",
     {{Unless, "RaidRebalanceRunning", "False"}, {Set, "RaidRebalanceRunning", "False"}}},

    {"TsDiskFolderStorageUsage", "GetFilter", {{History, "TsDiskFolderStorageUsage", "Index", "@Index"}}},

    {"TsServer", "AddManagementLock", {{Set, "ManagementApplication", "@ManagementApplication"}}},
    {"TsServer", "Delete", {{Unless, "DeleteAllowed", "False"}, {Remove}}},
    {"TsServer", "MapToVolume", {{Set, "Mapped", "True"}, {Increment, "VolumeCount"}}},
    {"TsServer", "RemoveManagementLock", {{Set, "ManagementApplication", ""}}},

    {"TsRemoteTessera", "Delete", {{Unless, "DeleteAllowed", "False"}, {Remove}}},
    {"TsRemoteTessera",
     "RemoveHba",
     {{Unless, "RemoveHbasAllowed", "False"}, {Unless, "HbaCount", "0"}, {Decrement, "HbaCount"}}},

    {"TsVolume", "AddManagementLock", {{Set, "ManagementApplication", "@ManagementApplication"}}},
    {"TsVolume", "AllocationMap", {{Reject, "TesseraError", "The array keeps no map of single blocks"}}},
    {"TsVolume", "AttachFreezepoint", {{Nothing}}},
    {"TsVolume", "Create", {{Create, "TsVolume", "ConfiguredSize", "@Size"}}},
    {"TsVolume", "CreateBootFromSanCopy", {{Create, "TsVolume", "ConfiguredSize", "@ConfiguredSize"}}},
    {"TsVolume", "CreateFreezepoint", {{Unless, "FreezepointAllowed", "False"}, {Nothing}}},
    {"TsVolume", "CreateFreezepointQuick", {{Unless, "FreezepointAllowed", "False"}, {Nothing}}},
    {"TsVolume", "Delete", {{Unless, "DeleteAllowed", "False"}, {Remove}}},
    {"TsVolume", "DeleteMany", {{DeleteVolumes}}},
    {"TsVolume", "Expand", {{ExpandVolume}}},
    {"TsVolume", "ExpandToSize", {{ExpandVolumeToSize}}},
    {"TsVolume", "MapToServer", {{Set, "Mapped", "True"}}},
    {"TsVolume", "PreallocateStorage", {{Nothing}}},
    {"TsVolume", "PrepareFreezepoint", {{Nothing}}},
    {"TsVolume",
     "Recycle",
     {{Unless, "InRecycleBin", "True"}, {Set, "InRecycleBin", "True"}, {Set, "Active", "False"}}},
    {"TsVolume", "RecycleMany", {{RecycleVolumes}}},
    {"TsVolume", "RemoveManagementLock", {{Set, "ManagementApplication", ""}}},
    {"TsVolume",
     "Restore",
     {{Unless, "InRecycleBin", "False"}, {Set, "InRecycleBin", "False"}, {Set, "Active", "True"}}},
    {"TsVolume", "SetScsiVpd", {{Set, "VpdId", "@ScsiVpdDeviceId"}}},
    {"TsVolume", "Unmap", {{Unless, "Mapped", "False"}, {Set, "Mapped", "False"}}},
    {"TsVolume", "UnprepareFreezepoint", {{Nothing}}},
};

bool HasAttribute(const Catalogue& catalogue, std::string_view kind, std::string_view attribute) {
    const std::optional<Selection> selection = catalogue.Find(kind);
    return selection && catalogue.FindAttribute(*selection, attribute) != nullptr;
}

/** Returns whether the names in a step exist. A command that names no instance acts on the array. */
bool IsValid(const Catalogue& catalogue, std::string_view object, const Step& step) {
    if (step.run == Create || step.run == History) {
        return step.second.empty() ? catalogue.Find(step.first).has_value()
                                   : HasAttribute(catalogue, step.first, step.second);
    }
    if (step.run == Unless || step.run == Set || step.run == Increment || step.run == Decrement) {
        return HasAttribute(catalogue, object, step.first) || HasAttribute(catalogue, "Tessera", step.first);
    }
    return true;
}

/** Throws CatalogueError for a row with a name that the API lacks, because a step would ignore it. */
void CheckRows(const Catalogue& catalogue) {
    for (const CommandRow& row : kCommands) {
        const std::string name = std::string(row.object) + std::string(row.command);
        bool good =
            APIObjectFactory<BASEApiMethod>::Instance().GetCreators().contains("API" + name + "Method");
        for (const Step& step : row.steps) {
            good = good && IsValid(catalogue, row.object, step);
        }
        if (!good) {
            throw CatalogueError("the table of commands has an unknown name in the row of " + name);
        }
    }
}

/** Returns null for a command without a row. */
const CommandRow* FindRow(const Catalogue& catalogue, std::string_view object, std::string_view command) {
    [[maybe_unused]] static const bool checked = (CheckRows(catalogue), true);
    const auto* row = std::find_if(std::begin(kCommands), std::end(kCommands), [&](const CommandRow& each) {
        return each.object == object && each.command == command;
    });
    return row == std::end(kCommands) ? nullptr : row;
}

bool AsksForRecords(std::string_view command) {
    return command.starts_with("GetHistorical") || command.starts_with("GetLatest");
}

}  // namespace

Response AnswerCommand(CallContext& context) {
    const std::string command = context.call->GetCommandName();
    Object& subject = SubjectOf(context);
    CheckLock(context, subject);
    const CommandRow* row = FindRow(context.model.catalogue(), context.selection.Name(), command);
    if (row == nullptr && AsksForRecords(command)) {
        return ListResponse(context, {});
    }
    if (row == nullptr) {
        throw ApiFailure("MethodNotAvailable",
                         context.selection.Name() + " " + command + " is not supported by this array");
    }
    for (const Step* step = row->steps; step->run != nullptr; ++step) {
        if (std::optional<Response> response = step->run(context, subject, *step)) {
            return std::move(*response);
        }
    }
    context.model.UpdateCounts();
    return ObjectResponse(context, nullptr);
}

}  // namespace arraysim
