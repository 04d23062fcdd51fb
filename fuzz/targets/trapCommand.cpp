// Texts as trap commands, a line each, with a NUL standing for a newline, up to the notification. A line
// "!TRAP STATUS" beforehand gives all objects of the array that status. Every command has one outcome:
// refused with a line in the log, held back, or sent as exactly one notification.

#include <algorithm>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

size_t count_lines(const std::string& text, const std::string& beginning) {
    size_t count = text.rfind(beginning, 0) == 0 ? 1 : 0;
    for (size_t place = 0; (place = text.find("\n" + beginning, place)) != std::string::npos; ++place)
        ++count;
    return count;
}

// Eight words with a blank behind each, in what is looked at of a text.
bool is_command(const std::string& text) {
    const std::string seen = text.substr(0, kTrapCommandBuffer - 1);
    int words = 0;
    for (size_t i = 1; i < seen.size(); ++i)
        words += seen[i] == ' ' && seen[i - 1] != ' ' ? 1 : 0;
    return words >= 8;
}

std::unique_ptr<TrapToSend> parse(const std::string& text) {
    const size_t waiting = trapsToSend.size();
    char scratch[kTrapCommandBuffer];
    const int result = ParseTrapCommand(text.c_str(), scratch, sizeof scratch);
    FuzzCheck(trapsToSend.size() == waiting + (result == 0 ? 1 : 0), "result and queue disagree");
    FuzzCheck((result == 0) == is_command(text), "taken or dropped against the form of a command");
    if (result != 0)
        return nullptr;
    std::unique_ptr<TrapToSend> trap = std::move(trapsToSend.back());
    trapsToSend.pop_back();
    return trap;
}

void run(TrapToSend& trap) {
    const size_t known = outstandingTraps.size();
    const int result = processSendTrapCmd(trap, false);
    const std::string course = transcript::take();
    const size_t sent = count_lines(course, "notify ");
    if (sent > 1)
        FuzzFail("one command, several notifications:\n" + course);
    FuzzCheck(result != 0 || sent == 1 || outstandingTraps.size() <= known + 1, "a record from nowhere");
    if (result != 0 && sent == 0 && count_lines(course, "log 4 ") == 0)
        FuzzFail("refused in silence:\n" + course);
}

void set_all_statuses(uint32_t status) {
    for (const int head : {COLID_tsCtlrNbr, COLID_tsDiskNbr, COLID_tsEnclNbr, COLID_tsDiskFolderNbr,
                           COLID_tsVolumeNbr, COLID_tsServerNbr, COLID_tsCacheNbr, COLID_tsUPSNbr})
        FuzzTrapWorld::set_status(cols[head + 1].first_var, status);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzTrapWorld world;
    verbose = false;
    outstandingTraps.clear();
    set_all_statuses(1);
    FuzzInput input(data, size);
    while (!input.IsEmpty()) {
        std::string line(input.Line());
        std::replace(line.begin(), line.end(), '\0', '\n');
        if (line.rfind("!", 0) == 0) {
            set_all_statuses(static_cast<uint32_t>(line.size() > 1 ? line[1] - '0' : 0));
            continue;
        }
        if (const std::unique_ptr<TrapToSend> trap = parse(line))
            run(*trap);
    }
    handleDisplayOutstandingTraps();
    transcript::take();
    return 0;
}
