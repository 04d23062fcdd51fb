#include "apiMgmt/common/threadpool/appLogger.h"

#include <gtest/gtest.h>
#include <syslog.h>

#include <memory>
#include <optional>

#include "apiMgmt/common/threadpool/appSysLogger.h"
#include "apiMgmt/common/threadpool/logTask.h"
#include "tests/unit/common/fakeSyslog.h"
#include "tests/unit/common/recordingLogger.h"

namespace {

// No row reaches the debug file, which has a fixed path.
constexpr uint32_t kNoModule = 0;

TEST(AppLogger, ModulesAreSetByTheirNumbers) {
    const std::string all =
        "APIManager | TSObject | TSTask | CmdRecvd | CmdXML | RespXML | Cache | UserPrivilege";
    const std::tuple<const char*, uint32_t, std::string> rows[] = {
        {"1", 0x01, "APIManager"}, {"1|2|5", 0x13, "APIManager | TSObject | CmdXML"},
        {"3|0|1", 0xff, all},      {"3|", 0xff, all},
        {"Cache", 0xff, all},  // without digits it is 0
        {"32", 0x80000000, ""},    {"4|33|-1|99999999999", 0x08, "CmdRecvd"},
    };
    for (const auto& [numbers, mask, enabled] : rows) {
        APPLogger::logModuleMask = 0x55;
        APPLogger::SetModules(numbers);
        EXPECT_EQ(APPLogger::logModuleMask, mask) << numbers;
        EXPECT_EQ(APPLogger::GetEnabledModules(), enabled) << numbers;
        APPLogger::SetModules("");
        EXPECT_EQ(APPLogger::logModuleMask, mask) << numbers;
    }
    EXPECT_EQ(APPLogger::GetModuleHelp(),
              "Valid values are:\n0. All\n1. APIManager\n2. TSObject\n3. TSTask\n4. CmdRecvd\n5. CmdXML\n"
              "6. RespXML\n7. Cache\n8. UserPrivilege\nEnable multiple modules- example: 1|2|5");
}

TEST(AppLogger, ModuleFilterGoesByTheMask) {
    const std::tuple<const char*, uint32_t, bool> rows[] = {
        {"Cache", 0x40, true}, {"cAcHe", 0x40, true},        {"Cache", 0xbf, false},
        {"All", 0x80, true},   {"snmpSubagent", 0x01, true}, {"snmpSubagent", kNoModule, false},
        {"Cach", 0xbf, true},
    };
    for (const auto& [name, mask, is_enabled] : rows) {
        APPLogger::logModuleMask = mask;
        EXPECT_EQ(APPLogger::IsModuleEnabled(name), is_enabled) << name << ", " << mask;
    }
}

TEST(AppLogger, HasOneTaskForGood) {
    LogRecord record;
    auto first = std::make_unique<LOGTask>(record.MakeLogger());
    {
        const APPLogger owner;
        EXPECT_FALSE(APPLogger::IsLogged(app_level::kEmergency));
        APPLogger::Log(4, "f", "o", 1, "category", "lost");  // no task is registered yet
        EXPECT_FALSE(APPLogger::RegisterLogTask(nullptr));
        ASSERT_TRUE(APPLogger::RegisterLogTask(first.get()));
        LOGTask* const registered = first.release();

        LOGTask second(record.MakeLogger());
        EXPECT_FALSE(APPLogger::RegisterLogTask(&second));
        EXPECT_FALSE(APPLogger::RegisterLogTask(registered));
        EXPECT_EQ(APPLogger::pLogTask, registered);
        second.Post({});  // it was not started

        EXPECT_TRUE(APPLogger::IsLogged(5));
        EXPECT_FALSE(APPLogger::IsLogged(6));
        APPLogger::SetLogLevel(8);
        EXPECT_TRUE(APPLogger::IsLogged(8));
        APPLogger::Log(8, "f", "o", 1, "category", "text");
        EXPECT_EQ(record.WaitFor(1), std::vector<std::string>{"8|category|text"});
    }
    EXPECT_EQ(APPLogger::pLogTask, nullptr);
    record.WaitForEndOfLogger();
}

TEST(AppLogger, SyslogGetsPriorityAndTextByLevel) {
    APPLogger::logModuleMask = kNoModule;
    const char* const names[] = {"Info",   "Emergency", "Alert", "Critical", "Error", "Warning",
                                 "Notice", "Info",      "Debug", "Info",     "Info"};
    const int levels[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -7};
    const char* const places[] = {"6", "0", "1", "2", "3", "4", "5", "", "", "6", "6"};  // "": debug file
    APPSysLogger logger("ident", false);
    std::vector<std::string> wanted = SyslogLines();
    for (size_t i = 0; i < std::size(levels); ++i) {
        EXPECT_STREQ(APPLogger::LevelName(levels[i]), names[i]);
        const std::string priority = places[i];
        for (const bool with_header : {false, true}) {
            logger.Log({levels[i], with_header, "a.cpp", "Run", 12, "Cache", "100 %s"});
            if (!priority.empty()) {
                wanted.push_back(priority + "|level(" + priority + ") category(Cache) " +
                                 (with_header ? "file(a.cpp) func(Run) line(12) " : "") + "message(100 %s)");
            }
        }
    }
    EXPECT_EQ(SyslogLines(), wanted);
}

TEST(AppLogger, SyslogIsOpenedUnderTheGivenIdent) {
    const std::string options = std::to_string(LOG_CONS | LOG_ODELAY);
    const std::string user = "|" + std::to_string(LOG_USER);
    auto ident = std::make_unique<std::string>("/usr/sbin/a program with a long path");
    std::optional<APPSysLogger> logger(std::in_place, *ident, false);
    const std::string copy = *ident;
    ident.reset();
    EXPECT_EQ(SyslogConnection(), copy + "|" + options + user);
    logger.reset();
    EXPECT_EQ(SyslogConnection(), "closed");
    logger.emplace("x", true);
    EXPECT_EQ(SyslogConnection(), "x|" + std::to_string(LOG_CONS | LOG_ODELAY | LOG_PERROR) + user);
}

}  // namespace
