#include "tools/mgmtSend/catalogueText.h"

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "tools/mgmtSend/trapText.h"

namespace {

constexpr const char* kLineForm = "%-6s %-20s %-28s %s\n";

std::string ComponentLines(int32_t trap) {
    std::string text;
    for (const component_definition& each : components) {
        if (each.trapNum == trap) {
            text += FormatString("       B %d %-15s  %s; C: %s\n", each.number, each.word, each.description,
                                 each.argument);
        }
    }
    return text;
}

std::string NotificationLines(const notification_definition& each) {
    std::string text =
        FormatString(kLineForm, std::to_string(each.number).c_str(), each.word, each.name, each.description);
    if (*each.argument != '\0') {
        text += FormatString("       A %-17s  %s\n", "", each.argument);
    }
    if (IsAboutDevice(each)) {
        text += FormatString("       B %-17s  %s\n       C %-17s  %s\n", "", kDeviceType, "", kDeviceStatus);
    }
    return text + ComponentLines(each.number);
}

}  // namespace

std::string CatalogueText() {
    std::string text = FormatString(kLineForm, "number", "word", "name", "meaning and arguments");
    for (const notification_definition& each : notifications) {
        text += NotificationLines(each);
    }
    text += "\nWithout a word, and with no more than a text (--alert):";
    for (const int32_t number : plain_notifications) {
        text += ' ' + std::to_string(number);
    }
    return text +
           ".\nNumber 0 is the cold start. Argument D is 5 when something is over, as --cleared says, else "
           "0.\n";
}
