#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>

#include "apiMgmt/apiStub/base/apiObjects/base/getListApiMethod.h"

/** The calls that the daemon makes, each nested in the class of its object. */

namespace api_daemon_methods {

/** A text as an argument of a template. */
template <size_t size>
struct Name {
    char text[size];
    consteval Name(const char (&literal)[size]) { std::copy_n(literal, size, text); }
};

/** A call that is all said by its object, command, effect and privilege. */
template <class Base, Name object, Name command, bool changes_state, UserPrivilege privilege>
class Method : public Base {
  public:
    Method() : Base(false) {}
    explicit Method(const std::map<std::string, std::string>& initial) : Base(false, initial) {}

    const std::string& GetObjectName() const override {
        static const std::string name = object.text;
        return name;
    }
    const std::string& GetCommandName() const override {
        static const std::string name = command.text;
        return name;
    }
    bool ChangesState() const override { return changes_state; }
    int GetRequiredPrivilege() const override { return privilege; }
};

template <Name object>
using GetList = Method<GETLISTApiMethod, object, "GetList", false, USER_PRIVILEGE_REPORTER>;
template <Name object>
using Get = Method<BASEApiMethod, object, "Get", false, USER_PRIVILEGE_REPORTER>;
template <Name object>
using Modify = Method<BASEApiMethod, object, "Modify", true, USER_PRIVILEGE_ADMIN>;

}  // namespace api_daemon_methods

struct APITessera {
    using APITesseraGetListMethod = api_daemon_methods::GetList<"Tessera">;
    using APITesseraModifyMethod = api_daemon_methods::Modify<"Tessera">;
};
struct APITsAlert {
    using APITsAlertGetListMethod = api_daemon_methods::GetList<"TsAlert">;
    using APITsAlertGetMethod = api_daemon_methods::Get<"TsAlert">;
};
struct APITsController {
    using APITsControllerGetListMethod = api_daemon_methods::GetList<"TsController">;
};
struct APITsControllerCacheCard {
    using APITsControllerCacheCardGetListMethod = api_daemon_methods::GetList<"TsControllerCacheCard">;
};
struct APITsControllerFanSensor {
    using APITsControllerFanSensorGetListMethod = api_daemon_methods::GetList<"TsControllerFanSensor">;
};
struct APITsControllerPowerSupply {
    using APITsControllerPowerSupplyGetListMethod = api_daemon_methods::GetList<"TsControllerPowerSupply">;
};
struct APITsControllerTemperatureSensor {
    using APITsControllerTemperatureSensorGetListMethod =
        api_daemon_methods::GetList<"TsControllerTemperatureSensor">;
};
struct APITsControllerVoltageSensor {
    using APITsControllerVoltageSensorGetListMethod =
        api_daemon_methods::GetList<"TsControllerVoltageSensor">;
};
struct APITsDisk {
    using APITsDiskGetListMethod = api_daemon_methods::GetList<"TsDisk">;
    using APITsDiskGetMethod = api_daemon_methods::Get<"TsDisk">;
};
struct APITsDiskConfiguration {
    using APITsDiskConfigurationGetListMethod = api_daemon_methods::GetList<"TsDiskConfiguration">;
    using APITsDiskConfigurationGetMethod = api_daemon_methods::Get<"TsDiskConfiguration">;
};
struct APITsDiskFolder {
    using APITsDiskFolderGetListMethod = api_daemon_methods::GetList<"TsDiskFolder">;
    using APITsDiskFolderGetMethod = api_daemon_methods::Get<"TsDiskFolder">;
};
struct APITsDiskFolderStorageUsage {
    using APITsDiskFolderStorageUsageGetMethod = api_daemon_methods::Get<"TsDiskFolderStorageUsage">;
};
struct APITsEnclosure {
    using APITsEnclosureGetListMethod = api_daemon_methods::GetList<"TsEnclosure">;
};
struct APITsEnclosureAudibleAlarm {
    using APITsEnclosureAudibleAlarmGetListMethod = api_daemon_methods::GetList<"TsEnclosureAudibleAlarm">;
};
struct APITsEnclosureCoolingFanSensor {
    using APITsEnclosureCoolingFanSensorGetListMethod =
        api_daemon_methods::GetList<"TsEnclosureCoolingFanSensor">;
};
struct APITsEnclosureIoModule {
    using APITsEnclosureIoModuleGetListMethod = api_daemon_methods::GetList<"TsEnclosureIoModule">;
};
struct APITsEnclosurePowerSupply {
    using APITsEnclosurePowerSupplyGetListMethod = api_daemon_methods::GetList<"TsEnclosurePowerSupply">;
};
struct APITsEnclosureTemperatureSensor {
    using APITsEnclosureTemperatureSensorGetListMethod =
        api_daemon_methods::GetList<"TsEnclosureTemperatureSensor">;
};
struct APITsObjectCount {
    using APITsObjectCountGetListMethod = api_daemon_methods::GetList<"TsObjectCount">;
};
struct APITsRemoteTessera {
    using APITsRemoteTesseraGetListMethod = api_daemon_methods::GetList<"TsRemoteTessera">;
};
struct APITsServer {
    using APITsServerGetListMethod = api_daemon_methods::GetList<"TsServer">;
    using APITsServerGetMethod = api_daemon_methods::Get<"TsServer">;
};
struct APITsUps {
    using APITsUpsGetListMethod = api_daemon_methods::GetList<"TsUps">;
};
struct APITsVolume {
    using APITsVolumeGetListMethod = api_daemon_methods::GetList<"TsVolume">;
    using APITsVolumeGetMethod = api_daemon_methods::Get<"TsVolume">;
};
