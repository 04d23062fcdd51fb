#include "arraySim/model/conditions.h"

#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

constexpr Condition kUp = Condition::kUp;
constexpr Condition kDown = Condition::kDown;
constexpr Condition kDegraded = Condition::kDegraded;

// clang-format off
constexpr ConditionAttribute kConditionAttributes[] = {
    {"TsDisk", kUp,       "Healthy",       "True"},
    {"TsDisk", kUp,       "HealthMask",    "Healthy"},
    {"TsDisk", kDown,     "Healthy",       "False"},
    {"TsDisk", kDown,     "HealthMask",    "LostContact"},
    {"TsDisk", kDown,     "StatusMessage", "Contact with the disk was lost"},
    {"TsDisk", kDegraded, "Healthy",       "False"},
    {"TsDisk", kDegraded, "HealthMask",    "PredictedError"},
    {"TsDisk", kDegraded, "StatusMessage", "The disk predicts its failure"},

    {"TsController", kUp,       "LocalPortCondition", "Balanced"},
    {"TsController", kDegraded, "LocalPortCondition", "Unbalanced"},

    {"TsControllerCacheCard", kUp,       "BatteryStatus", "Normal"},
    {"TsControllerCacheCard", kDown,     "BatteryStatus", "Expired"},
    {"TsControllerCacheCard", kDegraded, "BatteryStatus", "ExpirationPending"},

    {"TsControllerFanSensor", kUp,       "CurrentRpm", "=NormalMinimumRpm"},
    {"TsControllerFanSensor", kDown,     "CurrentRpm", "0"},
    {"TsControllerFanSensor", kDegraded, "CurrentRpm", "=WarningLowerThreshold"},

    {"TsControllerPowerSupply", kUp,       "ACLost", "False"},
    {"TsControllerPowerSupply", kUp,       "Failed", "False"},
    {"TsControllerPowerSupply", kDown,     "Failed", "True"},
    {"TsControllerPowerSupply", kDegraded, "ACLost", "True"},

    {"TsControllerTemperatureSensor", kUp,       "CurrentTemperature", "=NormalMaximum"},
    {"TsControllerTemperatureSensor", kDown,     "CurrentTemperature", "=CriticalUpperThreshold"},
    {"TsControllerTemperatureSensor", kDegraded, "CurrentTemperature", "=WarningUpperThreshold"},

    {"TsControllerVoltageSensor", kUp,       "CurrentVoltage", "=NormalMaximumVoltage"},
    {"TsControllerVoltageSensor", kDown,     "CurrentVoltage", "=CriticalLowerThreshold"},
    {"TsControllerVoltageSensor", kDegraded, "CurrentVoltage", "=WarningLowerThreshold"},

    {"TsEnclosure", kUp,       "CriticalCondition",    "False"},
    {"TsEnclosure", kUp,       "NonCriticalCondition", "False"},
    {"TsEnclosure", kUp,       "StatusDescription",    ""},
    {"TsEnclosure", kDown,     "CriticalCondition",    "True"},
    {"TsEnclosure", kDown,     "StatusDescription",    "Both I/O paths are lost"},
    {"TsEnclosure", kDegraded, "NonCriticalCondition", "True"},
    {"TsEnclosure", kDegraded, "StatusDescription",    "One I/O path is lost"},

    {"TsEnclosureAudibleAlarm", kUp,       "CriticalTone", "Normal"},
    {"TsEnclosureAudibleAlarm", kDown,     "CriticalTone", "Critical"},
    {"TsEnclosureAudibleAlarm", kDegraded, "CriticalTone", "Critical"},

    {"TsEnclosureCoolingFanSensor", kUp,       "Speed", "Low"},
    {"TsEnclosureCoolingFanSensor", kDown,     "Speed", "Off"},
    {"TsEnclosureCoolingFanSensor", kDegraded, "Speed", "High"},

    {"TsEnclosurePowerSupply", kUp,       "AcFailure",              "False"},
    {"TsEnclosurePowerSupply", kUp,       "DcFailure",              "False"},
    {"TsEnclosurePowerSupply", kUp,       "HighTemperatureWarning", "False"},
    {"TsEnclosurePowerSupply", kDown,     "AcFailure",              "True"},
    {"TsEnclosurePowerSupply", kDown,     "DcFailure",              "True"},
    {"TsEnclosurePowerSupply", kDegraded, "HighTemperatureWarning", "True"},

    {"TsEnclosureTemperatureSensor", kUp,       "Temperature", "25 C/77 F"},
    {"TsEnclosureTemperatureSensor", kDown,     "Temperature", "=HighCriticalThreshold"},
    {"TsEnclosureTemperatureSensor", kDegraded, "Temperature", "=HighWarningThreshold"},

    {"TsUps", kUp,       "StatusDescription", "Online"},
    {"TsUps", kUp,       "BatteryLife",       "60"},
    {"TsUps", kDown,     "StatusDescription", "Disconnected"},
    {"TsUps", kDown,     "BatteryLife",       "0"},
    {"TsUps", kDegraded, "StatusDescription", "On Battery"},
    {"TsUps", kDegraded, "BatteryLife",       "12"},

    {"TsVolume", kUp,       "Active", "True"},
    {"TsVolume", kDown,     "Active", "False"},
    {"TsVolume", kDegraded, "Active", "True"},

    {"TsServer", kUp,       "Connectivity",              "Up"},
    {"TsServer", kUp,       "PathCount",                 "=MaximumPathCount"},
    {"TsServer", kUp,       "ConnectedToAllControllers", "True"},
    {"TsServer", kDown,     "Connectivity",              "Down"},
    {"TsServer", kDown,     "PathCount",                 "0"},
    {"TsServer", kDown,     "ConnectedToAllControllers", "False"},
    {"TsServer", kDegraded, "Connectivity",              "Partial"},
    {"TsServer", kDegraded, "PathCount",                 "1"},
    {"TsServer", kDegraded, "ConnectedToAllControllers", "False"},
};

