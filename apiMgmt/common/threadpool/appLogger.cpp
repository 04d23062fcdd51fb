#include "apiMgmt/common/threadpool/appLogger.h"

#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"

const APPLogger::LogModule APPLogger::logModuleEnums[logModuleEnumCount] = {
    {"All", 0xff},    {"APIManager", 0x01}, {"TSObject", 0x02}, {"TSTask", 0x04},        {"CmdRecvd", 0x08},
    {"CmdXML", 0x10}, {"RespXML", 0x20},    {"Cache", 0x40},    {"UserPrivilege", 0x80},
};

namespace {

constexpr uint32_t kAllModules = 0xff;

// A number outside the mask enables nothing.
uint32_t MaskOf(int number) {
    return number >= 1 && number <= 32 ? uint32_t{1} << (number - 1) : 0;
}

}  // namespace

APPLogger::~APPLogger() {
    delete pLogTask.exchange(nullptr);
}

bool APPLogger::IsLogged(int32_t level) {
    return pLogTask != nullptr && logLevel >= level;
}

void APPLogger::Log(int32_t level, const std::string& file, const std::string& func, int32_t line,
                    const std::string& category, const std::string& message) {
    BASELogTask* task = pLogTask;
    if (task != nullptr) {
        task->Post({level, headerInclude, file, func, line, category, message});
    }
}

void APPLogger::SetLogLevel(int32_t level) {
    logLevel = level;
}

const char* APPLogger::LevelName(int32_t level) {
    switch (level) {
        case app_level::kEmergency:
            return "Emergency";
        case app_level::kAlert:
            return "Alert";
        case app_level::kCritical:
            return "Critical";
        case app_level::kError:
            return "Error";
        case app_level::kWarning:
            return "Warning";
        case app_level::kNotice:
            return "Notice";
        case app_level::kDebug:
            return "Debug";
        default:
            return "Info";
    }
}

bool APPLogger::RegisterLogTask(BASELogTask* task) {
    if (pLogTask != nullptr || task == nullptr || !task->Start()) {
        return false;
    }
    pLogTask = task;
    return true;
}

bool APPLogger::IsModuleEnabled(const std::string& name) {
    for (const LogModule& module : logModuleEnums) {
        if (CompareNoCase(name, module.name) == 0) {
            return (module.mask & logModuleMask) != 0;
        }
    }
    return logModuleMask != 0;
}

std::string APPLogger::GetEnabledModules() {
    const uint32_t enabled = logModuleMask;
    std::string names;
    for (int number = 1; number < logModuleEnumCount; ++number) {
        if ((logModuleEnums[number].mask & enabled) != 0) {
            names.append(names.empty() ? "" : " | ").append(logModuleEnums[number].name);
        }
    }
    return names;
}

std::string APPLogger::GetModuleHelp() {
    std::string help = "Valid values are:\n";
    for (int number = 0; number < logModuleEnumCount; ++number) {
        help += FormatString("%d. %s\n", number, logModuleEnums[number].name);
    }
    return help + "Enable multiple modules- example: 1|2|5";
}

void APPLogger::SetModules(const std::string& numbers) {
    std::vector<std::string> fields;
    Split(numbers, "|", fields);
    if (fields.empty()) {
        return;
    }
    uint32_t enabled = 0;
    for (const std::string& field : fields) {
        const int number = ParseInt(field);  // 0 for an empty field as well
        if (number == 0) {
            enabled = kAllModules;
            break;
        }
        enabled |= MaskOf(number);
    }
    logModuleMask = enabled;
}
