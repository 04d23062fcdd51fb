#include "tools/mgmtSend/trapCommandBuilder.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "tools/commandLine/usageError.h"

namespace mgmtsend {

using commandline::UsageError;

const size_t kMaximumTrapCommand = kTrapCommandBuffer - 1;

namespace {

constexpr int32_t kColdStart = 0;
constexpr std::string_view kAlertMark = "@@@";
constexpr const char* kDeviceType = "type of the device, above 0";
constexpr const char* kDeviceStatus = "status of the device, above 0";
constexpr const char* kNoEventId = "0 0 0";
constexpr size_t kArguments = 4;
constexpr const char* kArgumentNames = "ABCD";

std::optional<int32_t> ReadNumber(std::string_view text) {
    const std::optional<int32_t> number = ParseWhole<int32_t>(text);
    return number && *number >= 0 ? number : std::nullopt;
}

bool Carries(const notification_definition& notification, int column) {
    return std::ranges::find(notification.columns, column) != notification.columns.end();
}

/** The components that a notification may be about; most have none. */
std::vector<component_definition> ComponentsOf(int32_t trap) {
    std::vector<component_definition> found;
    std::ranges::copy_if(components, std::back_inserter(found),
                         [trap](const component_definition& each) { return each.trapNum == trap; });
    return found;
}

/** Notifications about a device have its type and status as arguments B and C. */
bool IsAboutDevice(const notification_definition& notification) {
    return Carries(notification, COLID_trapSIDeviceType);
}

class TrapCommandBuilder {
  public:
    explicit TrapCommandBuilder(const TrapRequest& request) : request_(request) {}

    std::string Build() {
        FindKind();
        ReadArguments();
        CheckObject();
        CheckComponent();
        CheckDevice();
        std::string command = EventId();
        for (const int32_t number : {trap_, arguments_[0], arguments_[1], arguments_[2], State()}) {
            command += ' ' + std::to_string(number);
        }
        command += ' ' + AlertString();
        CheckTrapCommand(command);
        return command;
    }

  private:
    void FindKind() {
        if (const std::optional<int32_t> number = ReadNumber(request_.kind)) {
            trap_ = *number;
            notification_ = find_notification(trap_);
        } else {
            for (const notification_definition& each : notifications) {
                if (request_.kind == each.word) {
                    trap_ = each.number;
                    notification_ = &each;
                }
            }
        }
        const bool is_plain = std::ranges::find(plain_notifications, trap_) != plain_notifications.end();
        const bool is_cold_start = trap_ == kColdStart && ReadNumber(request_.kind);
        if (notification_ == nullptr && !is_plain && !is_cold_start) {
            throw UsageError("unknown notification '" + request_.kind + "'; see --list");
        }
    }

    void ReadArguments() {
        if (request_.arguments.size() > kArguments) {
            throw UsageError("too many arguments; a notification has only A, B, C and D");
        }
        for (size_t i = 0; i < request_.arguments.size(); ++i) {
            const std::string& word = request_.arguments[i];
            const std::optional<int32_t> number = i == 1 ? ReadComponent(word) : ReadNumber(word);
            if (!number) {
                throw UsageError("invalid argument " + std::string(1, kArgumentNames[i]) + " '" + word +
                                 "'; expected a number from 0 to 2147483647");
            }
            arguments_[i] = *number;
        }
    }

    /** Returns a number even if no component has it, because CheckComponent reports that. */
    std::optional<int32_t> ReadComponent(const std::string& word) const {
        for (const component_definition& each : ComponentsOf(trap_)) {
            if (word == each.word) {
                return each.number;
            }
        }
        const std::optional<int32_t> number = ReadNumber(word);
        if (!number && !ComponentsOf(trap_).empty()) {
            FailComponent(word);
        }
        return number;
    }

    [[noreturn]] void FailComponent(const std::string& word) const {
        std::string known;
        for (const component_definition& each : ComponentsOf(trap_)) {
            known += (known.empty() ? "" : ", ") + std::string(each.word) + " (" +
                     std::to_string(each.number) + ")";
        }
        throw UsageError("unknown component '" + word + "' of " + notification_->word + "; expected " +
                         known);
    }

    [[noreturn]] void FailArgument(const char* name, const char* meaning) const {
        throw UsageError(std::string(notification_->word) + " needs argument " + name + ": " + meaning);
    }

    bool Given(size_t argument) const { return request_.arguments.size() > argument; }

    static bool Fits(row_rule rule, int32_t number) {
        switch (rule) {
            case row_rule::next_index:
                return true;
            case row_rule::one_or_two:
                return number == 1 || number == 2;
            default:
                return number > 0;
        }
    }

    void CheckObject() const {
        if (notification_ == nullptr || *notification_->argument == '\0') {
            return;
        }
        const object_rule* object = notification_->object;
        if (!Given(0) || (object != nullptr && !Fits(object->state.find, arguments_[0]))) {
            FailArgument("A", notification_->argument);
        }
    }