constexpr AlertWords kAlertWords[] = {
    {"TsController",                  "Controller",                    "Hardware"},
    {"TsControllerCacheCard",         "Cache card",                    "Hardware"},
    {"TsControllerFanSensor",         "Controller fan",                "Hardware"},
    {"TsControllerPowerSupply",       "Controller power supply",       "Hardware"},
    {"TsControllerTemperatureSensor", "Controller temperature sensor", "Hardware"},
    {"TsControllerVoltageSensor",     "Controller voltage sensor",     "Hardware"},
    {"TsEnclosure",                   "Enclosure",                     "Hardware"},
    {"TsEnclosureAudibleAlarm",       "Enclosure alarm",               "Hardware"},
    {"TsEnclosureCoolingFanSensor",   "Enclosure fan",                 "Hardware"},
    {"TsEnclosureIoModule",           "Enclosure I/O module",          "Hardware"},
    {"TsEnclosurePowerSupply",        "Enclosure power supply",        "Hardware"},
    {"TsEnclosureTemperatureSensor",  "Enclosure temperature sensor",  "Hardware"},
    {"TsDisk",                        "Disk",                          "Disk"},
    {"TsDiskFolder",                  "Disk folder",                   "Storage"},
    {"TsVolume",                      "Volume",                        "Storage"},
    {"TsServer",                      "Server",                        "Connectivity"},
    {"TsUps",                         "UPS",                           "System"},
    {"Tessera",                       "Array",                         "System"},
};
// clang-format on

}  // namespace

const char* FormatCondition(Condition condition) {
    switch (condition) {
        case Condition::kDown:
            return "Down";
        case Condition::kDegraded:
            return "Degraded";
        case Condition::kUp:
            break;
    }
    return "Up";
}

std::optional<Condition> ParseCondition(std::string_view text) {
    for (const Condition condition : {Condition::kUp, Condition::kDown, Condition::kDegraded}) {
        if (CompareNoCase(text, FormatCondition(condition)) == 0) {
            return condition;
        }
    }
    return std::nullopt;
}

bool HasCondition(const Kind& kind) {
    return kind.HasAttribute("Status");
}

std::span<const ConditionAttribute> ConditionAttributes() {
    return kConditionAttributes;
}

const AlertWords& WordsFor(const Kind& kind) {
    static constexpr AlertWords kOther = {"", "Object", "Unknown"};
    for (const AlertWords& words : kAlertWords) {
        if (words.list == kind.list->name) {
            return words;
        }
    }
    return kOther;
}

}  // namespace arraysim
