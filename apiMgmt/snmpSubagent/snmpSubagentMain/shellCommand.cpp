#include "apiMgmt/snmpSubagent/snmpSubagentMain/shellCommand.h"

#include <cstdlib>

#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr const char* kPlainCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-:/@%+=,";

}  // namespace

command_output open_command(const std::string& command) {
    KeepDescriptorsFromPrograms();
    return command_output(popen(command.c_str(), "r"));
}

int run_command(const std::string& command) {
    KeepDescriptorsFromPrograms();
    return system(command.c_str());
}

std::string shell_word(const std::string& text) {
    if (!text.empty() && text.find_first_not_of(kPlainCharacters) == std::string::npos)
        return text;
    std::string quoted = text;
    ReplaceAll(quoted, "'", "'\\''");
    return "'" + quoted + "'";
}