    void CheckComponent() const {
        if (ComponentsOf(trap_).empty()) {
            return;
        }
        if (!Given(1)) {
            FailArgument("B", "keyword or number of the component");
        }
        const component_definition* component = find_component(trap_, arguments_[1]);
        if (component == nullptr) {
            FailComponent(request_.arguments[1]);
        }
        if (!Given(2) || !Fits(component->state.find, arguments_[2])) {
            FailArgument("C", component->argument);
        }
    }

    /** The daemon rejects a device without a type or a status. */
    void CheckDevice() const {
        if (notification_ == nullptr || !IsAboutDevice(*notification_)) {
            return;
        }
        if (arguments_[1] == 0) {
            FailArgument("B", kDeviceType);
        }
        if (arguments_[2] == 0) {
            FailArgument("C", kDeviceStatus);
        }
    }

    std::string EventId() const {
        if (!request_.event_id.empty()) {
            return GivenEventId();
        }
        const bool has_components = !ComponentsOf(trap_).empty();
        for (const force_definition& each : forced_notifications) {
            if (each.trapNum == trap_ && (!has_components || each.component == arguments_[1])) {
                return each.event_id;
            }
        }
        return kNoEventId;
    }

    std::string GivenEventId() const {
        std::vector<std::string> numbers;
        Split(request_.event_id, ",", numbers);
        if (numbers.size() != 3 || !std::ranges::all_of(numbers, [](const std::string& each) {
                return ReadNumber(each).has_value();
            })) {
            throw UsageError("invalid event ID '" + request_.event_id +
                             "'; expected three numbers, for example 13,1,37");
        }
        return numbers[0] + ' ' + numbers[1] + ' ' + numbers[2];
    }

    int32_t State() const {
        if (!request_.cleared) {
            return arguments_[3];
        }
        if (Given(3) && arguments_[3] != kClearingArgument) {
            throw UsageError("argument D " + request_.arguments[3] + " contradicts --cleared");
        }
        return kClearingArgument;
    }

    /** The daemon requires a space before the mark for plain notifications. It shows the whole string of one
       kind, which therefore has no mark. */
    std::string AlertString() const {
        std::string alert = request_.alert.value_or("");
        const bool shown_whole = notification_ != nullptr && Carries(*notification_, COLID_trapMiscAlertText);
        if (shown_whole || alert.find(kAlertMark) != std::string::npos) {
            return alert;
        }
        return (notification_ == nullptr ? " " : "") + std::string(kAlertMark) + alert;
    }

    const TrapRequest& request_;
    int32_t trap_ = -1;
    const notification_definition* notification_ = nullptr;  ///< null for plain ones and the cold start
    int32_t arguments_[kArguments] = {};
};

// --- list

constexpr const char* kLineFormat = "%-6s %-20s %-28s %s\n";

std::string ListComponents(int32_t trap) {
    std::string lines;
    for (const component_definition& each : ComponentsOf(trap)) {
        lines += FormatString("       B %d %-15s  %s; C: %s\n", each.number, each.word, each.description,
                              each.argument);
    }
    return lines;
}

std::string ListNotification(const notification_definition& each) {
    std::string lines = FormatString(kLineFormat, std::to_string(each.number).c_str(), each.word, each.name,
                                     each.description);
    if (*each.argument != '\0') {
        lines += FormatString("       A %-17s  %s\n", "", each.argument);
    }
    if (IsAboutDevice(each)) {
        lines += FormatString("       B %-17s  %s\n       C %-17s  %s\n", "", kDeviceType, "", kDeviceStatus);
    }
    return lines + ListComponents(each.number);
}

}  // namespace

std::string BuildTrapCommand(const TrapRequest& request) {
    return TrapCommandBuilder(request).Build();
}

void CheckTrapCommand(const std::string& command) {
    if (command.find('\n') != std::string::npos) {
        throw UsageError("the trap command contains a line feed; it must be a single line");
    }
    if (command.size() > kMaximumTrapCommand) {
        throw UsageError("the trap command has " + std::to_string(command.size()) +
                         " bytes; the maximum is " + std::to_string(kMaximumTrapCommand));
    }
}

std::vector<std::string> TrapKeywords(const std::vector<std::string>& arguments) {
    std::vector<std::string> keywords;
    for (const notification_definition& each : notifications) {
        if (arguments.empty()) {
            keywords.emplace_back(each.word);
        } else if (arguments.size() == 2 &&
                   (arguments[0] == each.word || ReadNumber(arguments[0]) == each.number)) {
            for (const component_definition& component : ComponentsOf(each.number)) {
                keywords.emplace_back(component.word);
            }
        }
    }
    return keywords;
}

std::string ListNotifications() {
    std::string list = FormatString(kLineFormat, "number", "keyword", "name", "meaning and arguments");
    for (const notification_definition& each : notifications) {
        list += ListNotification(each);
    }
    list += "\nWithout a keyword, and only with an alert text:";
    for (const int32_t number : plain_notifications) {
        list += ' ' + std::to_string(number);
    }
    return list +
           ".\nNumber 0 is the cold start. Argument D is 5 for the end of an alert (--cleared), otherwise "
           "0.\n";
}

}  // namespace mgmtsend
