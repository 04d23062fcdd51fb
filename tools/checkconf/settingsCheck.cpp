#include "tools/checkconf/settingsCheck.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tools/checkconf/daemonLog.h"

namespace checkconf {

namespace {

constexpr std::string_view kSpaces = " \t";
constexpr int kMaximumPort = 65535;

std::string Quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

/** Returns the number of the line that contains a position, from 1. */
size_t LineNumber(std::string_view text, size_t place) {
    return 1 + static_cast<size_t>(std::ranges::count(text.substr(0, place), '\n'));
}

/** The whole file, and the beginning that the daemon reads. */
struct Texts {
    std::string whole;
    std::string read;

    std::string Line(size_t place) const { return "line " + std::to_string(LineNumber(whole, place)); }
};

/** Returns the part of the line before a position. */
std::string_view Before(std::string_view text, size_t place) {
    const size_t newline = place == 0 ? std::string_view::npos : text.rfind('\n', place - 1);
    const size_t begin = newline == std::string_view::npos ? 0 : newline + 1;
    return text.substr(begin, place - begin);
}

bool HasOnlySpaces(std::string_view text) {
    return text.find_first_not_of(kSpaces) == std::string_view::npos;
}

bool IsComment(std::string_view line) {
    const size_t first = line.find_first_not_of(kSpaces);
    return first != std::string_view::npos && line[first] == '#';
}

/** Finds a key as a person would: at the beginning of a line and followed by whitespace. */
std::optional<size_t> FindKeyLine(std::string_view text, std::string_view key, size_t from) {
    for (size_t place = text.find(key, from); place != std::string_view::npos;
         place = text.find(key, place + 1)) {
        const size_t after = place + key.size();
        const bool is_separate =
            after == text.size() || std::string_view(" \t\r\n").find(text[after]) != std::string_view::npos;
        if (is_separate && HasOnlySpaces(Before(text, place)))
            return place;
    }
    return std::nullopt;
}

void CheckBeyond(const Texts& texts, std::string_view key, Report& report) {
    if (const auto place = FindKeyLine(texts.whole, key, 0))
        report.Warn(texts.Line(*place) + ": " + std::string(key) + " is beyond the " +
                    std::to_string(texts.read.size()) +
                    " bytes that the daemon reads: the daemon ignores it");
}

/** Returns false, with a warning, if the daemon finds the key where a person would not look for it. */
bool CheckKeyPlace(const Texts& texts, std::string_view key, const conf_place& place, Report& report) {
    const std::string_view before = Before(texts.read, place.key);
    const size_t after = place.key + key.size();
    const bool is_separated = place.value > after || after == texts.read.size() ||
                              texts.read[after] == '\n' || texts.read[after] == '\r';
    if (HasOnlySpaces(before) && is_separated)
        return true;
    std::string found = texts.Line(place.key) + ": " + std::string(key) + " is found ";
    if (IsComment(before))
        found += "in a comment";
    else if (!HasOnlySpaces(before))
        found += "in the middle of the line";
    else
        found += "without a space after it";
    const auto meant = FindKeyLine(texts.whole, key, after);
    report.Warn(found + ", and its value is read from there" +
                (meant ? "; " + texts.Line(*meant) + " is ignored" : ""));
    return false;
}

void CheckValue(const Texts& texts, const conf_setting& setting, const conf_place& place, Report& report) {
    const std::string_view key = setting.key;
    const std::string_view value = std::string_view(texts.read).substr(place.value, place.end - place.value);
    const std::string here = texts.Line(place.key) + ": ";
    // Warnings end up in journals, which must not contain secrets.
    const std::string shown = setting.is_secret ? "its value" : Quoted(value);
    if (value.empty()) {
        report.Warn(here + std::string(key) + " has no value");
        return;
    }
    if (value.find_last_not_of(" \t\r") != value.size() - 1)
        report.Warn(here + "the value of " + std::string(key) + " includes the " +
                    (value.back() == '\r' ? "carriage return" : "space") + " at its end");
    else if (setting.type == conf_type::flag && value != "yes" && value != "no")
        report.Warn(here + std::string(key) + " is " + shown +
                    ", which means off; only lower-case yes means on");
    const bool is_number = setting.type == conf_type::number || setting.type == conf_type::controller;
    if (is_number && value.find_first_not_of("0123456789") != std::string_view::npos)
        report.Warn(here + std::string(key) + " is " + shown +
                    "; only its leading digits are read, or 0 if there are none");
}

void CheckSetting(const Texts& texts, const conf_setting& setting, Report& report) {
    const std::string_view key = setting.key;
    const std::optional<conf_place> place = find_conf_place(texts.read, key);
    if (!place) {
        CheckBeyond(texts, key, report);
        return;
    }
    const bool is_in_place = CheckKeyPlace(texts, key, *place, report);
    if (!place->has_end()) {
        const bool is_truncated = texts.whole.find('\n', place->value) != std::string::npos;
        report.Warn(texts.Line(place->key) + ": " + std::string(key) +
                    (is_truncated ? " does not end within the bytes that the daemon reads"
                                  : " has no newline at its end") +
                    ": the daemon ignores it");
        return;
    }
    if (!is_in_place)
        return;
    CheckValue(texts, setting, *place, report);
    if (const auto again = FindKeyLine(texts.whole, key, place->end))
        report.Warn(texts.Line(*again) + ": " + std::string(key) + " is repeated; only " +
                    texts.Line(place->key) + " is used");
}

/** The daemon silently ignores misspelled names. */
void CheckUnknownNames(const std::string& whole, Report& report) {
    for (size_t begin = 0; begin < whole.size();) {
        const size_t end = std::min(whole.find('\n', begin), whole.size());
        std::string_view line = std::string_view(whole).substr(begin, end - begin);
        line.remove_prefix(std::min(line.find_first_not_of(kSpaces), line.size()));
        const std::string_view name = line.substr(0, line.find_first_of(" \t\r="));
        const bool is_known = std::ranges::any_of(conf_settings, [&](const conf_setting& setting) {
            return name.find(setting.key) != std::string_view::npos;
        });
        if (!name.empty() && !IsComment(line) && !is_known)
            report.Warn("line " + std::to_string(LineNumber(whole, begin)) + ": unknown setting " +
                        Quoted(name));
        begin = end + 1;
    }
}

/** Warns of every line that the daemon interprets differently from what a person would expect. */
void CheckLines(const std::string& path, Report& report) {
    const Texts texts{.whole = ReadTextFile(path).value_or(""),
                      .read = read_conf_text(path.c_str()).value_or("")};
    if (const size_t zero = texts.whole.find('\0'); zero != std::string::npos)
        report.Warn(texts.Line(zero) + ": a zero byte; the daemon ignores the rest of the file");
    for (const conf_setting& setting : conf_settings)
        CheckSetting(texts, setting, report);
    CheckUnknownNames(texts.whole, report);
}

// --- the resulting settings

const char* VersionName() {
    switch (conf_trapVer) {
        case 1:
            return "version 1 traps";
        case 2:
            return "version 2c traps";
        case 3:
            return "version 2c informs";
        default:
            return nullptr;
    }
}

void WarnOfDaemonLog(Report& report) {
    for (const std::string& line : TakeDaemonLog())
        report.Warn("the daemon would log: " + line);
}

void CheckNotifications(Report& report) {
    if (!conf_trapsEnabled) {
        report.Fact("notifications are off");
        return;
    }
    if (conf_trapDest == kNoTrapDest) {
        report.Fact("notifications are sent by snmpd only, to the receivers in its configuration");
        return;
    }
    std::string peer;
    if (conf_trapDest.empty()) {
        report.Warn("notifications are on, but trapDest is empty: none is sent");
    } else if (build_trap_peer_name(&peer) != 0) {
        WarnOfDaemonLog(report);
        report.Warn("notifications are on, but trapDest is not a valid address: none is sent");
    }
    if (VersionName() == nullptr)
        report.Warn("notifications are on, but trapVer is " + std::to_string(conf_trapVer) +
                    ": none is sent; set 1 (trap), 2 (version 2c trap) or 3 (inform)");
    if (conf_trapPort < 1 || conf_trapPort > kMaximumPort)
        report.Warn("notifications are on, but trapPort is " + std::to_string(conf_trapPort) +
                    ": none arrives");
    if (!peer.empty() && VersionName() != nullptr)
        report.Fact(std::string(VersionName()) + " are sent to " + peer);
}

void CheckCommunities(const std::string& path, Report& report) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        report.Warn("readable or writable by group or others; run chmod 600");
    if (conf_rocommunity.empty() && !conf_rwcommunity.empty())
        report.Warn(
            "rocommunity is empty, so the self-test uses the write community, which the process list shows; "
            "set rocommunity");
}

void ReportOtherSettings(Report& report) {
    report.Fact("the self-test uses a community of " + std::to_string(self_test_community().size()) +
                " characters");
    report.Fact(
        "the array is instance " + std::to_string(conf_controllerIdThis) + "; this controller is " +
        (conf_controllerIndexThis == 0 ? "unknown" : "row " + std::to_string(conf_controllerIndexThis)));
    report.Fact(std::string("debug lines are ") + (verbose ? "on" : "off") +
                (iso_log_lines ? "; log lines begin with ISO 8601 times" : "") +
                (sendTestTrap ? "; one test notification is sent after start-up" : ""));
}

}  // namespace

void CheckSettings(const std::string& path, Report& report) {
    report.Begin(path);
    const int result = read_conf_file(path.c_str());
    WarnOfDaemonLog(report);
    if (result == 0) {
        CheckCommunities(path, report);
        CheckLines(path, report);
        CheckNotifications(report);
    } else {
        report.Warn("the daemon runs without settings: no notification is sent");
    }
    ReportOtherSettings(report);
}

}  // namespace checkconf
