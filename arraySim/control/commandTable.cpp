#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/control/command.h"

namespace arraysim {

namespace {

constexpr VerbInfo kVerbs[] = {
    {Verb::kSet, "set", "KIND INDEX ATTR VALUE", "give an attribute a value; VALUE is the rest of the line"},
    {Verb::kUnset, "unset", "KIND INDEX ATTR", "take an attribute away"},
    {Verb::kFail, "fail", "KIND INDEX [Down|Degraded]",
     "put an object into a bad state: its signs, what holds it, an alert"},
    {Verb::kRecover, "recover", "KIND INDEX", "put it back to Up and end its alerts"},
    {Verb::kAdd, "add", "KIND [ATTR=VALUE...]", "make an object at the end of its list; prints its index"},
    {Verb::kRemove, "remove", "KIND INDEX", "take an object away"},
    {Verb::kGet, "get", "KIND [INDEX [ATTR]]", "print objects, the attributes of one, or one value"},
    {Verb::kExpect, "expect", "KIND INDEX ATTR VALUE", "fail unless the attribute has this value"},
    {Verb::kList, "list", "", "print all kinds and how many there are"},
    {Verb::kDump, "dump", "[FILE]", "write the model as JSON"},
    {Verb::kLoad, "load", "FILE", "replace the model by one that was dumped"},
    {Verb::kFault, "fault", "NAME [args] [on KIND] [for N]", "switch a fault on, see below"},
    {Verb::kFaults, "faults", "", "print the faults that are on"},
    {Verb::kClear, "clear", "[NAME]", "switch all faults off, or those of a name"},
    {Verb::kStats, "stats", "", "print the exchanges so far"},
    {Verb::kEvent, "event", "TEXT", "send the daemon a trap command as it stands: eight numbers and a text"},
    {Verb::kMisc, "misc", "TEXT", "send it an alert in words"},
    {Verb::kScsi, "scsi", "TYPE STATUS [DISK-ROW]", "send it the status of a SCSI initiator device"},
    {Verb::kSay, "say", "TEXT", "print a text where the simulator runs"},
    {Verb::kHelp, "help", "", "print this"},
    {Verb::kQuit, "quit", "", "end the simulator"},
};

}  // namespace

std::span<const VerbInfo> VerbTable() {
    return kVerbs;
}

std::string HelpText() {
    std::string text;
    for (const VerbInfo& each : VerbTable()) {
        const std::string usage =
            std::string(each.name) + (each.usage.empty() ? "" : " ") + std::string(each.usage);
        text += FormatString("%-38s %s\n", usage.c_str(), std::string(each.help).c_str());
    }
    text +=
        "\nFaults strike every exchange, or those `on KIND` (`on Ping` for pings), or the next `for N`:\n";
    for (const FaultInfo& each : FaultTable()) {
        const std::string usage =
            std::string(each.name) + (each.usage.empty() ? "" : " ") + std::string(each.usage);
        text += FormatString("  %-36s %s\n", usage.c_str(), std::string(each.help).c_str());
    }
    return text;
}

}  // namespace arraysim
