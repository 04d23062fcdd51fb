#include "tools/checkconf/settingLines.h"

#include <algorithm>
#include <optional>

#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"

namespace checkconf {

namespace {

constexpr std::string_view kBlanks = " \t";

std::string Quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

/** The file, as a person sees it and as far as the daemon does. */
struct Texts {
    std::string whole;
    std::string read;

    std::string Line(size_t place) const { return "line " + std::to_string(LineNumber(whole, place)); }
};

/** The line up to a place. */
std::string_view Before(std::string_view text, size_t place) {
    const size_t newline = place == 0 ? std::string_view::npos : text.rfind('\n', place - 1);
    const size_t begin = newline == std::string_view::npos ? 0 : newline + 1;
    return text.substr(begin, place - begin);
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

bool IsComment(std::string_view line) {
    const size_t first = line.find_first_not_of(kBlanks);
    return first != std::string_view::npos && line[first] == '#';
}

/** The first place from one on where a key begins a line and stands alone, as a person would look for it. */
std::optional<size_t> FindAsAPerson(std::string_view text, std::string_view key, size_t from) {
    for (size_t place = text.find(key, from); place != std::string_view::npos;
         place = text.find(key, place + 1)) {
        const size_t behind = place + key.size();
        const bool stands_alone =
            behind == text.size() || std::string_view(" \t\r\n").find(text[behind]) != std::string_view::npos;
        if (stands_alone && IsBlank(Before(text, place)))
            return place;
    }
    return std::nullopt;
}

void CheckBeyond(const Texts& texts, std::string_view key, Report& report) {
    if (const auto place = FindAsAPerson(texts.whole, key, 0))
        report.Warn(texts.Line(*place) + ": " + std::string(key) + " is beyond the " +
                    std::to_string(texts.read.size()) +
                    " bytes that the daemon looks at: it counts as not set");
}

/** Where the key was found. False: elsewhere than a person would look, which has been told. */
bool CheckKeyPlace(const Texts& texts, std::string_view key, const conf_place& place, Report& report) {
    const std::string_view before = Before(texts.read, place.key);
    const size_t behind = place.key + key.size();
    const bool is_separated = place.value > behind || behind == texts.read.size() ||
                              texts.read[behind] == '\n' || texts.read[behind] == '\r';
    if (IsBlank(before) && is_separated)
        return true;
    std::string found = texts.Line(place.key) + ": " + std::string(key) + " is found ";
    if (IsComment(before))
        found += "in a comment";
    else if (!IsBlank(before))
        found += "in the middle of the line";
    else
        found += "with no blank behind it";
    const auto meant = FindAsAPerson(texts.whole, key, behind);
    report.Warn(found + ", and what follows there is taken for its value" +
                (meant ? "; " + texts.Line(*meant) + " does not count" : ""));
    return false;
}

void CheckValue(const Texts& texts, const conf_setting& setting, const conf_place& place, Report& report) {
    const std::string_view key = setting.key;
    const std::string_view value = std::string_view(texts.read).substr(place.value, place.end - place.value);
    const std::string here = texts.Line(place.key) + ": ";
    // Secrets are as good as passwords, and warnings end in journals.
    const std::string shown = setting.is_secret ? "its value" : Quoted(value);
    if (value.empty()) {
        report.Warn(here + std::string(key) + " has no value");
        return;
    }
    if (value.find_last_not_of(" \t\r") != value.size() - 1)
        report.Warn(here + "the " + (value.back() == '\r' ? "carriage return" : "blank") +
                    " at the end belongs to the value of " + std::string(key));
    else if (setting.type == conf_type::flag && value != "yes" && value != "no")
        report.Warn(here + std::string(key) + " is " + shown +
                    ", which is off: yes alone, in small letters, is on");
    const bool is_number = setting.type == conf_type::number || setting.type == conf_type::controller;
    if (is_number && value.find_first_not_of("0123456789") != std::string_view::npos)
        report.Warn(here + std::string(key) + " is " + shown + ": its leading digits count, 0 without any");
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
        const bool is_cut = texts.whole.find('\n', place->value) != std::string::npos;
        report.Warn(texts.Line(place->key) + ": " + std::string(key) +
                    (is_cut ? " does not end within the bytes that the daemon looks at"
                            : " has no newline at its end") +
                    ": it counts as not set");
        return;
    }
    if (!is_in_place)
        return;
    CheckValue(texts, setting, *place, report);
    if (const auto again = FindAsAPerson(texts.whole, key, place->end))
        report.Warn(texts.Line(*again) + ": " + std::string(key) + " stands here once more; " +
                    texts.Line(place->key) + " counts");
}

/** A misspelt name is passed over in silence by the daemon. */
void CheckUnknownNames(const std::string& whole, Report& report) {
    for (size_t begin = 0; begin < whole.size();) {
        const size_t end = std::min(whole.find('\n', begin), whole.size());
        std::string_view line = std::string_view(whole).substr(begin, end - begin);
        line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
        const std::string_view name = line.substr(0, line.find_first_of(" \t\r="));
        const bool is_known = std::ranges::any_of(conf_settings, [&](const conf_setting& setting) {
            return name.find(setting.key) != std::string_view::npos;
        });
        if (!name.empty() && !IsComment(line) && !is_known)
            report.Warn("line " + std::to_string(LineNumber(whole, begin)) + ": " + Quoted(name) +
                        " is no setting of the daemon");
        begin = end + 1;
    }
}

}  // namespace

size_t LineNumber(std::string_view text, size_t place) {
    return 1 + static_cast<size_t>(std::ranges::count(text.substr(0, place), '\n'));
}

void CheckSettingLines(const std::string& path, Report& report) {
    const Texts texts{.whole = ReadTextFile(path).value_or(""),
                      .read = read_conf_text(path.c_str()).value_or("")};
    if (const size_t zero = texts.whole.find('\0'); zero != std::string::npos)
        report.Warn(texts.Line(zero) + ": a zero byte, where the file ends for the daemon");
    for (const conf_setting& setting : conf_settings)
        CheckSetting(texts, setting, report);
    CheckUnknownNames(texts.whole, report);
}

}  // namespace checkconf
